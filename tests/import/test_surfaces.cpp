#include <algorithm>
#include <cmath>
#include <set>
#include <tuple>

#include "base/face_tag.h"
#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

constexpr const char* kMold =
    "MMMMMM/CCCCCC/MMMMMM/MMMMMM MMMMMM/MIIJJM/MMMNNM/hhhhhh MMMMMM/MPPPQM/MMHMMM/MMMMMM "
    "MMMMMM/MMHMMM/MMHMMM/MMMM.M MMMMMM/MMMMXM/MMHMMM/MMMMMM";

enum class Block { none, plastic, mold, channel };
Block blockOf(char letter) {
  if (std::string("PQH").find(letter) != std::string::npos) return Block::plastic;
  if (std::string("IJMN").find(letter) != std::string::npos) return Block::mold;
  return letter == 'C' || letter == 'D' || letter == 'h' ? Block::channel : Block::none;
}
int fieldA(char letter) {
  const std::map<char, int> fields = {{'P', 1}, {'Q', 7}, {'H', 1}, {'I', 5002}, {'J', 5003},
                                      {'M', 1}, {'N', 2}, {'C', 1}, {'D', 1},    {'h', 2}};
  return fields.at(letter);
}

// Interface, owner code, contact code, boundary type, tag.
using Codes = std::tuple<int, int, int, int, std::uint32_t>;

// What the agreed meaning of the surfaces says about the face of a cell; interface 0 where there is none.
Codes codesOf(char owner, char behind) {
  const int moldBehind = blockOf(behind) == Block::mold ? fieldA(behind) : 0;
  const int group = owner == 'D' ? 2 : 1;
  switch (blockOf(owner)) {
    case Block::plastic:
      if (blockOf(behind) == Block::plastic) return {};
      if (owner != 'H') return {1, fieldA(owner), moldBehind, 0, 1U};
      return blockOf(behind) == Block::none ? Codes{1, 1, 0, 5, 8U} : Codes{1, 1, moldBehind, 1, 1U};
    case Block::mold:
      if (blockOf(behind) == Block::mold || blockOf(behind) == Block::channel) return {};
      return {2, fieldA(owner), blockOf(behind) == Block::plastic ? fieldA(behind) : 0, 0, 0U};
    case Block::channel:
      if (blockOf(behind) == Block::channel) return {};
      if (blockOf(behind) == Block::mold) return {3, fieldA(owner), moldBehind, group, coolantTag(group)};
      return {4, fieldA(owner), -1, group, coolantTag(group)};
    default:
      return {};
  }
}

std::map<Codes, double> expectedAreas(const BrickMold& mold) {
  std::map<Codes, double> areas;
  for (int z = 0; z < mold.depth(); ++z)
    for (int y = 0; y < mold.height(); ++y)
      for (int x = 0; x < mold.width(); ++x)
        for (const auto& [dx, dy, dz] : std::vector<std::array<int, 3>>{
                 {1, 0, 0}, {-1, 0, 0}, {0, 1, 0}, {0, -1, 0}, {0, 0, 1}, {0, 0, -1}}) {
          const auto codes = codesOf(mold.at(x, y, z), mold.at(x + dx, y + dy, z + dz));
          if (std::get<0>(codes) != 0) areas[codes] += 1;
        }
  return areas;
}

std::array<double, 3> areaVector(const MeshModel& model, const SurfaceElement& s) {
  const auto p = [&](int k) { return model.nodes[s.nodes[k]]; };
  const auto a = p(0), b = p(1), c = p(2), d = s.nodeCount == 4 ? p(3) : p(2);
  const std::array<double, 3> u = {c.x - a.x, c.y - a.y, c.z - a.z}, v = {d.x - b.x, d.y - b.y, d.z - b.z};
  return {(u[1] * v[2] - u[2] * v[1]) / 2, (u[2] * v[0] - u[0] * v[2]) / 2, (u[0] * v[1] - u[1] * v[0]) / 2};
}

const ElementTable& tableOf(const MeshModel& model, int interfaceId) {
  return interfaceId == 1 ? model.elemP : (interfaceId == 2 ? model.elemM : model.elemC);
}

