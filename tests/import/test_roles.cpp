#include "import/imported.h"
#include "import/roles.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

constexpr const char* kSmall = "MCM/MPI MMM/MMM";

Msh renamed(Msh mesh, const std::string& from, const std::string& to) {
  for (auto& [dimension, tag, name] : mesh.names)
    if (name == from) name = to;
  return mesh;
}

void expectText(const std::string& expected, const std::string& found) {
  EXPECT_NE(std::string::npos, found.find(expected)) << "expected: " << expected << "\nfound: " << found;
}

}  // namespace

TEST(Roles, TextsAreReadWithTheirRanges) {
  using importing::parseRole;
  for (const char* good :
       {"part:1", "part:9999", "hotrunner:201", "hotrunner:300", "insert:5002", "insert:9999",
        "moldbase:5000", "channel:1", "channel:999", "heater:7", "inlet:1", "outlet:999", "hose:3",
        "gate:common:1048575", "gate:hotcold:1", "sensor:6:2147483647"}) {
    EXPECT_EQ("", parseRole(good).problem) << good;
    EXPECT_EQ(good, textOf(parseRole(good).role));
  }
  EXPECT_EQ("part:1", textOf(parseRole("part").role));
  EXPECT_EQ("moldbase:1", textOf(parseRole("moldbase").role));
  EXPECT_EQ("gate:common:8", textOf(parseRole("gate:8").role));
  for (const char* bad :
       {"part:0",      "part:",        "part:x",        "hotrunner",   "hotrunner:200", "hotrunner:301",
        "insert:5001", "insert:10000", "moldbase:5001", "channel:0",   "channel:1000",  "channel: 1",
        "inlet:1:2",   "gate:0",       "gate:1048576",  "gate:common", "sensor:7:1",    "sensor:1",
        "sensor:1:0",  "sensor:1:2:3", "ignore:1"}) {
    EXPECT_NE("", parseRole(bad).problem) << bad;
    EXPECT_FALSE(parseRole(bad).unknown) << bad;
  }
  EXPECT_TRUE(parseRole("partly").unknown);
  EXPECT_TRUE(parseRole("").unknown);
  expectText("nearest is hotrunner:GROUP", parseRole("hot_runner:201").problem);
}

TEST(Roles, UnknownGroupsAreRefusedWithTheNearestRole) {
  const auto mesh = BrickMold(kSmall).mesh;
  const std::tuple<std::string, std::string, std::string> rows[] = {
      {"moldbase", "mouldbase",
       "volume group 'mouldbase': no known role; the nearest is moldbase or moldbase:MATERIAL"},
      {"moldbase", "inlet:1", "volume group 'inlet:1': the role inlet:1 is for surface groups"},
      {"insert:5002", "insert:12",
       "volume group 'insert:12': expected insert:MATERIAL with a number in 5002..9999, "
       "found '12'"},
  };
  for (const auto& [from, to, expected] : rows)
    expectText(expected, refusal(writeMsh(renamed(mesh, from, to), Encoding::text41)));
  auto nameless = mesh;
  nameless.names.clear();
  expectText("no volume has a role; physical groups found: volume group 3:",
             refusal(writeMsh(nameless, Encoding::binary22)));
  auto surface = BrickMold(kSmall);
  surface.nameFace("symmetry", 0, 0, 0, 0);
  expectText("surface group 'symmetry': no known role", refusal(writeMsh(surface.mesh, Encoding::text41)));
  surface.mesh.elements.back().group = 0;
  EXPECT_EQ(1U, Imported(surface.mesh).report.ignored.back().elements);
}

