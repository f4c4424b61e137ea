#include "import/imported.h"
#include "import/roles.h"

using namespace orvmesh;
using namespace orvmesh::test;
using namespace std::string_literals;

namespace {

constexpr const char* kSmall = "MCM/MPI MMM/MMM";

Msh renamed(Msh mesh, const std::string& from, const std::string& to) {
  for (auto& [dimension, tag, name] : mesh.names)
    if (name == from) name = to;
  return mesh;
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
  EXPECT_EQ("no known role; the nearest is hotrunner:GROUP", parseRole("hot_runner:201").problem);
}

TEST(Roles, GroupsWithoutAFittingRoleAreRefused) {
  const auto mesh = BrickMold(kSmall).mesh;
  expectRefusal("volume group 'inlet:1': the role inlet:1 is for surface groups",
                renamed(mesh, "moldbase", "inlet:1"));
  expectRefusal("volume group 'insert:12': expected insert:MATERIAL with a number in 5002..9999, found '12'",
                renamed(mesh, "insert:5002", "insert:12"));
  auto nameless = mesh;
  nameless.names.clear();
  expectRefusal("no volume has a role; physical groups found: volume group 3:", nameless);
  auto surface = BrickMold(kSmall);
  surface.nameFace("symmetry", 0, 0, 0, 0);
  expectRefusal("surface group 'symmetry': no known role", surface.mesh);
  surface.mesh.elements.back().group = 0;
  EXPECT_EQ(1U, Imported(surface.mesh).report.ignored.back().elements);
}

TEST(Roles, VolumesWithoutGroupAndElementsOfHighOrderAreRefused) {
  const auto mesh = BrickMold(kSmall).mesh;
  auto loose = mesh;
  loose.elements.back().group = 0;
  loose.elements.back().entity = 77;
  for (const auto encoding : {Encoding::text41, Encoding::text22})
    expectRefusal("volume entity 77 (element 12 and others) belongs to no physical group",
                  writeMsh(loose, encoding));
  auto cubic = BrickMold(kSmall, Cells::tetrahedra).mesh;
  for (auto& element : cubic.elements) {
    element.type = 29;
    element.nodes.resize(20, 1);
  }
  expectRefusal(
      "'channel:1', element 1: a tetrahedron of order 3 (type 29); elements of first and second order",
      cubic);
  // The entity of group 8, which is 'part'.
  expectRefusal("is in two roles, volume group",
                replaced(writeMsh(mesh, Encoding::text41), " 1 8 2 7 -7\n", " 2 8 4 2 7 -7\n"));
}

TEST(Roles, FileMapsGroupsAndIgnoresOthers) {
  auto mold = BrickMold("MCM/MPX");
  mold.nameFace("face", 0, 0, 0, 0);
  auto mesh = renamed(renamed(mold.mesh, "part", "Cavity"), "ignore", "junk");
  mesh = renamed(mesh, "moldbase", "");  // group 6
  const Imported imported(mesh, {}, R"({"unlisted": "ignore",
    "groups": {"Cavity": "part:3", "3:6": "moldbase:4", "junk": "ignore"}})");
  EXPECT_EQ(3, imported.model().elemP.material(1));
  EXPECT_EQ(4, imported.model().elemM.material(1));
  std::vector<std::string> ignored;
  for (const auto& each : imported.report.ignored) ignored.push_back(each.what);
  EXPECT_EQ((std::vector{"surface group 'face'"s, "volume group 'junk'"s}), ignored);
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
  EXPECT_EQ(std::pair(9, 2), std::pair(m.sensors[3].at(0).ids[2], m.sensors[5].at(0).ids[1]));
  ASSERT_EQ(5, m.conditions.count());
  EXPECT_EQ(std::tuple("OM"s, "SM"s, 5),
            std::tuple(m.conditions[4].code, m.conditions[5].code, m.conditions[5].entityNo));
  ASSERT_EQ(2U, m.bcNames.size());
  EXPECT_EQ(3, m.bcNames[0].branchNumber);
  EXPECT_EQ(2.5, m.bcValues.at(static_cast<std::size_t>(m.bcNames[0].valueIndex)));
  std::vector<std::string> layers;
  for (const auto* const table : {&m.moldMetalLayers, &m.partInsertLayers, &m.channelLayers})
    for (const auto& layer : *table) layers.push_back(layer.name + std::to_string(layer.additionalFlag));
  EXPECT_EQ((std::vector{"H134"s, "P200"s, "H134"s, "water0"s}), layers);
  const auto& lineEnd = m.lines.at(0).ends[1];
  EXPECT_EQ(std::pair(8.0F, 4), std::pair(lineEnd.values[3], lineEnd.codes[0]));
  EXPECT_EQ(std::pair(11, 12), std::pair(m.beamSegments.at(0).segCode, m.beamSegments.at(0).values[3]));
  EXPECT_EQ(5, m.moldInsert.faces.at(0).faceCodeB);
  EXPECT_EQ(8, m.channelSurface.points.at(0).y);
  EXPECT_EQ(1, m.partingDirection[1]);
}

