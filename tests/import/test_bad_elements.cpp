#include <cmath>
#include <random>

#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

std::string limit(double quality) { return R"({"badQuality": )" + std::to_string(quality) + "}"; }

// Tetrahedra of any shape, part and mold in turn; the six of the last cell are flat.
Msh crookedMold() {
  auto mesh = BrickMold("PMPMPMPM.P/MPMPMPMP../PMPMPMPM..", Cells::tetrahedra).mesh;
  std::mt19937 random(11);
  std::uniform_real_distribution<double> by(-0.4, 0.4);
  for (auto& [tag, x, y, z] : mesh.nodes) {
    z = x > 8 ? 0 : z + by(random);
    x += by(random);
    y += by(random);
  }
  return mesh;
}

double quality(const MeshModel& m, std::span<const std::int32_t> nodes) {
  const auto edge = [&](std::size_t from, std::size_t to) -> Xyz {
    return placeOf(m, nodes[to]) - placeOf(m, nodes[from]);
  };
  double longest = 0;
  for (std::size_t k = 0; k < 4; ++k)
    for (std::size_t j = 0; j < k; ++j) longest = std::max(longest, std::sqrt(dot(edge(j, k), edge(j, k))));
  return std::sqrt(2) * std::abs(dot(cross(edge(0, 1), edge(0, 2)), edge(0, 3))) / std::pow(longest, 3);
}

void expectBad(const MeshModel& m, const ElementTable& elements, const BadElementTable& bad, double least) {
  std::vector<std::int32_t> numbers, codes;
  for (std::int32_t e = 1; e <= elements.count(); ++e) {
    const double q = quality(m, elements.nodes(e));
    if (q > 0 && q >= least) continue;
    numbers.push_back(e);
    codes.push_back(q == 0 ? 1 : 2);
  }
  EXPECT_EQ(numbers, std::vector(bad.elementNo.begin(), bad.elementNo.end()));
  EXPECT_EQ(codes, std::vector(bad.code.begin(), bad.code.end()));
}

}  // namespace

TEST(BadElements, AreThoseBelowTheQualityInTheirOwnBlock) {
  const auto mesh = crookedMold();
  for (const double least : {0.0, 0.01, 0.1, 0.4, 1.0}) {
    const Imported imported(mesh, {}, limit(least));
    const auto& m = imported.model();
    expectBad(m, m.elemP, m.badP, least);
    expectBad(m, m.elemM, m.badM, least);
    EXPECT_EQ(6U, imported.report.flat);
    EXPECT_EQ(m.badM.count(), m.header[m_HEADER_NBadM]);
    EXPECT_EQ(static_cast<std::uint64_t>(m.badP.count()), imported.report.bad[0]);
  }
  EXPECT_EQ(Imported(mesh, {}, limit(0.01)).model().badP.count(), Imported(mesh).model().badP.count());
}

TEST(BadElements, QualityOfEveryShapeIsOneWhereEdgesAreEqual) {
  // Cells of height h; in the last row the pyramids of a cube around its middle, base edge 1.
  const std::tuple<Cells, double, double> rows[] = {
      {Cells::hexahedra, 1, 1},
      {Cells::hexahedra, 0.25, 0.25},
      {Cells::wedges, 1, 0.5 / (std::pow(2, 1.5) * std::sqrt(3) / 4)},
      {Cells::tetrahedra, 1, std::sqrt(2) / std::pow(3, 1.5)},
      {Cells::hexahedraAndPyramids, 1, 1 / std::sqrt(2)}};
  for (const auto& [cells, height, expected] : rows) {
    auto mesh = BrickMold("C M", cells).mesh;
    for (auto& node : mesh.nodes) node.z *= height;
    EXPECT_EQ(0, Imported(mesh, {}, limit(expected - 1e-5)).model().badC.count());
    if (expected == 1) continue;
    const Imported above(mesh, {}, limit(expected + 1e-5));
    EXPECT_EQ(above.model().elemC.count(), above.model().badC.count());
  }
}