TEST(Roles, VolumesWithoutGroupAndElementsOfHighOrderAreRefused) {
  auto loose = BrickMold(kSmall).mesh;
  loose.elements.back().group = 0;
  loose.elements.back().entity = 77;
  for (const auto encoding : {Encoding::text41, Encoding::text22})
    expectText("volume entity 77 (element 12 and others) belongs to no physical group",
               refusal(writeMsh(loose, encoding)));
  auto cubic = BrickMold(kSmall, Cells::tetrahedra).mesh;
  for (auto& element : cubic.elements) {
    element.type = 29;
    element.nodes.resize(20, 1);
  }
  expectText(
      "'channel:1', element 1: a tetrahedron of order 3 (type 29); elements of first and second order are "
      "taken",
      refusal(writeMsh(cubic, Encoding::binary41)));
  auto shared = BrickMold(kSmall).mesh;
  auto text = writeMsh(shared, Encoding::text41);
  const auto at = text.find(" 1 8 2 7 -7\n");  // the entity of group 8, which is 'part'
  ASSERT_NE(std::string::npos, at);
  text.replace(at, 4, " 2 8 4");
  expectText("is in two roles, volume group", refusal(text));
}

TEST(Roles, FileMapsGroupsAndIgnoresOthers) {
  auto mold = BrickMold("MCM/MPX");
  mold.nameFace("face", 0, 0, 0, 0);
  auto mesh = renamed(renamed(mold.mesh, "part", "Cavity"), "ignore", "junk");
  mesh = renamed(mesh, "moldbase", "");
  const auto moldGroup = std::to_string(mesh.elements[1].group);
  std::string pair;
  for (const auto& [dimension, tag, name] : mesh.names)
    if (name.empty()) pair = std::to_string(dimension) + ":" + std::to_string(tag);
  const Imported imported(mesh, {},
                          R"({"groups": {"Cavity": "part:3", ")" + pair +
                              R"(": "moldbase:4", "junk": "ignore"}, "unlisted": "ignore"})");
  EXPECT_EQ(3, imported.model().elemP.material(1));
  EXPECT_EQ(4, imported.model().elemM.material(1));
  ASSERT_EQ(2U, imported.report.ignored.size());
  EXPECT_EQ("surface group 'face'", imported.report.ignored[0].what);
  EXPECT_EQ("volume group 'junk'", imported.report.ignored[1].what);
}

TEST(Roles, FileCarriesWhatAMeshCannot) {
  auto mold = BrickMold(kSmall);
  mold.nameFace("clamped", 0, 0, 0, 0);
  const Imported imported(mold.mesh, {}, R"({
    "sensors": [{"type": 4, "display": 9, "position": [0.5, 0.5, 1.5]}, {"type": 6, "display": 2, "position": [0, 0, 0]}],
    "boundaryConditions": [{"group": "clamped", "code": "OM", "value": 0.5}, {"node": 5, "code": "SM", "value": -1}],
    "bcNames": [{"name": "gate", "type": 7, "thickness": 2.5, "branchNumber": 3}, {"name": "plain", "type": 1}],
    "layerNames": {"insert:5002": {"name": "H13", "flag": 4}, "moldbase": "P20", "channel:1": "water"},
    "coolantLines": [{"channel": "heater:4", "from": [1, 2, 3], "to": [4, 5, 6], "diameter": [7, 8]}],
    "layout": {"points": [{"type": 1, "position": [0, 0, 0]}, {"type": 2, "position": [1, 0, 0]}],
               "beams": [{"from": 2, "to": 1, "diameter": 6, "code": 11, "beamCode": 12}]},
    "moldInsert": {"points": [[0, 0, 0], [1, 0, 0], [0, 1, 0]], "faces": [{"nodes": [1, 2, 3], "codes": [4, 5]}]},
    "channelSurface": {"points": [[9, 8, 7]], "faces": []},
    "partingDirection": [0, 1, 0]})");
  const auto& m = imported.model();
  EXPECT_EQ(9, m.sensors[3].at(0).ids[2]);
  EXPECT_EQ(2, m.sensors[5].at(0).ids[1]);
  ASSERT_EQ(5, m.conditions.count());
  EXPECT_STREQ("OM", m.conditions[4].code);
  EXPECT_EQ(5, m.conditions[5].entityNo);
  EXPECT_STREQ("SM", m.conditions[5].code);
  ASSERT_EQ(2U, m.bcNames.size());
  EXPECT_EQ(3, m.bcNames[0].branchNumber);
  EXPECT_EQ(2.5, m.bcValues.at(static_cast<std::size_t>(m.bcNames[0].valueIndex)));
  EXPECT_EQ("H13", m.moldMetalLayers.at(0).name);
  EXPECT_EQ("P20", m.moldMetalLayers.at(1).name);
  EXPECT_EQ(4, m.moldMetalLayers.at(0).additionalFlag);
  EXPECT_EQ(0, m.moldMetalLayers.at(1).additionalFlag);
  EXPECT_EQ("H13", m.partInsertLayers.at(0).name);
  EXPECT_EQ("water", m.channelLayers.at(0).name);
  EXPECT_EQ(8, m.lines.at(0).ends[1].values[3]);
  EXPECT_EQ(4, m.lines.at(0).ends[1].codes[0]);
  EXPECT_EQ(11, m.beamSegments.at(0).segCode);
  EXPECT_EQ(12, m.beamSegments.at(0).values[3]);
  EXPECT_EQ(5, m.moldInsert.faces.at(0).faceCodeB);
  EXPECT_EQ(8, m.channelSurface.points.at(0).y);
  EXPECT_EQ(1, m.partingDirection[1]);
}

