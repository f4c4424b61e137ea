#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

// The expected entries were worked out by hand from the mold in mold.h.
class Variants : public Transfers {
 protected:
  nlohmann::json run(const std::string& variant, int expectedResult = 1) {
    auto file = transferred(variant, mold());
    EXPECT_EQ(result, expectedResult);
    EXPECT_EQ(file["nodes"], mold()["nodes"]);
    for (const char* text : {"source", "dateTime", "unit", "remark"})
      EXPECT_EQ(file["header"][text], mold()["header"][text]);
    return file;
  }
  static std::string conditions(const nlohmann::json& file) {
    std::string text;
    for (const auto& c : file.value("boundaryConditions", nlohmann::json::array()))
      text += c["entityNo"].dump() + ":" + c["type"].dump() + ":" + c["value"].dump() + " ";
    return text;
  }
};

const char* const kConditions = "3:0:1 4:1:2.5 5:1:3 6:2:4 7:3:5 8:4:6 9:5:7 10:6:8 11:6:9 ";
const Lines kJoinedPlastic{"1 2 3 4 | 1 200", "2 3 4 5 | 2 201",  "3 4 5 6 | 1 300",
                           "4 5 6 7 | 1 301", "1 2 3 8 | 1 5002", "9 10 11 12 | 1 10001"};
const Lines kContactFaces{"2 8 1 1 | 1 1 1 0 0 1", "9 11 10 10 | 1 5001 1 0 0 1",
                          "11 12 10 10 | 1 10002 1 0 0 1"};

TEST_F(Variants, ChannelsBecomeThePart) {
  const auto file = run("channels");
  EXPECT_EQ(elementLines(file, "elementsPlastic"), (Lines{"12 13 15 16 | 1001 201", "13 14 16 1 | 1003 201",
                                                          "2 14 15 16 | 1004 201", "13 14 15 1 | 1003 201"}));
  // Inlets: the layout point takes entry 1; surface inlets 2 and 6 count from 1 again.
  EXPECT_EQ(surfaceLines(file), (Lines{"12 13 15 15 | 1 1 10002 0 1 0", "12 15 16 16 | 1 1 1 1 1 80000100",
                                       "13 14 16 16 | 1 1 1 0 2 80000100", "13 14 16 16 | 1 1 1 7 2 4d",
                                       "2 14 15 15 | 1 1 1 0 3 4e", "13 15 16 16 | 1 1 10002 0 1 4e",
                                       "12 13 16 16 | 1 1 1 1 1 80000600"}));
  EXPECT_EQ(conditions(file), "3:0:1 4:2:2.5 5:2:3 6:1:4 7:3:5 8:4:6 9:5:7 10:6:8 11:6:9 ");
}

TEST_F(Variants, HotRunnerKeepsItsFacesAndRenumbersGates) {
  const auto file = run("hot-runner");
  EXPECT_EQ(elementLines(file, "elementsPlastic"), (Lines{"2 3 4 5 | 1 1", "3 4 5 6 | 1 100"}));
  EXPECT_EQ(surfaceLines(file),
            (Lines{"2 3 5 5 | 1 2 1 1 1 1", "3 4 5 5 | 1 1 1 7 2 50000103", "2 4 5 5 | 1 2 1 5 1 8",
                   "4 5 6 7 | 1 1 1 7 0 206", "1 2 4 4 | 1 1 1 0 0 1", "3 5 6 6 | 1 1 1 0 2 1"}));
  EXPECT_EQ(conditions(file), kConditions);
  EXPECT_EQ(file["partingDirection"], nlohmann::json({0, 0.5, 1}));
}

TEST_F(Variants, StreamLineDoublesTheContactCode) {
  const auto file = run("stream-line");
  EXPECT_EQ(elementLines(file, "elementsPlastic"),
            (Lines{"1 2 3 4 | 1 200", "2 3 4 5 | 2 201", "3 4 5 6 | 1 300", "4 5 6 7 | 1 301"}));
  EXPECT_EQ(file["elementsPlastic"][0]["value"], 0.5);
  const auto lines = surfaceLines(file);
  ASSERT_EQ(lines.size(), 18U);
  EXPECT_EQ(lines[2], "2 3 5 5 | 1 1 1 1 2 1");
  EXPECT_EQ(lines[4], "3 4 6 6 | 1 0 0 7 3 0");
  EXPECT_EQ(lines[6], "4 5 6 7 | 1 1 1 9 4 306");
  EXPECT_EQ(lines[16], "5 6 7 7 | 7 9 9 5 99 b");
}

