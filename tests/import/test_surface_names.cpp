#include <algorithm>
#include <set>

#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

using Numbers = std::set<std::int32_t>;

// The lists of all surface elements, by interface and lowest x of the face.
std::map<std::pair<int, int>, std::set<Numbers>> listsByPlace(const MeshModel& m) {
  std::map<std::pair<int, int>, std::set<Numbers>> lists;
  for (std::int32_t k = 1; k <= m.surfaces.count(); ++k) {
    const auto face = m.surfaces[k];
    const auto list = m.surfaces.list(k);
    EXPECT_TRUE(std::is_sorted(list.begin(), list.end()));
    EXPECT_EQ(m.surfaces.hasList(k), !list.empty());
    const auto [low, high] = std::ranges::minmax(std::span(face.nodes, std::size_t(face.nodeCount)), {},
                                                 [&](std::int32_t node) { return m.nodes[node].x; });
    if (m.nodes[low].x == m.nodes[high].x)
      lists[{face.interfaceId, int(m.nodes[low].x)}].insert(Numbers(list.begin(), list.end()));
  }
  return lists;
}

}  // namespace

TEST(SurfaceNames, StandOnTheSurfacesOfTheirGroups) {
  // Planes x = 0 to 4: air, mold, part, channel, air.
  BrickMold mold("MPC/MMM");
  mold.nameFace("outside", 0, 0, 0, 0);
  mold.nameFace("cavity", 1, 0, 0, 0);
  mold.nameFace("both", 1, 0, 0, 1);
  const Imported imported(mold.mesh, {}, R"({"bcNames": [
    {"name": "a", "type": 1, "groups": ["both", "cavity", "outside"]},
    {"name": "unused", "type": 1},
    {"name": "b", "type": 1, "groups": ["part", "cavity"]},
    {"name": "c", "type": 1, "groups": ["channel:1"]}]})");
  const auto& m = imported.model();
  const std::map<std::pair<int, int>, std::set<Numbers>> expected{
      {{1, 1}, {{1, 3}}},   // the part's side of the cavity, the mold's below is another face
      {{1, 2}, {{1, 3}}},   // towards the channel
      {{2, 0}, {{1}, {}}},  // the cell that was named and the one behind it
      {{2, 1}, {{}}},       // the mold's side of the cavity
      {{2, 3}, {{}}},      {{4, 2}, {{4}}}, {{4, 3}, {{4}}}};
  EXPECT_EQ(expected, listsByPlace(m));
  EXPECT_EQ(m.surfaces.lists.size(), imported.report.namedSurfaces);
  for (const int field : {27, static_cast<int>(m_HEADER_NSurfaceBC)})
    EXPECT_EQ(m.surfaces.lists.size(), static_cast<std::size_t>(m.header[field]));
  EXPECT_EQ(3, m.header[28]);
}

TEST(SurfaceNames, FacesWithoutASurfaceAreCountedAndGroupsOfThemRefused) {
  BrickMold mold("MMI.P");
  mold.nameFace("inside", 0, 0, 0, 1);
  const auto roles = R"({"bcNames": [{"name": "a", "type": 1, "groups": ["inside"]}]})";
  expectRefusal(": bcNames[0].groups: surface group 'inside' has no surface element", mold.mesh, roles);
  const auto group = mold.mesh.elements.back().group;
  mold.addElement(3, 2, group,
                  {mold.node(0, 0, 0), mold.node(0, 1, 0), mold.node(0, 1, 1), mold.node(0, 0, 1)});
  const Imported imported(mold.mesh, {}, roles);
  EXPECT_EQ(1U, imported.report.namedSurfaces);
  EXPECT_EQ(1U, imported.report.facesWithout);
  EXPECT_TRUE(imported.report.ignored.empty());
  std::string many = R"({"bcNames": [)";
  for (int k = 0; k < 1000; ++k) many += R"({"name": "a", "type": 1, "groups": ["moldbase", "inside"]},)";
  many.back() = ']';
  expectRefusal("too many names", mold.mesh, many + "}");
}

TEST(ChannelSurface, IsTheCoolantChannelsOwn) {
  constexpr const char* kMold = "MMMM/MMMM/MMMM MMMM/CCCC/MMMM MMMM/hhhh/DDDD MMMM/MMMM/MMMM";
  for (const auto cells : {Cells::hexahedra, Cells::wedges, Cells::tetrahedra, Cells::hexahedraAndPyramids}) {
    const Imported imported(BrickMold(kMold, cells).mesh, {}, R"({"channelSurface": true})");
    const auto& m = imported.model();
    const auto& outline = m.channelSurface;
    std::set<std::int32_t> nodes;
    std::size_t next = 0;
    for (const auto& face : surfacesOf(m)) {
      if (face.interfaceId < 3 || face.ownerCode != 1) continue;
      ASSERT_LT(next, outline.faces.size());
      const auto& found = outline.faces[next++];
      EXPECT_EQ(std::pair(face.boundaryType, face.interfaceId), std::pair(found.faceCodeA, found.faceCodeB));
      for (int n = 0; n < face.nodeCount; ++n) {
        nodes.insert(face.nodes[n]);
        const auto& [x, y, z] = outline.points.at(static_cast<std::size_t>(found.nodes[n]) - 1);
        const auto node = m.nodes[face.nodes[n]];
        EXPECT_EQ(std::tuple(node.x, node.y, node.z), std::tuple(x, y, z));
      }
    }
    EXPECT_EQ(next, outline.faces.size());
    EXPECT_EQ(nodes.size(), outline.points.size());
    EXPECT_EQ(static_cast<int>(next), m.header[m_HEADER_NCCSurfaceFace]);
    EXPECT_EQ(static_cast<int>(next + nodes.size()), m.header[m_HEADER_NCCSurfaceEntry]);
  }
  EXPECT_TRUE(Imported(BrickMold(kMold).mesh).model().channelSurface.points.empty());
}
