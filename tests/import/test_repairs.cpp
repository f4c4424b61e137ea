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

double volumeOf(const importing::ImportReport& report, const std::string& groups) {
  for (const auto& component : report.components)
    if (component.groups == groups) return component.volumeOut;
  return -1;
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
    EXPECT_EQ(straight.model().surfaces.count(), turned.model().surfaces.count());
    EXPECT_EQ(0U, turned.report.overlaps);
    for (const auto& component : straight.report.components)
      EXPECT_NEAR(component.volumeOut, volumeOf(turned.report, component.groups), 1e-9);
  }
}

TEST(Repairs, VolumeOfABentHexahedronIsItsIntegral) {
  // A unit cube with one corner pulled out by d along z: its top is a bilinear patch of mean height 1 + d
  // / 4.
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
      quadratic.nodes.push_back({quadratic.nodes.size() + 1, 0.5, 0.5, 0.5});
      element.nodes.push_back(quadratic.nodes.size());
    }
  }
  importing::ImportOptions options;
  options.dropUnused = true;
  for (const auto encoding : kEncodings) {
    const Imported imported(quadratic, options, "", encoding);
    EXPECT_EQ(linear.elements.size(), imported.report.secondOrder);
    EXPECT_EQ(6 * linear.elements.size(), static_cast<std::size_t>(imported.report.unusedNodes));
    EXPECT_EQ(linear.nodes.size(), static_cast<std::size_t>(imported.model().nodes.count()));
  }
  const Imported kept(quadratic);
  EXPECT_EQ(quadratic.nodes.size(), static_cast<std::size_t>(kept.model().nodes.count()));
}

TEST(Repairs, CoincidentNodesAreJoined) {
  const auto mesh = BrickMold(kSmall).mesh;
  const Imported whole(mesh);
  for (const double shift : {0.0, 1e-4}) {
    importing::ImportOptions options;
    options.merge = 4 * shift;
    const Imported joined(apart(mesh, shift), options);
    EXPECT_EQ(mesh.nodes.size(), static_cast<std::size_t>(joined.model().nodes.count()));
    EXPECT_EQ(8 * mesh.elements.size() - mesh.nodes.size(),
              static_cast<std::size_t>(joined.report.joinedNodes));
    EXPECT_EQ(whole.model().surfaces.count(), joined.model().surfaces.count());
    EXPECT_NEAR(1, volumeOf(joined.report, "part"), 1e-3);
  }
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
    for (std::size_t a = 1; a <= 400; ++a) {
      std::size_t expected = a;
      for (std::size_t b = 1; b < a && expected == a; ++b) {
        double apart = 0;
        for (std::size_t axis = 0; axis < 3; ++axis) {
          const double d = double(mesh.xyz[3 * a - 3 + axis]) - double(mesh.xyz[3 * b - 3 + axis]);
          apart += d * d;
        }
        if (joinedTo[b] == static_cast<std::int32_t>(b) && apart <= tolerance * tolerance) expected = b;
      }
      ASSERT_EQ(static_cast<std::int32_t>(expected), joinedTo[a]);
    }
  }
}

TEST(Repairs, ElementsThatCollapseAreRefused) {
  importing::ImportOptions options;
  options.merge = 1.01;
  const auto text = refusal(writeMsh(BrickMold(kSmall).mesh, Encoding::text41), "", options);
  EXPECT_NE(std::string::npos, text.find("element 12 (part), a hexahedron, names a node twice")) << text;
}
