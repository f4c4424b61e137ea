#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

// The tables after the boundary conditions; expectations worked out by hand from the mold in mold.h.
using Blocks = Transfers;

Lines linesOf(const nlohmann::json& file, const char* block, const auto& line) {
  Lines lines;
  for (const auto& entry : file.value(block, nlohmann::json::array())) lines.push_back(line(entry));
  return lines;
}
// "kind:ids" of every sensor.
Lines sensorLines(const nlohmann::json& file) {
  return linesOf(file, "sensors", [](const auto& s) { return s["type"].dump() + ":" + s["ids"].dump(); });
}
Lines diameterLines(const nlohmann::json& file) {
  return linesOf(file, "coolantChannelDiameters",
                 [](const auto& entry) { return entry["nodes"].dump() + entry["diameter"].dump(); });
}
std::vector<int> headerFields(const nlohmann::json& file, int first, int last) {
  std::vector<int> fields;
  for (int i = first; i <= last; ++i) fields.push_back(file["header"]["fields"].value(std::to_string(i), 0));
  return fields;
}

TEST_F(Blocks, SensorsMoveWithTheElementsTheySitOn) {
  const Lines split{"1:[2,0,0,3]", "1:[6,0,0,2]",  "1:[5,0,0,11]",  "2:[5,0,0,8]",
                    "2:[8,0,0,5]", "3:[4,2,0,6]",  "3:[99,0,0,7]",  "4:[2,0,0,1]",
                    "4:[0,0,0,9]", "5:[13,0,0,4]", "5:[-3,0,0,10]", "6:[7,1,1,1]"};
  const Lines unsplit{"1:[2,0,0,3]",   "1:[7,0,0,1]", "1:[8,0,0,2]",  "1:[103,0,0,9]",
                      "1:[5,0,0,11]",  "2:[5,0,0,8]", "2:[13,0,0,4]", "2:[8,0,0,5]",
                      "2:[-3,0,0,10]", "3:[4,2,0,6]", "3:[99,0,0,7]", "6:[7,1,1,1]"};
  const Lines ofMold{"1:[3,0,0,1]",  "1:[4,0,0,2]", "1:[99,0,0,9]", "1:[1,0,0,11]",
                     "2:[13,0,0,4]", "2:[8,0,0,5]", "2:[-3,0,0,10]"};
  const struct {
    const char* variant;
    int sourceField2;
    Lines sensors;
    std::vector<int> counts;
  } cases[] = {{"part-inserts", 0, split, {3, 2, 2, 2, 2, 1}},
               {"part-inserts-channels", 0, split, {3, 2, 2, 2, 2, 1}},
               {"part-inserts", 1, unsplit, {5, 4, 2, 0, 0, 1}},
               {"part-inserts-channels", -1, unsplit, {5, 4, 2, 0, 0, 1}},
               {"moldbase", 0, ofMold, {4, 3, 0, 0, 0, 0}}};
  for (const auto& c : cases) {
    const auto file = transferred(c.variant, moldWith("2", c.sourceField2));
    EXPECT_EQ(sensorLines(file), c.sensors) << c.variant;
    EXPECT_EQ(headerFields(file, 120, 125), c.counts) << c.variant;
  }
}

TEST_F(Blocks, DiametersKeepStaleNodesAndLeaveHeatersOut) {
  EXPECT_EQ(diameterLines(transferred("part-inserts", mold())),
            (Lines{"[12,13,15]8", "[3,4,5,6,7]10", "[12,4,5,6,7]9", "[12,13,15,6,7]8.125", "[12,6,7,6,7]7",
                   "[13,16,15,6,7]6"}));
  EXPECT_EQ(diameterLines(transferred("part-inserts-channels", mold())),
            (Lines{"[3,4,5,6,7]10", "[12,4,5,6,7]9", "[12,6,7,6,7]7"}));
}

TEST_F(Blocks, LinesLayoutAndGeometryComeBack) {
  const auto source = mold();
  const auto layout = nlohmann::json::parse(R"([
    [1, 100, 100, 100, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],
    [1, 200, 50, 25, 2, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0],
    [0, 200, 50, 25, 2, 1, 2, 8.5, 9.25, 7, 1, 21, 0.125, 0.25, 0.5, 1, 2, 3, 4, 5]])");
  for (const char* variant : {"part-inserts", "part-inserts-channels", "moldbase"})
    EXPECT_EQ(transferred(variant, source)["coolantChannelLayout"], layout);
  const auto file = transferred("part-inserts", source);
  EXPECT_EQ(file["coolantChannelLines"], source["coolantChannelLines"]);
  EXPECT_EQ(file["coolingChannelSurface"], source["coolingChannelSurface"]);
  const auto& inserts = source["moldMetal"];
  EXPECT_EQ(file["moldMetal"], nlohmann::json({inserts[1], inserts[0], inserts[2]}));
  EXPECT_EQ(headerFields(file, 126, 139), (std::vector<int>{6, 2, 2, 1, 3, 1, 2, 3, 1, 1, 2, 9, 3, 4}));
}