TEST(Roles, FileErrorsNameTheirPlace) {
  auto mold = BrickMold(kSmall);
  mold.addPoint("sensor:5:1", 0, 0, 0);
  const auto mesh = writeMsh(mold.mesh, Encoding::binary41);
  const std::pair<const char*, const char*> rows[] = {
      {"{", "roles.json: line 1: is no valid JSON"},
      {R"({"group": {}})", "unknown key 'group'; the nearest is 'groups'"},
      {R"({"groups": {"prat": "part"}})",
       "groups.prat: the mesh has no such group; the nearest name is 'part'"},
      {R"({"groups": {"part": "parts"}})", "groups.part: 'parts': no known role; the nearest is part"},
      {R"({"unlisted": "maybe"})", "unlisted: expected refuse or ignore, found 'maybe'"},
      {R"({"sensors": [{"type": 4, "display": 9}]})", "sensors[0]: needs the key 'position'"},
      {R"({"sensors": [{"type": 9, "display": 9}]})",
       "sensors[0].type: expected an integer in 1..6, found 9"},
      {R"({"sensors": [{"type": 1, "display": 9, "position": [1, 2, 1e39]}]})", "position[2]: is not finite"},
      {R"({"sensors": [{"type": 1, "display": 18446744073709551615, "position": []}]})",
       "display: expected an integer"},
      {R"({"boundaryConditions": [{"code": "EM", "value": 1}]})",
       "boundaryConditions[0]: needs either 'group' or"},
      {R"({"boundaryConditions": [{"node": 1, "code": "XX", "value": 1}]})",
       "code: expected EM, EC, OM, PR, MW or SM"},
      {R"({"boundaryConditions": [{"node": 999, "code": "EM", "value": 1}]})",
       "node: the mesh has no node 999"},
      {R"({"layerNames": {"insert:5009": "x"}})", "layerNames.insert:5009: the mesh has no such volumes"},
      {R"({"layerNames": {"part": "x"}})", "layerNames.part:1: plastic has no layers"},
      {R"({"coolantLines": [{"channel": "part", "from": [], "to": [], "diameter": 1}]})",
       "channel: expected channel:"},
      {R"({"layout": {"points": [], "beams": [{"from": 1}]}})", "beams[0].from: expected an integer in 1..0"},
      {R"({"moldInsert": {"points": [[0, 0, 0]], "faces": [{"nodes": [1, 1]}]}})",
       "nodes: expected 3 to 4 entries"},
      {R"({"bcNames": [{"name": "a", "type": 1}, {"name": "b", "type": 1, "groups": ["part", "mouldbase"]}]})",
       "bcNames[1].groups[1]: the mesh has no elements of group 'mouldbase'; the nearest name is 'moldbase'"},
      {R"({"bcNames": [{"name": "a", "type": 1, "groups": ["sensor:5:1"]}]})",
       "bcNames[0].groups[0]: point group 'sensor:5:1' has no faces; expected a surface or volume group"},
      {R"({"layerNames": {"channel:1": {"name": "x", "flag": 1}}})",
       "layerNames.channel:1.flag: only layers of moldbase and insert have one"},
      {R"({"channelSurface": {"points": [[0, 0, 0]], "faces": [{"nodes": [1, 1, 2]}]}})",
       "channelSurface.faces[0].nodes[2]: expected an integer in 1..1, found 2"},
      {R"({"badQuality": 1.5})", "badQuality: expected a number from 0 to 1"},
      {R"({"partingDirection": [0, 0, 0]})", "partingDirection: must not be zero"},
  };
  for (const auto& [json, expected] : rows) expectText(expected, refusal(mesh, json));
}

