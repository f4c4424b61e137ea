#include <cmath>
#include <random>

#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

std::string limit(double quality) { return R"({"badQuality": )" + std::to_string(quality) + "}"; }

// Tetrahedra of any shape that share no nodes, part and mold in turn; some are flat.
Msh looseTetrahedra() {
  Msh mesh;
  mesh.names = {{3, 1, "part"}, {3, 2, "moldbase"}};
  std::mt19937 random(11);
  std::uniform_real_distribution<float> place(0, 1);
  for (int k = 0; k < 400; ++k) {
    const bool flat = k % 50 == 7;
    const float flatter = flat ? 0 : place(random) * place(random);
    MshElement element{std::uint64_t(k + 1), 4, 3, 1 + k % 2, 1 + k % 2, {}};
    for (int corner = 0; corner < 4; ++corner) {
      const auto tag = mesh.nodes.size() + 1;
      mesh.nodes.push_back({tag, 4 * k + double(place(random)), place(random), flatter * place(random)});
      element.nodes.push_back(tag);
    }
    mesh.elements.push_back(element);
  }
  return mesh;
}

double quality(const MeshModel& m, std::span<const std::int32_t> nodes) {
  double p[4][3], longest = 0;
  for (std::size_t k = 0; k < 4; ++k) {
    const auto node = m.nodes[nodes[k]];
    p[k][0] = node.x, p[k][1] = node.y, p[k][2] = node.z;
    for (std::size_t j = 0; j < k; ++j)
      longest = std::max(longest, std::hypot(p[k][0] - p[j][0], p[k][1] - p[j][1], p[k][2] - p[j][2]));
  }
  const auto d = [&](int k, int axis) { return p[k][axis] - p[0][axis]; };
  const double sixfold = d(1, 0) * (d(2, 1) * d(3, 2) - d(2, 2) * d(3, 1)) -
                         d(1, 1) * (d(2, 0) * d(3, 2) - d(2, 2) * d(3, 0)) +
                         d(1, 2) * (d(2, 0) * d(3, 1) - d(2, 1) * d(3, 0));
  return std::sqrt(2) * std::abs(sixfold) / std::pow(longest, 3);
}

void expectBad(const MeshModel& m, const ElementTable& elements, const BadElementTable& bad, double least) {
  std::int32_t next = 0;
  for (std::int32_t e = 1; e <= elements.count(); ++e) {
    const double q = quality(m, elements.nodes(e));
    if (q > 0 && q >= least) continue;
    ASSERT_LT(next, bad.count());
    EXPECT_EQ(e, bad.elementNo[static_cast<std::size_t>(next)]);
    EXPECT_EQ(q == 0 ? 1 : 2, bad.code[static_cast<std::size_t>(next)]);
    ++next;
  }
  EXPECT_EQ(next, bad.count());
}

}  // namespace

TEST(BadElements, AreThoseBelowTheQualityInTheirOwnBlock) {
  const auto mesh = looseTetrahedra();
  for (const double least : {0.0, 0.01, 0.1, 0.4, 1.0}) {
    const Imported imported(mesh, {}, limit(least));
    const auto& m = imported.model();
    expectBad(m, m.elemP, m.badP, least);
    expectBad(m, m.elemM, m.badM, least);
    EXPECT_EQ(8U, imported.report.flat);
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