TEST_F(Blocks, LayoutSegmentsWithoutAPointStandAtTheOrigin) {
  auto source = mold();
  const auto segments = nlohmann::json::array({source["coolantChannelLayout"][1]});
  source["coolantChannelLayout"] = segments;
  EXPECT_EQ(transferred("moldbase", source)["coolantChannelLayout"], segments);
}

TEST_F(Blocks, ListsFollowTheNewSurfaceNumbers) {
  const auto joined = nlohmann::json::parse(
      R"([{"list":[1,2],"surfaceNo":1},{"list":[2,3,2],"surfaceNo":7},{"list":[6],"surfaceNo":14}])");
  for (const char* variant : {"part-inserts", "part-inserts-channels"})
    EXPECT_EQ(transferred(variant, mold())["surfaceBoundaryConditions"], joined) << variant;
  EXPECT_EQ(transferred("hot-runner", mold())["surfaceBoundaryConditions"],
            nlohmann::json::parse(R"([{"list":[1,2],"surfaceNo":1},{"list":[2,3,2],"surfaceNo":6}])"));
}

TEST_F(Blocks, NamesCarryThicknessOrBranches) {
  const auto names = [&](const char* variant, const nlohmann::json& source) {
    return linesOf(transferred(variant, source), "surfaceBoundaryConditionNames", [](const auto& entry) {
      return entry["name"].template get<std::string>() + entry["type"].dump() +
             (entry.contains("dictionary") ? entry["dictionary"].dump() : "");
    });
  };
  const Lines thickness{R"(wall7{"THICKNESS":"2.5"})", "first3", "second3", "third3"};
  EXPECT_EQ(names("part-inserts", mold()), thickness);
  EXPECT_EQ(names("part-inserts-channels", moldWith("29", 0.001)), thickness);
  // A branch number of 0 repeats the one before.
  EXPECT_EQ(names("hot-runner", mold()),
            (Lines{R"(wall7{"BRANCH_ID":"9","BRANCH_NUMBER":"0","BRANCH_OUTLET_ID":"0"})",
                   R"(first3{"BRANCH_ID":"1","BRANCH_NUMBER":"3","BRANCH_OUTLET_ID":"2"})",
                   R"(second3{"BRANCH_ID":"4","BRANCH_NUMBER":"3","BRANCH_OUTLET_ID":"0"})",
                   R"(third3{"BRANCH_ID":"0","BRANCH_NUMBER":"5","BRANCH_OUTLET_ID":"0"})"}));
}

TEST_F(Blocks, LayersLoseTheirNamesAndGainHeaters) {
  const auto layers = [&](const char* variant, int version, const char* block) {
    return transferred(variant, mold(version))[block].dump();
  };
  const std::string metals12 = R"([4999,2,"",0,0,0,11],[5000,4,"",0,0,0,12],[6001,1,"",0,0,0,13])";
  const std::string metals11 = R"([4999,2,"",0,0,0,0],[5000,4,"",0,0,0,0],[6001,1,"",0,0,0,0])";
  EXPECT_EQ(layers("part-inserts", 2012, "moldMetalLayers"), "[" + metals12 + "]");
  EXPECT_EQ(layers("part-inserts-channels", 2012, "moldMetalLayers"),
            "[" + metals12 + R"(,[10901,5,"",0,0,0,0],[10902,6,"",0,0,0,0]])");
  EXPECT_EQ(layers("part-inserts-channels", 2011, "moldMetalLayers"),
            "[" + metals11 + R"(,[10901,1,"",0,0,0,0],[10902,2,"",0,0,0,0]])");
  EXPECT_EQ(layers("moldbase", 2012, "partInsertLayers"),
            R"([[9999,2,"",0,0,0,11],[5000,4,"",0,0,0,12],[2001,1,"",0,0,0,13]])");
  EXPECT_EQ(layers("moldbase", 2011, "partInsertLayers"),
            R"([[9999,2,"",0,0,0,0],[5000,4,"",0,0,0,0],[2001,1,"",0,0,0,0]])");
  EXPECT_EQ(layers("part-inserts", 2012, "partInsertLayers"), R"([[5002,1,"",0,0,0,0]])");
  EXPECT_EQ(layers("moldbase", 2012, "coolantChannelLayers"), R"([[1,1,""],[10903,2,""]])");
}

// In a mesh in other units every length reaches the target as it stood in the source.
TEST_F(Blocks, LengthsSurviveTheScaleFactor) {
  const auto scaled = moldWith("29", 0.25);
  const auto expected = transferred("part-inserts", mold());
  const auto file = transferred("part-inserts", scaled);
  for (const char* block : {"nodes", "sensors", "coolantChannelDiameters", "coolantChannelLines",
                            "coolantChannelLayout", "moldMetal", "coolingChannelSurface"})
    EXPECT_EQ(file[block], expected[block]) << block;
}

}  // namespace