TEST(Roles, FileErrorsNameTheirPlace) {
  auto mold = BrickMold(kSmall);
  mold.addPoint("sensor:5:1", 0, 0, 0);
  const std::pair<const char*, const char*> rows[] = {
      {"roles.json: line 1: is no valid JSON", "{"},
      {"unknown key 'group'; the nearest is 'groups'", R"({"group": {}})"},
      {"groups.prat: the mesh has no such group; the nearest name is 'part'",
       R"({"groups": {"prat": "part"}})"},
      {"groups.part: 'parts': no known role; the nearest is part", R"({"groups": {"part": "parts"}})"},
      {"unlisted: expected refuse or ignore, found 'maybe'", R"({"unlisted": "maybe"})"},
      {"sensors[0]: needs the key 'position'", R"({"sensors": [{"type": 4, "display": 9}]})"},
      {"position[2]: is not finite", R"({"sensors": [{"type": 1, "display": 9, "position": [1, 2, 1e39]}]})"},
      {"display: expected an integer", R"({"sensors": [{"type": 1, "display": 18446744073709551615}]})"},
      {"boundaryConditions[0]: needs either 'group' or",
       R"({"boundaryConditions": [{"code": "EM", "value": 1}]})"},
      {"code: expected EM, EC, OM, PR, MW or SM", R"({"boundaryConditions": [{"node": 1, "code": "XX"}]})"},
      {"node: the mesh has no node 999",
       R"({"boundaryConditions": [{"node": 999, "code": "EM", "value": 1}]})"},
      {"layerNames.insert:5009: the mesh has no such volumes", R"({"layerNames": {"insert:5009": "x"}})"},
      {"layerNames.part:1: plastic has no layers", R"({"layerNames": {"part": "x"}})"},
      {"layerNames.channel:1.flag: only layers of moldbase and insert have one",
       R"({"layerNames": {"channel:1": {"name": "x", "flag": 1}}})"},
      {"coolantLines[0].channel: expected channel:", R"({"coolantLines": [{"channel": "part"}]})"},
      {"beams[0].from: expected an integer in 1..0", R"({"layout": {"points": [], "beams": [{"from": 1}]}})"},
      {"nodes: expected 3 to 4 entries", R"({"moldInsert": {"points": [], "faces": [{"nodes": [1, 1]}]}})"},
      {"channelSurface.faces[0].nodes[2]: expected an integer in 1..1, found 2",
       R"({"channelSurface": {"points": [[0, 0, 0]], "faces": [{"nodes": [1, 1, 2]}]}})"},
      {"bcNames[1].groups[1]: the mesh has no elements of group 'mouldbase'; the nearest name is 'moldbase'",
       R"({"bcNames": [{"name": "a", "type": 1}, {"name": "b", "type": 1, "groups": ["part", "mouldbase"]}]})"},
      {"bcNames[0].groups[0]: point group 'sensor:5:1' has no faces; expected a surface or volume group",
       R"({"bcNames": [{"name": "a", "type": 1, "groups": ["sensor:5:1"]}]})"},
      {"badQuality: expected a number from 0 to 1", R"({"badQuality": 1.5})"},
      {"partingDirection: must not be zero", R"({"partingDirection": [0, 0, 0]})"}};
  for (const auto& [expected, json] : rows) expectRefusal(expected, mold.mesh, json);
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
  ASSERT_EQ(2U, m.sensors[0].size());
  EXPECT_EQ(10, m.sensors[0][0].ids[2]) << "ordered by display number";
  for (const auto& sensor : m.sensors[0]) EXPECT_NEAR(2.5, middleOf(m, m.elemP.nodes(sensor.ids[0]))[0], 0.5);
  EXPECT_FLOAT_EQ(50, static_cast<float>(m.sensors[0][0].x))
      << "the position is the point's, its node being dropped";
  EXPECT_EQ(static_cast<int>(mold.node(2, 0, 1)), m.sensors[1][0].ids[0]);
  const auto& surface = m.sensors[2][0];
  EXPECT_EQ(surface.ids[0], surface.ids[1]);
  EXPECT_EQ(1, m.surfaces[surface.ids[0]].interfaceId);
  for (int k = 0; k < 3; ++k) EXPECT_EQ(0, m.nodes[m.surfaces[surface.ids[0]].nodes[k]].y);
  EXPECT_NEAR(0.5, middleOf(m, m.elemM.nodes(m.sensors[3][0].ids[0]))[0], 0.5);
  EXPECT_EQ(static_cast<int>(mold.node(4, 2, 1)), m.sensors[4][0].ids[0]);
  mold.addPoint("sensor:2:12", 0, 0, 0);
  expectRefusal("sensor:2:12 stands twice", mold.mesh);
  BrickMold bare("M");
  bare.addPoint("sensor:1:1", 0, 0, 0);
  expectRefusal("sensor:1:1 needs a part element; the mesh has none", bare.mesh);
}
