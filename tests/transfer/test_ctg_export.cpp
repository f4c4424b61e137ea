#include <filesystem>
#include <fstream>

#include "platform/ofeio.h"
#include "transfer/mold.h"
#include "view/ctg_mesh.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

class CtgExport : public Transfers {
 protected:
  // The result; what went to standard output is in `printed`.
  int run(std::string source, std::string target) {
    printed = printedBy([&] { result = transfer.TransSolidOFEtoCTG(source.data(), target.data()); });
    return result;
  }

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
  EXPECT_EQ(bytesOf("mesh.ctg"), testData("support/data/two_tetrahedra.ctg"));
  EXPECT_EQ(
      printed,
      "NewMaxNode = 5,OriMaxNode=6\nNPartBCNode = 1,NAirBCNode1,NCoolantBCNode1,ElemS=3\nnew nface = 7\n"
      "PartBCFace = 2,CoolBCFace = 3,AirBCFace = 2\n");
  EXPECT_NE(std::string(transfer.GetWarnings_Link()).find("1 of 6 nodes"), std::string::npos);
  EXPECT_FALSE(std::filesystem::exists("MeshTranslate.log"));
}

// Two tetrahedra and elements of no known type, which no JSON makes.
TEST_F(CtgExport, UnknownElementsHaveNoFaces) {
  OFEIO_Manipulator writer;
  writer.header[m_HEADER_Version] = 14001;
  ASSERT_EQ(writer.beginWriting("mixed.ofe", 14001, 0), 1);
  for (int n = 0; n < 5; ++n)
    writer.writeNodeBlockEntry(static_cast<float>(n == 1), static_cast<float>(n == 2),
                               static_cast<float>(n - 3));
  const std::vector<std::vector<int>> elements = {
      {1, 2, 3, 4}, {1, 2, 3, 4, 5, 1, 2}, {1, 3, 2, 5}, {5, 1}, {2, 3, 4, 5}};
  for (const auto& nodes : elements)
    writer.writeElementMoldBaseBlockEntry(static_cast<int>(nodes.size()), nodes.data(), 1, 1, 0);
  ASSERT_EQ(writer.endWriting(), 1);
  EXPECT_EQ(run("mixed.ofe", "mixed.ctg"), 1);
  EXPECT_NE(printed.find("Wrong Element Face\nWrong Element Face\nnew nface = 9\n"), std::string::npos)
      << printed;
  EXPECT_EQ(view::readCtg("mixed.ctg").faceOffsets, (std::vector<std::size_t>{0, 4, 4, 8, 8, 12}));
}

TEST_F(CtgExport, FailuresAreToldAndLeaveTheTarget) {
  const std::string source = writeOfe(dir, kTwoTetrahedra);
  EXPECT_EQ(run(source, "missing/mesh.ctg"), 1);
  expectTold("missing/mesh.ctg: cannot be written");
  std::ofstream("old.ctg") << "old";
  transfer.SetStopOnRefusedSource(true);
  EXPECT_EQ(run("missing.ofe", "old.ctg"), 0);
  EXPECT_EQ(bytesOf("old.ctg"), "old");
  transfer.SetStopOnRefusedSource(false);
  EXPECT_EQ(run("missing.ofe", "empty.ctg"), 1);
  EXPECT_EQ(view::checkCtg(view::readCtg("empty.ctg")).boundaryFaces, 0);
  expectTold("missing.ofe: ");
  EXPECT_EQ(run(source, source), 1);
  EXPECT_EQ(bytesOf(source), testData("support/data/two_tetrahedra.ctg"));
}

}  // namespace