// Area by codes, and that every surface is a face of its owner that points out of it, in the right order.
std::map<Codes, double> writtenAreas(const MeshModel& model) {
  std::map<Codes, double> areas;
  std::pair<int, int> last{0, 0};
  for (std::int32_t k = 1; k <= model.surfaces.count(); ++k) {
    const auto s = model.surfaces[k];
    const std::pair place{s.interfaceId == 2 ? 0 : s.interfaceId, s.elementNo};
    EXPECT_LE(last, place);
    last = place;
    const auto owner = tableOf(model, s.interfaceId).nodes(s.elementNo);
    std::array<double, 3> middle{};
    for (const auto n : owner) {
      middle[0] += model.nodes[n].x / double(owner.size());
      middle[1] += model.nodes[n].y / double(owner.size());
      middle[2] += model.nodes[n].z / double(owner.size());
    }
    for (int n = 0; n < s.nodeCount; ++n)
      EXPECT_NE(owner.end(), std::find(owner.begin(), owner.end(), s.nodes[n]));
    const auto area = areaVector(model, s);
    const auto corner = model.nodes[s.nodes[0]];
    EXPECT_GT(area[0] * (corner.x - middle[0]) + area[1] * (corner.y - middle[1]) +
                  area[2] * (corner.z - middle[2]),
              0);
    EXPECT_EQ(s.ownerCode, tableOf(model, s.interfaceId).material(s.elementNo));
    areas[{s.interfaceId, s.ownerCode, s.interfaceId == 4 ? -1 : s.contactCode, s.boundaryType, s.tag}] +=
        std::hypot(area[0], area[1], area[2]);
  }
  return areas;
}

}  // namespace

TEST(Surfaces, OfEveryShapeAreThoseOfTheDrawing) {
  for (const auto cells : {Cells::hexahedra, Cells::wedges, Cells::tetrahedra, Cells::hexahedraAndPyramids}) {
    const BrickMold mold(kMold, cells);
    const Imported imported(mold.mesh);
    EXPECT_EQ(0U, imported.report.turned);
    EXPECT_EQ(0U, imported.report.overlaps);
    const auto written = writtenAreas(imported.model());
    const auto expected = expectedAreas(mold);
    ASSERT_EQ(expected.size(), written.size()) << static_cast<int>(cells);
    for (const auto& [codes, area] : expected) EXPECT_NEAR(area, written.at(codes), 1e-6);
    for (const auto& component : imported.report.components) {
      double cellsDrawn = 0;
      for (int z = 0; z < mold.depth(); ++z)
        for (int y = 0; y < mold.height(); ++y)
          for (int x = 0; x < mold.width(); ++x)
            cellsDrawn +=
                kBrickRoles.at(mold.at(x, y, z) == '.' ? 'X' : mold.at(x, y, z)) == component.groups;
      EXPECT_NEAR(cellsDrawn, component.volumeOut, 1e-9) << component.groups;
      EXPECT_EQ(component.volumeIn, component.volumeOut);
    }
  }
}

TEST(Surfaces, ElementsStandByComponentWithTheirFields) {
  const Imported imported(BrickMold(kMold).mesh);
  const auto& m = imported.model();
  const auto runs = [](const ElementTable& table) {
    std::vector<std::array<int, 3>> result;
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      if (result.empty() || result.back()[0] != table.material(e) || result.back()[1] != table.group(e))
        result.push_back({table.material(e), table.group(e), 0});
      ++result.back()[2];
    }
    return result;
  };
  using Runs = std::vector<std::array<int, 3>>;
  EXPECT_EQ((Runs{{1, 1, 3}, {7, 1, 1}, {1, 201, 4}}), runs(m.elemP));
  EXPECT_EQ((Runs{{5002, 1, 2}, {5003, 1, 2}, {1, 1, 92}, {2, 1, 2}}), runs(m.elemM));
  EXPECT_EQ((Runs{{1, 1, 6}, {2, 1, 6}}), runs(m.elemC));
}

