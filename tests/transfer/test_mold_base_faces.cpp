#include <filesystem>
#include <map>

#include "support/files.h"
#include "transfer/mold.h"

using namespace orvmesh::test;

namespace {

// One mold tetrahedron per neighbour: M1 on the part, M2 on a channel.
const char* const kMesh =
    R"({ "format": "ofe-json", "version": 1, "header": { "fields": { "0": VERSION, "29": SCALE } },
  "nodes": [[0,0,0],[1,0,0],[0,1,0],[0,0,1],[0,0,-1],[5,0,0],[6,0,0],[5,1,0],[5,0,1],[5,0,-1],[9,9,9]],
  "elementsPlastic": [{ "nodes": [1, 2, 3, 4], "a": 17, "b": 1 }],
  "elementsMoldBase": [{ "nodes": [1, 2, 3, 5], "a": 3, "b": 1 }, { "nodes": [6, 7, 8, 10], "a": 3, "b": 1 }],
  "elementsCoolChannel": [{ "nodes": [6, 7, 8, 9], "a": 2, "b": 1000 }],
  "coolantChannelDiameters": [{ "nodes": [6, 8, 7], "diameter": 3.999 }],
  "elementSurfaces": [
    { "nodes": [1, 2, 3, 3], "interfaceId": 1, "ownerCode": 1, "contactCode": 3, "boundaryType": 5, "elementNo": 1, "tag": 7 },
    { "nodes": [1, 2, 3, 3], "interfaceId": 1, "ownerCode": 1, "contactCode": 3, "boundaryType": 6, "elementNo": 1, "tag": 7 },
    { "nodes": [1, 2, 4, 4], "interfaceId": 1, "ownerCode": 1, "contactCode": 0, "boundaryType": 0, "elementNo": 1, "tag": 7 },
    { "nodes": [3, 1, 2, 2], "interfaceId": 2, "ownerCode": 3, "contactCode": 4, "boundaryType": 8, "elementNo": 1, "tag": 9 },
    { "nodes": [7, 8, 6, 6], "interfaceId": 2, "ownerCode": 3, "contactCode": 4, "boundaryType": 8, "elementNo": 2, "tag": 9 },
    { "nodes": [6, 7, 10, 10], "interfaceId": 2, "ownerCode": 3, "contactCode": 4, "boundaryType": 8, "elementNo": 2, "tag": 9 },
    { "nodes": [6, 8, 7, 7], "interfaceId": 3, "ownerCode": 2, "contactCode": 3, "boundaryType": 8, "elementNo": 1, "tag": 1280 },
    { "nodes": [6, 7, 8, 8], "interfaceId": 3, "ownerCode": 2, "contactCode": 3, "boundaryType": 1048579, "elementNo": 1, "tag": 256000 },
    { "nodes": [6, 7, 9, 9], "interfaceId": 4, "ownerCode": 2, "contactCode": 2, "boundaryType": 8, "elementNo": 1, "tag": 9 },
    { "nodes": [1, 2, 4, 5], "interfaceId": 7, "ownerCode": 2, "contactCode": 2, "boundaryType": 8, "elementNo": 1, "tag": 9 }] })";

Lines expectedFaces(bool tagged) {
  const std::string part = tagged ? " 7" : " 0";
  const std::string other = tagged ? " 9" : " 0";
  // 3.999 times 100 is truncated; the channel's own face has its nodes in the order of the diameter entry.
  return {"1 2 3 3 | 1 1 3 0 1" + part,    "3 1 2 2 | 1 17 3 0 1" + other,   "7 8 6 6 | 1 2 3 1 399 8003e800",
          "6 7 10 10 | 1 3 4 5 2" + other, "6 8 7 7 | 1 2 3 1 399 80000800", "6 7 8 8 | 1 2 3 1 80 80000300",
          "6 7 9 9 | 4 2 2 8 1" + other,   "1 2 4 5 | 7 2 2 8 1" + other};
}

std::string meshOf(const char* version, const char* scale = "1") {
  std::string text = kMesh;
  text.replace(text.find("VERSION"), 7, version);
  return text.replace(text.find("SCALE"), 5, scale);
}

std::map<std::string, std::size_t> trianglesByFile(const std::string& source) {
  std::map<std::string, std::size_t> found;
  const std::filesystem::path path(source);
  const std::string name = path.filename().string() + ".Trans_";
  for (const auto& entry : std::filesystem::directory_iterator(path.parent_path()))
    if (const auto file = entry.path().filename().string(); file.rfind(name, 0) == 0)
      found[file.substr(name.size())] = (entry.file_size() - 84) / 50;
  return found;
}

TEST(MoldBaseFaces, OldSourcesLoseTheirTags) {
  const TempDir dir;
  COrvMeshFormatTransfer transfer;
  for (const auto& [version, tagged] :
       std::map<const char*, bool>{{"2008", false}, {"2009", true}, {"14001", true}}) {
    runVariant(transfer, "moldbase", writeOfe(dir, meshOf(version)), dir / "target.ofe");
    const auto file = readOfe(dir / "target.ofe");
    EXPECT_EQ(surfaceLines(file), expectedFaces(tagged)) << version;
    EXPECT_EQ(file["header"]["fields"]["7"], 8) << version;
  }
}

TEST(MoldBaseFaces, EachClassIsDrawnIntoItsFile) {
  const TempDir dir;
  COrvMeshFormatTransfer transfer;
  const std::string source = writeOfe(dir, meshOf("14001"));
  runVariant(transfer, "moldbase", source, dir / "target.ofe");
  EXPECT_TRUE(trianglesByFile(source).empty());

  transfer.SetSTLDiagnostics(true);
  ::testing::internal::CaptureStdout();
  runVariant(transfer, "moldbase", source, dir / "target.ofe");
  EXPECT_NE(::testing::internal::GetCapturedStdout().find("count_Part     =2\n, count_Air    =1\n"),
            std::string::npos);
  EXPECT_EQ(surfaceLines(readOfe(dir / "target.ofe")), expectedFaces(true));
  const std::map<std::string, std::size_t> expected{
      {"MBFace2_NonMatchPart.stl", 1}, {"MBFace2_CC.stl", 3},     {"MBFace2_MatchPart.stl", 1},
      {"PartSurfNoMatch.stl", 1},      {"MBFace2_Air.stl", 1},    {"MBFace2_CCEnd.stl", 1},
      {"MBFace2_Group8.stl", 1},       {"MBFace2_Group9.stl", 2}, {"AllFace.stl", 11}};
  EXPECT_EQ(trianglesByFile(source), expected);

  // Drawn in the lengths of the file, whatever its scale.
  const std::string scaled = writeOfe(dir, meshOf("14001", "0.25"));
  runVariant(transfer, "moldbase", scaled, dir / "target.ofe");
  EXPECT_EQ(bytesOf(scaled + ".Trans_AllFace.stl"), bytesOf(source + ".Trans_AllFace.stl"));
}

}  // namespace
