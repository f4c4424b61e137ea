#include <algorithm>
#include <array>
#include <cmath>
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
// Block and first field of the elements of a letter.
const std::map<char, std::pair<Block, int>> kLetters = {
    {'P', {Block::plastic, 1}}, {'Q', {Block::plastic, 7}}, {'H', {Block::plastic, 1}},
    {'I', {Block::mold, 5002}}, {'J', {Block::mold, 5003}}, {'M', {Block::mold, 1}},
    {'N', {Block::mold, 2}},    {'C', {Block::channel, 1}}, {'h', {Block::channel, 2}},
    {'X', {Block::none, 0}},    {'.', {Block::none, 0}}};

// Interface, owner code, contact code, boundary type, tag.
using Codes = std::tuple<int, int, int, int, std::uint32_t>;

// What the agreed meaning of the surfaces says about the face of a cell; interface 0 where there is none.
Codes codesOf(char letter, char letterBehind) {
  const auto [block, field] = kLetters.at(letter);
  const auto [behind, fieldBehind] = kLetters.at(letterBehind);
  if (block == behind || block == Block::none) return {};
  const bool onMold = behind == Block::mold;
  if (block == Block::channel) return {onMold ? 3 : 4, field, onMold ? fieldBehind : -1, 1, coolantTag(1)};
  if (block == Block::mold && behind == Block::channel) return {};
  if (block == Block::mold) return {2, field, behind == Block::plastic ? fieldBehind : 0, 0, 0U};
  if (letter == 'H' && behind == Block::none) return {1, field, 0, 5, 8U};
  return {1, field, onMold ? fieldBehind : 0, letter == 'H' ? 1 : 0, 1U};
}

std::map<Codes, double> expectedAreas(const BrickMold& mold) {
  std::map<Codes, double> areas;
  mold.eachCell([&](int x, int y, int z) {
    for (const int side : {-1, 1})
      for (const char behind : {mold.at(x + side, y, z), mold.at(x, y + side, z), mold.at(x, y, z + side)}) {
        const auto codes = codesOf(mold.at(x, y, z), behind);
        if (std::get<0>(codes) != 0) areas[codes] += 1;
      }
  });
  return areas;
}

const ElementTable& tableOf(const MeshModel& model, int interfaceId) {
  return interfaceId == 1 ? model.elemP : (interfaceId == 2 ? model.elemM : model.elemC);
}

// Area by codes, and that every surface is a face of its owner that points out of it, in the right order.
std::map<Codes, double> writtenAreas(const MeshModel& model) {
  std::map<Codes, double> areas;
  std::pair<int, int> last{0, 0};
  for (const auto& s : surfacesOf(model)) {
    const std::pair place{s.interfaceId == 2 ? 0 : s.interfaceId, s.elementNo};
    EXPECT_LE(last, place);
    last = place;
    const auto& table = tableOf(model, s.interfaceId);
    const auto owner = table.nodes(s.elementNo);
    for (int n = 0; n < s.nodeCount; ++n)
      EXPECT_NE(owner.end(), std::find(owner.begin(), owner.end(), s.nodes[n]));
    const auto p = [&](int k) { return placeOf(model, s.nodes[k]); };
    const Xyz area = cross(p(2) - p(0), p(s.nodeCount - 1) - p(1)) / 2.0;
    EXPECT_GT(dot(area, p(0) - middleOf(model, owner)), 0);
    EXPECT_EQ(s.ownerCode, table.material(s.elementNo));
    areas[{s.interfaceId, s.ownerCode, s.interfaceId == 4 ? -1 : s.contactCode, s.boundaryType, s.tag}] +=
        std::sqrt(dot(area, area));
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
      mold.eachCell([&](int x, int y, int z) {
        const char letter = mold.at(x, y, z);
        cellsDrawn += letter != '.' && kBrickRoles.at(letter) == component.groups;
      });
      EXPECT_NEAR(cellsDrawn, component.volumeOut, 1e-9) << component.groups;
      EXPECT_EQ(component.volumeIn, component.volumeOut);
    }
  }
}