// Other counts of the header are those that `check` finds.
TEST(Surfaces, HeaderSaysWhatTheMeshIs) {
  importing::ImportOptions options;
  options.scale = 0.001F;
  const Imported imported(BrickMold(kMold).mesh, options);
  const auto& m = imported.model();
  const auto& h = m.header;
  const auto walls = static_cast<std::int32_t>(std::ranges::count(m.surfaces.interfaceId, 3));
  const std::pair<int, std::int32_t> expected[] = {{0, 14001}, {10, walls}, {15, 2}, {16, 4},
                                                   {17, 2},    {18, 2},     {20, 2}, {55, 4},
                                                   {56, 2},    {57, 2},     {73, 2}};
  for (const auto& [field, value] : expected) EXPECT_EQ(value, h[field]) << "field " << field;
  EXPECT_EQ(0.001F, h.floatField(m_HEADER_ScaleFactor));
  EXPECT_EQ("mold.msh", h.source);
  EXPECT_EQ("mm", h.unit);
  EXPECT_NEAR(0.001, m.nodes[2].x, 1e-9)
      << "coordinates are stored as they are, the factor stands in the header";
}

TEST(Surfaces, GatesReplaceFacesOfTheHotRunner) {
  BrickMold mold("PHHM/MMMM");
  mold.nameFace("gate:common:3", 1, 0, 0, 0);
  mold.nameFace("gate:hotcold:4", 2, 0, 0, 1);
  const Imported imported(mold.mesh);
  const auto& surfaces = imported.model().surfaces;
  std::map<int, std::vector<std::array<std::int64_t, 3>>> gates;  // boundary type: owner, contact, tag
  for (std::int32_t k = 1; k <= surfaces.count(); ++k)
    gates[surfaces[k].boundaryType].push_back(
        {surfaces[k].elementNo, surfaces[k].contactCode, surfaces[k].tag});
  ASSERT_EQ(1U, gates[4].size());
  EXPECT_EQ((std::array<std::int64_t, 3>{2, 0, 0x303}), gates[4][0]);
  ASSERT_EQ(1U, gates[9].size());
  EXPECT_EQ((std::array<std::int64_t, 3>{3, 1, 0x406}), gates[9][0]);
  EXPECT_EQ(2U, imported.report.surfaces.gates);
}

TEST(Surfaces, NamedFacesThatAreNoneAreRefused) {
  const auto refused = [](const std::string& role, int x, int side) {
    BrickMold mold("PHHMCMCD");
    mold.nameFace(role, x, 0, 0, side);
    return refusal(writeMsh(mold.mesh, Encoding::text41));
  };
  EXPECT_NE(std::string::npos,
            refused("gate:1", 1, 1).find("element 9 (gate:common:1) lies on no face of a hot"));
  EXPECT_NE(std::string::npos, refused("gate:1", 0, 0).find("lies on no face of a hot-runner"));
  EXPECT_NE(std::string::npos,
            refused("inlet:1", 3, 0).find("element 9 (inlet:1) lies on no end of a channel"));
  EXPECT_NE(std::string::npos,
            refused("inlet:1", 7, 1).find("inlet:1 names a face of element 3 (channel:2), which"));
  BrickMold twice("MCM");
  twice.nameFace("inlet:1", 1, 0, 0, 0);
  twice.nameFace("outlet:1", 1, 0, 0, 0);
  EXPECT_NE(std::string::npos,
            refusal(writeMsh(twice.mesh, Encoding::text22)).find("are one face; it needs one role"));
}

TEST(Surfaces, SharedElementsAndFacesAreRefused) {
  BrickMold twins("PMMM");
  twins.addElement(5, 3, 6, twins.mesh.elements[0].nodes);
  EXPECT_NE(std::string::npos, refusal(writeMsh(twins.mesh, Encoding::text22)).find("have the same nodes"));
  BrickMold fan("MM", Cells::wedges);
  const auto& n = fan.mesh.elements[0].nodes;
  fan.mesh.nodes.push_back({99, 5, 5, 5});
  fan.addElement(7, 3, 6, {n[0], n[2], n[5], n[3], 99});
  EXPECT_NE(
      std::string::npos,
      refusal(writeMsh(fan.mesh, Encoding::text22)).find("more than two elements share one face: element 1"));
}
