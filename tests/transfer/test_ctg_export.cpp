#include <filesystem>
#include <fstream>

#include "platform/ofeio.h"
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

const char* const kTwoTetrahedraText = R"([Header]
Version = 1004
Source = Test.ofe
SourceID = 0f3c2a71-5b8e-4d26-9a41-c7e09b35d812
Initial Level = 4
Plastic Level = 5
Cool Level = 3
HT Level = 0
VP Level = 0
SE Level = 0
Element = 2
Node = 5
Face = 7
Plastic Boundary Node = 1
Cool Boundary Node = 1
Air Boundary Node = 1
Plastic Boundary Face = 2
Cool Boundary Face = 3
Air Boundary Face = 2
OFE Plastic Boundary Face = 2
OFE Part Insert Node = 0
Boundary Element = 0
Sensor in Moldbase Number = 0
Inlet Boundary Face = 0
Outlet Boundary Face = 0
Part Kernel Veriosn = 0
[/Header]
[Node]
1 = 0 0 0
2 = 1 0 0
3 = 0 1.25 0
4 = 0 0 4e+06
5 = 0 0 -4e-06
[/Node]
[Element Node]
1 = 1 2 3 4 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
2 = 1 3 2 5 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0 0
[/Element Node]
[Element Property]
1 = 7 0
2 = 5002 0
[/Element Property]
[Element Face]
1 = 4 1 2 3 4
2 = 4 -1 5 6 7
[/Element Face]
[Face]
1 = 1 4 2 0
2 = 2 5 1 0
3 = 4 5 2 0
4 = 1 5 4 0
5 = 4 6 1 0
6 = 2 6 4 0
7 = 1 6 2 0
[/Face]
[Plastic Boundary Node]
1 = 1 0
[/Plastic Boundary Node]
[Cool Boundary Node]
1 = 2 3
2 = 5 3
[/Cool Boundary Node]
[Air Boundary Node]
1 = 0 0
2 = 3 0
3 = 4 0
[/Air Boundary Node]
[Plastic Boundary Face]
1 = 2 1 2
2 = 5 1 5
[/Plastic Boundary Face]
[Cool Boundary Face]
1 = 1 3
2 = 3 3
3 = 7 3
[/Cool Boundary Face]
[Air Boundary Face]
1 = 4 0
2 = 6 0
[/Air Boundary Face]
[OFE Plastic Boundary Face]
1 = 2 1 2
2 = 5 1 5
[/OFE Plastic Boundary Face]
[OFE Part Insert Node]
[/OFE Part Insert Node]
[Boundary Element]
[/Boundary Element]
[Moldbase Sensor Mapping]
[/Moldbase Sensor Mapping]
[Inlet Face]
[/Inlet Face]
[Outlet Face]
[/Outlet Face]
)";

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