// Other counts of the header are those that `check` finds.
TEST(Surfaces, ElementsStandByComponentAndTheHeaderSaysWhatTheMeshIs) {
  importing::ImportOptions options;
  options.scale = 0.001F;
  const Imported imported(BrickMold(kMold).mesh, options);
  const auto& m = imported.model();
  using Runs = std::vector<std::array<int, 3>>;  // material, group, number of elements
  const auto runs = [](const ElementTable& table) {
    Runs result;
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      if (result.empty() || result.back()[0] != table.material(e) || result.back()[1] != table.group(e))
        result.push_back({table.material(e), table.group(e), 0});
      ++result.back()[2];
    }
    return result;
  };
  EXPECT_EQ((Runs{{1, 1, 3}, {7, 1, 1}, {1, 201, 4}}), runs(m.elemP));
  EXPECT_EQ((Runs{{5002, 1, 2}, {5003, 1, 2}, {1, 1, 92}, {2, 1, 2}}), runs(m.elemM));
  EXPECT_EQ((Runs{{1, 1, 6}, {2, 1, 6}}), runs(m.elemC));
  const auto walls = static_cast<std::int32_t>(std::ranges::count(m.surfaces.interfaceId, 3));
  const std::pair<int, std::int32_t> expected[] = {{0, 14001}, {10, walls}, {15, 2}, {16, 4},
                                                   {17, 2},    {18, 2},     {20, 2}, {55, 4},
                                                   {56, 2},    {57, 2},     {73, 2}};
  for (const auto& [field, value] : expected) EXPECT_EQ(value, m.header[field]) << "field " << field;
  EXPECT_EQ(0.001F, m.header.floatField(m_HEADER_ScaleFactor));
  EXPECT_EQ("mold.msh", m.header.source);
  EXPECT_EQ("mm", m.header.unit);
  EXPECT_NEAR(0.001, m.nodes[2].x, 1e-9)
      << "coordinates are stored as they are, the factor stands in the header";
}

TEST(Surfaces, GatesReplaceFacesOfTheHotRunner) {
  BrickMold mold("PHHM/MMMM");
  mold.nameFace("gate:common:3", 1, 0, 0, 0);
  mold.nameFace("gate:hotcold:4", 2, 0, 0, 1);
  const Imported imported(mold.mesh);
  using Gates = std::vector<std::array<std::int64_t, 4>>;  // boundary type, owner, contact, tag
  Gates gates;
  for (const auto& s : surfacesOf(imported.model()))
    if (s.boundaryType == 4 || s.boundaryType == 9)
      gates.push_back({s.boundaryType, s.elementNo, s.contactCode, s.tag});
  EXPECT_EQ((Gates{{4, 2, 0, 0x303}, {9, 3, 1, 0x406}}), gates);
  EXPECT_EQ(2U, imported.report.surfaces.gates);
}

TEST(Surfaces, NamedFacesThatAreNoneAreRefused) {
  const std::tuple<const char*, int, int, const char*> rows[] = {
      {"gate:1", 1, 1, "element 9 (gate:common:1) lies on no face of a hot"},
      {"gate:1", 0, 0, "lies on no face of a hot-runner"},
      {"inlet:1", 3, 0, "element 9 (inlet:1) lies on no end of a channel"},
      {"inlet:1", 7, 1, "inlet:1 names a face of element 3 (channel:2), which"}};
  for (const auto& [role, x, side, expected] : rows) {
    BrickMold mold("PHHMCMCD");
    mold.nameFace(role, x, 0, 0, side);
    expectRefusal(expected, mold.mesh);
  }
  BrickMold twice("MCM");
  twice.nameFace("inlet:1", 1, 0, 0, 0);
  twice.nameFace("outlet:1", 1, 0, 0, 0);
  expectRefusal("are one face; it needs one role", twice.mesh);
}

TEST(Surfaces, SharedElementsAndFacesAreRefused) {
  BrickMold twins("PMMM");
  auto turned = twins.mesh.elements.back().nodes;
  std::rotate(turned.begin(), turned.begin() + 1, turned.begin() + 4);
  std::rotate(turned.begin() + 4, turned.begin() + 5, turned.end());
  twins.addElement(5, 3, 6, turned);
  expectRefusal("element 4 (part) and element 5 (moldbase) have the same nodes", twins.mesh);
  BrickMold fan("MM", Cells::wedges);
  const auto& n = fan.mesh.elements[0].nodes;
  fan.mesh.nodes.push_back({99, 5, 5, 5});
  fan.addElement(7, 3, 6, {n[0], n[2], n[5], n[3], 99});
  expectRefusal("more than two elements share one face: element 1", fan.mesh);
}
