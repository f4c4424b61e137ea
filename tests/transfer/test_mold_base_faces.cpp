#include <algorithm>
#include <filesystem>
#include <map>

#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

// One mold tetrahedron per neighbour: M1 on the part, M2 on a channel.
nlohmann::json meshOf(int version, double scale = 1) {
  auto mesh = nlohmann::json::parse(testData("transfer/data/mold_base_faces.json"));
  mesh["header"]["fields"] = {{"0", version}, {"29", scale}};
  return mesh;
}

Lines expectedFaces(bool tagged) {
  const std::string part = tagged ? " 7" : " 0";
  const std::string other = tagged ? " 9" : " 0";
  // 3.999 times 100 is truncated; the channel's own face has its nodes in the order of the diameter entry.
  return {"1 2 3 3 | 1 1 3 0 1" + part,    "3 1 2 2 | 1 17 3 0 1" + other,   "7 8 6 6 | 1 2 3 1 399 8003e800",
          "6 7 10 10 | 1 3 4 5 2" + other, "6 8 7 7 | 1 2 3 1 399 80000800", "6 7 8 8 | 1 2 3 1 80 80000300",
          "6 7 9 9 | 4 2 2 8 1" + other,   "1 2 4 5 | 7 2 2 8 1" + other};
}

using MoldBaseFaces = Transfers;

std::map<std::string, std::size_t> trianglesByFile(const std::string& source) {
  std::map<std::string, std::size_t> found;
  const std::string prefix = source + ".Trans_";
  for (const auto& entry : std::filesystem::directory_iterator(std::filesystem::path(source).parent_path()))
    if (const std::string file = entry.path(); file.starts_with(prefix))
      found[file.substr(prefix.size())] = (entry.file_size() - 84) / 50;
  return found;
}

TEST_F(MoldBaseFaces, OldSourcesLoseTheirTags) {
  for (const auto& [version, tagged] : std::map<int, bool>{{2008, false}, {2009, true}, {14001, true}}) {
    const auto file = transferred("moldbase", meshOf(version));
    EXPECT_EQ(surfaceLines(file), expectedFaces(tagged)) << version;
    EXPECT_EQ(file["header"]["fields"]["7"], 8) << version;
    EXPECT_EQ(file["header"]["fields"]["0"], std::max(version, 2009));
  }
}

TEST_F(MoldBaseFaces, EachClassIsDrawnIntoItsFile) {
  const std::string source = writeOfe(dir, meshOf(14001).dump());
  runVariant(transfer, "moldbase", source, "target.ofe");
  EXPECT_TRUE(trianglesByFile(source).empty());

  transfer.SetSTLDiagnostics(true);
  const std::string printed = printedBy([&] { runVariant(transfer, "moldbase", source, "target.ofe"); });
  EXPECT_NE(printed.find("count_Part     =2\n, count_Air    =1\n"), std::string::npos) << printed;
  EXPECT_EQ(surfaceLines(readOfe("target.ofe")), expectedFaces(true));
  const std::map<std::string, std::size_t> expected{
      {"MBFace2_NonMatchPart.stl", 1}, {"MBFace2_CC.stl", 3},     {"MBFace2_MatchPart.stl", 1},
      {"PartSurfNoMatch.stl", 1},      {"MBFace2_Air.stl", 1},    {"MBFace2_CCEnd.stl", 1},
      {"MBFace2_Group8.stl", 1},       {"MBFace2_Group9.stl", 2}, {"AllFace.stl", 11}};
  EXPECT_EQ(trianglesByFile(source), expected);

  // Drawn in the lengths of the file, whatever its scale.
  const std::string scaled = writeOfe(dir, meshOf(14001, 0.25).dump());
  runVariant(transfer, "moldbase", scaled, "target.ofe");
  EXPECT_EQ(bytesOf(scaled + ".Trans_AllFace.stl"), bytesOf(source + ".Trans_AllFace.stl"));
}

}  // namespace