TEST_F(Variants, MoldBaseBecomesThePart) {
  const auto file = run("moldbase");
  EXPECT_EQ(elementLines(file, "elementsPlastic"),
            (Lines{"1 2 3 8 | 1 5002", "1 2 8 9 | 1 1", "8 9 10 11 | 1 5001", "9 10 11 12 | 1 10001",
                   "10 11 12 15 | 1 6002", "13 14 15 16 | 1 10900", "12 13 14 15 16 | 1 6905"}));
  // The inlet list is 1, 1, 2: layout point, then the surface inlets 2 and 6 from 1 on.
  EXPECT_EQ(surfaceLines(file),
            (Lines{"1 3 2 2 | 1 1 5002 0 1 1", "1 2 3 3 | 1 1 5002 0 1 0", "3 4 5 5 | 1 1 1 0 3 50000203",
                   "2 4 5 5 | 1 2 1 0 2 10", "3 5 6 6 | 1 1 1 0 3 0",
                   "12 13 15 15 | 1 1 10002 1 812 80000100", "12 15 16 16 | 4 1 1 9 1 80000200",
                   "13 14 16 16 | 1 2 1 1 80 80000300", "13 14 16 16 | 4 2 0 30 2 4d",
                   "2 14 15 15 | 4 3 2 4 3 4e", "13 15 16 16 | 1 1 10002 1 80 80000100",
                   "12 13 16 16 | 4 1 1 6 1 0", "5 6 7 7 | 7 8 9 5 99 b", "1 3 4 4 | 1 1 1 0 1 903"}));
  EXPECT_EQ(conditions(file), kConditions);
  COrvCCDataForSolver groups;
  transfer.GetCCCombineMeshDataAndMemory(groups);
  EXPECT_EQ(groups.m_NGroupHeater, 1);   // group 5; group 0 never counts
  EXPECT_EQ(groups.m_NGroupCoolant, 4);  // the numbers below it
}

TEST_F(Variants, PartInsertsJoinThePart) {
  const auto file = run("part-inserts");
  EXPECT_EQ(elementLines(file, "elementsPlastic"), kJoinedPlastic);
  EXPECT_EQ(elementLines(file, "elementsMoldBase"),
            (Lines{"1 2 8 9 | 1 12", "8 9 10 11 | 5001 13", "10 11 12 15 | 10002 15",
                   "13 14 15 16 | 10900 16", "12 13 14 15 16 | 10905 17"}));
  EXPECT_EQ(elementLines(file, "elementsCoolChannel"),
            (Lines{"12 13 15 16 | 1 1", "13 14 16 1 | 2 3", "2 14 15 16 | 3 4", "13 14 15 1 | 2 3"}));
  // The source's own faces but for the two on the part/insert face, then the new ones.
  auto expected = surfaceLines(mold());
  expected[2] = "2 3 5 5 | 1 2 1 1 2 1";
  expected.erase(expected.begin(), expected.begin() + 2);
  expected.insert(expected.end(), kContactFaces.begin(), kContactFaces.end());
  EXPECT_EQ(surfaceLines(file), expected);
  EXPECT_EQ(conditions(file), kConditions);
  EXPECT_EQ(file["badElementsMoldBase"], nlohmann::json::parse("[[1, 7], [6, 9], [4, 10]]"));
  EXPECT_EQ(file["badElementsCoolChannel"], nlohmann::json::parse("[[1, 11], [2, 12], [3, 13], [4, 14]]"));
}

TEST_F(Variants, PartInsertsAndChannelsMoveHeatersToTheMold) {
  const auto file = run("part-inserts-channels", 3);
  EXPECT_EQ(elementLines(file, "elementsPlastic"), kJoinedPlastic);
  EXPECT_EQ(
      elementLines(file, "elementsMoldBase"),
      (Lines{"1 2 8 9 | 1 12", "8 9 10 11 | 5001 13", "10 11 12 15 | 10002 15", "13 14 15 16 | 10900 16",
             "12 13 14 15 16 | 10905 17", "13 14 16 1 | 10903 3", "13 14 15 1 | 10903 3"}));
  EXPECT_EQ(elementLines(file, "elementsCoolChannel"), (Lines{"12 13 15 16 | 1 1", "2 14 15 16 | 3 4"}));
  auto expected = surfaceLines(mold());
  expected[2] = "2 3 5 5 | 1 2 1 1 2 1";
  expected[12] = "13 14 16 16 | 2 2 0 1 2 4d";  // ends of heaters; kind 3 counts as one
  expected[13] = "2 14 15 15 | 2 3 2 1 3 4e";
  expected.erase(expected.begin() + 11);  // the heater wall
  expected.erase(expected.begin(), expected.begin() + 2);
  expected.insert(expected.end(), kContactFaces.begin(), kContactFaces.end());
  EXPECT_EQ(surfaceLines(file), expected);
  EXPECT_EQ(file["badElementsPlastic"], nlohmann::json::parse("[[2, 5], [3, 15], [4, 16], [5, 6], [2, 8]]"));
  EXPECT_EQ(file["badElementsMoldBase"],
            nlohmann::json::parse("[[1, 7], [6, 9], [4, 10], [6, 12], [7, 14]]"));
  EXPECT_EQ(file["badElementsCoolChannel"], nlohmann::json::parse("[[1, 11], [2, 13]]"));
}

}  // namespace