TEST(Sensors, SitOnWhatHoldsThemOrIsNearest) {
  auto mold = BrickMold("MPPM/MMMM", Cells::tetrahedra);
  mold.addPoint("sensor:1:11", 2.9, 0.5, 0.4);  // in the second part cell
  mold.addPoint("sensor:1:10", 50, 0.9, 0.9);   // outside, nearest to its end
  mold.addPoint("sensor:2:12", 1.9, 0.1, 0.9);
  mold.addPoint("sensor:3:13", 1.5, -0.1, 0.25);
  mold.addPoint("sensor:4:14", 0.5, 1.4, 0.6);
  mold.addPoint("sensor:5:15", 9, 9, 9);
  importing::ImportOptions options;
  options.dropUnused = true;
  const Imported imported(mold.mesh, options);
  const auto& m = imported.model();
  const auto isNear = [&](const ElementTable& table, std::int32_t element, double x) {
    double middle = 0;
    for (const auto node : table.nodes(element)) middle += m.nodes[node].x / 4;
    return std::abs(middle - x) <= 0.5;
  };
  ASSERT_EQ(2U, m.sensors[0].size());
  EXPECT_EQ(10, m.sensors[0][0].ids[2]) << "ordered by display number";
  EXPECT_TRUE(isNear(m.elemP, m.sensors[0][0].ids[0], 2.5));
  EXPECT_TRUE(isNear(m.elemP, m.sensors[0][1].ids[0], 2.5));
  EXPECT_FLOAT_EQ(50, static_cast<float>(m.sensors[0][0].x))
      << "the position is the point's, its node being dropped";
  EXPECT_EQ(static_cast<int>(mold.node(2, 0, 1)), m.sensors[1][0].ids[0]);
  const auto& surface = m.sensors[2][0];
  EXPECT_EQ(surface.ids[0], surface.ids[1]);
  EXPECT_EQ(1, m.surfaces[surface.ids[0]].interfaceId);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(0, m.nodes[m.surfaces[surface.ids[0]].nodes[k]].y);
  EXPECT_TRUE(isNear(m.elemM, m.sensors[3][0].ids[0], 0.5));
  EXPECT_EQ(static_cast<int>(mold.node(4, 2, 1)), m.sensors[4][0].ids[0]);
  auto twice = mold;
  twice.addPoint("sensor:2:12", 0, 0, 0);
  expectText("sensor:2:12 stands twice", refusal(writeMsh(twice.mesh, Encoding::text41)));
  BrickMold bare("M");
  bare.addPoint("sensor:1:1", 0, 0, 0);
  expectText("sensor:1:1 needs a part element; the mesh has none",
             refusal(writeMsh(bare.mesh, Encoding::text41)));
}
