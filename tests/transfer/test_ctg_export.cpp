#include <filesystem>
#include <fstream>

#include "platform/ofeio.h"
#include "support/ctg_text.h"
#include "support/files.h"
#include "transfer/mold.h"
#include "view/ctg_mesh.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

class CtgExport : public ::testing::Test, protected OwnFolder {
 protected:
  // The result; what went to standard output is in `printed`.
  int run(std::string source, std::string target) {
    ::testing::internal::CaptureStdout();
    const int result = transfer.TransSolidOFEtoCTG(source.data(), target.data());
    printed = ::testing::internal::GetCapturedStdout();
    return result;
  }

  COrvMeshFormatTransfer transfer;
  std::string printed;
};

// Two tetrahedra on one face; node 3 belongs to none of them. The factor doubles the file's coordinates in
// the model and doubles them again on the way out.
const char* const kTwoTetrahedra = R"({"header": {"fields": {"29": 2}},
  "nodes": [[0, 0, 0], [0.25, 0, 0], [9, 9, 9], [0, 0.3125, 0], [0, 0, 1e6], [0, 0, -0.000001]],
  "elementsMoldBase": [{"nodes": [1, 2, 4, 5], "a": 7, "b": 1}, {"nodes": [1, 4, 2, 6], "a": 5002, "b": 2}],
  "elementSurfaces": [{"nodes": [1, 2, 5, 5], "interfaceId": 1}, {"nodes": [4, 5, 3, 3], "interfaceId": 2},
    {"nodes": [6, 2, 2, 2], "interfaceId": 3, "boundaryType": 3}]})";

TEST_F(CtgExport, ByteForByte) {
  EXPECT_EQ(run(writeOfe(dir, kTwoTetrahedra), "mesh.ctg"), 1);
  EXPECT_STREQ(transfer.GetErrorMessage_Link(), "");
  EXPECT_EQ(bytesOf("mesh.ctg"), kTwoTetrahedraText);
  EXPECT_EQ(
      printed,
      "NewMaxNode = 5,OriMaxNode=6\nNPartBCNode = 1,NAirBCNode1,NCoolantBCNode1,ElemS=3\nnew nface = 7\n"
      "PartBCFace = 2,CoolBCFace = 3,AirBCFace = 2\n");
  EXPECT_NE(std::string(transfer.GetWarnings_Link()).find("1 of 6 nodes"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("MeshTranslate.log"));
}

// A cube as hexahedron, pyramid, wedge and tetrahedra around each other, plus elements of no known type.
TEST_F(CtgExport, MixedElementsPassTheReader) {
  OFEIO_Manipulator writer;
  writer.header[m_HEADER_Version] = 14001;
  ASSERT_EQ(writer.beginWriting("mixed.ofe", 14001, 0), 1);
  const float points[][3] = {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1},   {1, 1, 1},
                             {0, 1, 1}, {2, 0, 0}, {2, 0, 1}, {0, 0, 2}, {5, 5, 5}, {3, 0, 0.5F}};
  for (const auto& p : points) writer.writeNodeBlockEntry(p[0], p[1], p[2]);
  const std::vector<std::vector<int>> elements = {{1, 2, 3, 4, 5, 6, 7, 8},
                                                  {1, 2, 3, 4, 5, 6, 7},
                                                  {2, 9, 3, 6, 10, 7},
                                                  {5, 6, 7, 8, 11},
                                                  {6, 10, 7, 11},
                                                  {12, 1},
                                                  {9, 3, 10, 13}};
  for (const auto& nodes : elements)
    writer.writeElementMoldBaseBlockEntry(static_cast<int>(nodes.size()), nodes.data(), 1, 1, 0);
  ASSERT_EQ(writer.endWriting(), 1);
  EXPECT_EQ(run("mixed.ofe", "mixed.ctg"), 1);
  EXPECT_NE(printed.find("Wrong Element Face\nWrong Element Face\nnew nface = 20\n"), std::string::npos)
      << printed;
  const view::CtgMesh mesh = view::readCtg("mixed.ctg");
  const view::CtgSummary summary = view::checkCtg(mesh);
  EXPECT_EQ(summary.interiorFaces, 4);
  EXPECT_EQ(summary.boundaryFaces, 16);
  EXPECT_EQ(mesh.faceOffsets, (std::vector<std::size_t>{0, 6, 6, 11, 16, 20, 20, 24}));
}

TEST_F(CtgExport, FailuresAreToldAndLeaveTheTarget) {
  const std::string source = writeOfe(dir, kTwoTetrahedra);
  std::filesystem::create_directory("folder");
  for (const char* target : {"folder", "missing/mesh.ctg", "/dev/full"}) {
    EXPECT_EQ(run(source, target), 1);
    EXPECT_TRUE(std::string(transfer.GetErrorMessage_Link())
                    .starts_with(std::string(target) + ": cannot be written"));
  }
  std::ofstream("old.ctg") << "old";
  transfer.SetStopOnRefusedSource(true);
  EXPECT_EQ(run("missing.ofe", "old.ctg"), 0);
  EXPECT_EQ(bytesOf("old.ctg"), "old");
  transfer.SetStopOnRefusedSource(false);
  EXPECT_EQ(run("missing.ofe", "empty.ctg"), 1);
  EXPECT_EQ(view::checkCtg(view::readCtg("empty.ctg")).boundaryFaces, 0);
  EXPECT_TRUE(std::string(transfer.GetErrorMessage_Link()).starts_with("missing.ofe: "));
  EXPECT_EQ(run(source, source), 1);
  EXPECT_EQ(bytesOf(source), kTwoTetrahedraText);
}

}  // namespace
