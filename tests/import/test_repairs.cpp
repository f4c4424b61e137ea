#include <random>

#include "import/imported.h"
#include "import/node_numbers.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

constexpr const char* kSmall = "MCM/MPI MMM/MMM";

// Each cell with nodes of its own, shifted by less than a tolerance.
Msh apart(const Msh& joined, double shift) {
  Msh mesh;
  mesh.names = joined.names;
  std::mt19937 random(3);
  std::uniform_real_distribution<double> by(-shift, shift);
  for (const auto& element : joined.elements) {
    mesh.elements.push_back(element);
    for (auto& node : mesh.elements.back().nodes) {
      const auto& old = joined.nodes[node - 1];
      node = mesh.nodes.size() + 1;
      mesh.nodes.push_back({node, old.x + by(random), old.y + by(random), old.z + by(random)});
    }
  }
  return mesh;
}

void expectSameVolumesAndSurfaces(const Imported& expected, const Imported& found, double tolerance) {
  ASSERT_EQ(expected.report.components.size(), found.report.components.size());
  for (std::size_t k = 0; k < found.report.components.size(); ++k)
    EXPECT_NEAR(expected.report.components[k].volumeOut, found.report.components[k].volumeOut, tolerance);
  EXPECT_EQ(expected.model().surfaces.count(), found.model().surfaces.count());
}

}  // namespace

TEST(Repairs, InvertedElementsAreTurned) {
  for (const auto cells : {Cells::hexahedra, Cells::wedges, Cells::tetrahedra, Cells::hexahedraAndPyramids}) {
    const auto mesh = BrickMold(kSmall, cells).mesh;
    const Imported straight(mesh);
    auto mirrored = mesh;
    for (auto& node : mirrored.nodes) node.x = 3 - node.x;
    const Imported turned(mirrored);
    EXPECT_EQ(mesh.elements.size(), turned.report.turned);
    EXPECT_EQ(0U, turned.report.overlaps);
    expectSameVolumesAndSurfaces(straight, turned, 1e-9);
  }
}

TEST(Repairs, VolumeOfABentHexahedronIsItsIntegral) {
  // A unit cube with one corner pulled out by d along z: its top is a bilinear patch of mean height 1 + d/4.
  auto mesh = BrickMold("M").mesh;
  mesh.nodes.back().z += 0.4;
  EXPECT_NEAR(1.1, Imported(mesh).report.components[0].volumeOut, 1e-7);
}

TEST(Repairs, SecondOrderElementsKeepTheirCorners) {
  const auto linear = BrickMold(kSmall, Cells::tetrahedra).mesh;
  auto quadratic = linear;
  for (auto& element : quadratic.elements) {
    element.type = 11;
    for (int k = 0; k < 6; ++k) {
      element.nodes.push_back(quadratic.nodes.size() + 1);
      quadratic.nodes.push_back({element.nodes.back(), 0.5, 0.5, 0.5});
    }
  }
  for (const auto encoding : kEncodings)
    for (const bool dropped : {true, false}) {
      importing::ImportOptions options;
      options.dropUnused = dropped;
      const Imported imported(quadratic, options, "", encoding);
      EXPECT_EQ(linear.elements.size(), imported.report.secondOrder);
      EXPECT_EQ(6 * linear.elements.size(), std::size_t(imported.report.unusedNodes));
      EXPECT_EQ((dropped ? linear : quadratic).nodes.size(), std::size_t(imported.model().nodes.count()));
    }
}

TEST(Repairs, CoincidentNodesAreJoinedAndElementsThatCollapseRefused) {
  const auto mesh = BrickMold(kSmall).mesh;
  const Imported whole(mesh);
  importing::ImportOptions options;
  for (const double shift : {0.0, 1e-4}) {
    options.merge = 4 * shift;
    const Imported joined(apart(mesh, shift), options);
    EXPECT_EQ(whole.model().nodes.count(), joined.model().nodes.count());
    EXPECT_EQ(8 * mesh.elements.size() - mesh.nodes.size(), std::size_t(joined.report.joinedNodes));
    expectSameVolumesAndSurfaces(whole, joined, 1e-3);
  }
  options.merge = 1.01;
  expectRefusal("element 12 (part), a hexahedron, names a node twice", mesh, "", options);
}

TEST(Repairs, JoiningTakesTheLowestNodeInReach) {
  std::mt19937 random(5);
  for (const double size : {1.0, 1e-3, 1e30}) {
    importing::MshMesh mesh;
    std::uniform_real_distribution<float> place(static_cast<float>(-size), static_cast<float>(size));
    for (int k = 0; k < 3 * 400; ++k) mesh.xyz.push_back(place(random));
    const double tolerance = 0.2 * size;
    std::vector<std::int32_t> joinedTo;
    importing::joinNodes(mesh, tolerance, joinedTo);
    const auto at = [&](std::size_t node) {
      return Xyz{mesh.xyz[3 * node - 3], mesh.xyz[3 * node - 2], mesh.xyz[3 * node - 1]};
    };
    for (std::size_t a = 1; a <= 400; ++a) {
      std::size_t expected = 1;
      for (; expected < a; ++expected) {
        const Xyz apart = at(a) - at(expected);
        if (joinedTo[expected] == static_cast<std::int32_t>(expected) &&
            dot(apart, apart) <= tolerance * tolerance)
          break;
      }
      ASSERT_EQ(static_cast<std::int32_t>(expected), joinedTo[a]);
    }
  }
}
