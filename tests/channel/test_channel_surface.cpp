#include <orvmesh/cooling_channel_surface.h>

#include <array>
#include <limits>
#include <tuple>

#include "channel/mesh.h"

namespace orvmesh::test {
namespace {

using Surface = COrvMeshTrans_GetCoolingChannelFromElementSurface;

// Ten nodes at (n, 10 n, 100 n), scale factor 2; five channel faces, the second wall of them beyond the
// header's count; a layout with every sort of point.
void writeChannelsAnd(const std::vector<int>& lastFace, OFEIO_Manipulator& file) {
  file.header.setFloatField(m_HEADER_ScaleFactor, 2.0F);
  file[m_HEADER_NCCGroup] = 5;
  file[m_HEADER_NNode] = 10;
  for (int n = 1; n <= 10; ++n)
    file.writeNodeBlockEntry(static_cast<float>(n), static_cast<float>(10 * n), static_cast<float>(100 * n));
  writeFace(file, {1, 2, 4, 6}, 2, 1, 1, 9);
  writeFace(file, {9, 7, 5, 3}, 4, 1, 1, 3);
  writeFace(file, {7, 5, 10, 10}, 3, 2, 1, 4);
  writeFace(file, {3, 5, 9, 0}, 3, 9, 0, 1);
  writeFace(file, {9, 10, 7, 7}, 4, 2, 0, 7);
  writeFace(file, {10, 3, 7, 9}, 4, 1, 5, 8);
  if (!lastFace.empty()) writeFace(file, lastFace, 3, 1, 0, 1);
  file[m_HEADER_NElemS] = 2;
  writeBeam(file, 1, 3, 4, 5, 1, 1);
  for (const float type : {1.0F, 1.0F, 2.0F, 2.0F, 1.0F, 7.0F})
    writePoint(file, 10 * type + 1, 20 * type + 2, 30 * type + 3, static_cast<int>(type));
  writeBeam(file, 2, 4, 6, 7, 1, 60000);
  writeBeam(file, 1, 99, 8, 9, 1, 1);
  writeBeam(file, -1, 5, 3, 2, 1, 6);
}

struct Read {
  explicit Read(const Surface& from) {
    from.GetBrisk_STL_NNodeCCL(nodes);
    from.GetBrisk_STL_NElemtCCL(faces);
    from.GetBrisk_STL_NCCGroups(groups);
    points.assign(static_cast<std::size_t>(nodes) + 1, {-1, -1, -1});
    from.GetBrisk_STL_CCNodeData(points.data());
    rows.assign(static_cast<std::size_t>(faces) + 1, std::vector<int>(6, -1));
    for (auto& row : rows) pointers.push_back(row.data());
    from.GetBrisk_STL_CCLElemData(pointers.data());
    for (auto* const column : {&group, &kind}) column->assign(static_cast<std::size_t>(faces) + 1, -1);
    from.GetBrisk_STL_CCLElemData(group.data(), kind.data());
  }
  int nodes = -1, faces = -1, groups = -1;
  std::vector<CPoint3d> points;
  std::vector<std::vector<int>> rows;
  std::vector<int*> pointers;
  std::vector<int> group, kind;
};

class ChannelSurface : public testing::Test {
 protected:
  static std::string printedByReading(Surface& surface, const char* path, bool isRead) {
    return printedBy([&] { EXPECT_EQ(surface.SetOFEFile(path) == 1, isRead); });
  }

  TempDir dir_;
  std::string path_ = writeMesh(dir_ / "a.ofe", [](OFEIO_Manipulator& file) { writeChannelsAnd({}, file); });
  Surface surface_;
};

TEST_F(ChannelSurface, FacesAreKeptRenumberedAndClassified) {
  EXPECT_EQ(printedByReading(surface_, path_.c_str(), true), "Error! count_CCSurfElmt(3) > NTotSurfElmt\n");
  const Read read(surface_);
  EXPECT_EQ(read.groups, 5);
  ASSERT_EQ(read.nodes, 5);  // 3, 5, 7, 9, 10
  const std::vector<std::vector<int>> rows{{-1, -1, -1, -1, -1, -1}, {4, 4, 3, 2, 1, 3}, {3, 3, 2, 5, 5, 4},
                                           {3, 1, 2, 4, 4, 1},       {3, 4, 5, 3, 3, 7}, {4, 5, 1, 3, 4, 8}};
  EXPECT_EQ(read.rows, rows);
  EXPECT_EQ(read.group, (std::vector<int>{-1, 3, 4, 1, 7, 8}));
  EXPECT_EQ(read.kind, (std::vector<int>{-1, 1, 2, 0, 3, 1}));

  std::vector<double> x(6, -1), y(x), z(x);
  surface_.GetBrisk_STL_CCNodeData(x.data(), y.data(), z.data());
  EXPECT_EQ(x, (std::vector<double>{-1, 6, 10, 14, 18, 20}));  // times the scale factor
  for (std::size_t k = 0; k < 6; ++k) {
    const double f = k == 0 ? 1 : 10;
    EXPECT_EQ(std::pair(y[k], z[k]), std::pair(f * x[k], f * f * x[k]));
    EXPECT_EQ(std::tuple(read.points[k].x, read.points[k].y, read.points[k].z), std::tuple(x[k], y[k], z[k]));
  }
  std::vector<int> ids(6, -7);
  surface_.GetBrisk_CCSurfNode2GlobalNodeID(ids.data());
  surface_.GetBrisk_STL_CCNodeData(nullptr, y.data(), z.data());
  surface_.GetBrisk_STL_CCLElemData(nullptr, ids.data());
  EXPECT_EQ(ids, std::vector<int>(6, -7));
}

TEST_F(ChannelSurface, MarkersComeFromTheLayout) {
  int* kind = nullptr;
  double *x = nullptr, *y = nullptr, *z = nullptr, *diameter = nullptr;
  surface_.GetBrisk_STL_MarkerPoint_PointCoordinate_Link(kind, x, y, z, diameter);
  EXPECT_EQ(kind, nullptr);
  printedByReading(surface_, path_.c_str(), true);
  ASSERT_EQ(surface_.GetBrisk_STL_MarkerPoint_TotalPointNumber(), 4);
  surface_.GetBrisk_STL_MarkerPoint_PointCoordinate_Link(kind, x, y, z, diameter);
  // Point 4 ends a heater, point 6 is neither inlet nor outlet; coordinates and diameters are not scaled.
  using Marker = std::array<double, 5>;
  const Marker markers[] = {{2, 11, 22, 33, 8}, {4, 11, 22, 33, 6}, {3, 21, 42, 63, 5}, {4, 11, 22, 33, 2}};
  for (int i = 1; i <= 4; ++i)
    EXPECT_EQ((Marker{double(kind[i]), x[i], y[i], z[i], diameter[i]}), markers[i - 1]) << i;
}

TEST_F(ChannelSurface, ProgressIsToldWhenAsked) {
  struct Verbose : Surface {
    Verbose() { m_Verbose = 1; }
  } verbose;
  EXPECT_EQ(printedByReading(verbose, path_.c_str(), true),
            "ofeReader return 1\nReadOFE_HEADER();\nm_NCCGroup=5\nReadOFE_Node();\nm_NTotNode=10\n"
            "Yse! I got readNodeBlockEntry().\nError! count_CCSurfElmt(3) > NTotSurfElmt\n"
            "m_NTotCCSurfElmt=5\nMoldbase to coolant channel interface(ID=3):\n"
            "We got 2 faces in [Element Surface].\ncoolant channel ends and hoses(ID=4):\n"
            "We got 3 faces in [Element Surface].\nm_NTotCCSurfNode=5\n"
            "nCoolantInletNumner=1 nHeaterInletNumner=2 nCoolantOutletNumner=1\nReadOFE() OK\n");
}

TEST_F(ChannelSurface, ARefusedFileLeavesWhatWasRead) {
  EXPECT_EQ(Read(surface_).faces, 0);
  printedByReading(surface_, path_.c_str(), true);
  const Surface copy = surface_;
  const std::string missing = dir_ / "missing.ofe";
  EXPECT_EQ(printedByReading(surface_, missing.c_str(), false),
            " can not open mesh file at :" + missing + "\n");
  EXPECT_TRUE(std::string(surface_.GetErrorMessage_Link()).starts_with(missing));
  printedByReading(surface_, nullptr, false);
  EXPECT_EQ(Read(surface_).rows, Read(copy).rows);

  const std::string empty = writeMesh(dir_ / "empty.ofe", [](OFEIO_Manipulator&) {});
  EXPECT_EQ(printedByReading(surface_, empty.c_str(), true), "");
  EXPECT_EQ(Read(surface_).faces + surface_.GetBrisk_STL_MarkerPoint_TotalPointNumber(), 0);
  EXPECT_EQ(Read(copy).faces, 5);
}

TEST_F(ChannelSurface, HostileCountsAndNodesStayWithinTheFile) {
  constexpr int kMost = std::numeric_limits<int>::max();
  for (const int count : {kMost, -1, -kMost - 1, 0}) {
    writeMesh(path_, [count](OFEIO_Manipulator& file) {
      writeChannelsAnd({11, 0, kMost, -5}, file);
      for (const auto field :
           {m_HEADER_NNode, m_HEADER_NElemS, m_HEADER_NLayoutPoint, m_HEADER_NLayoutSegment})
        file[field] = count;
      file.header.setFloatField(m_HEADER_ScaleFactor, 0);
    });
    printedByReading(surface_, path_.c_str(), true);
    const Read read(surface_);
    EXPECT_EQ(read.nodes, 5);
    ASSERT_EQ(read.faces, 6);
    EXPECT_EQ(read.rows[6], (std::vector<int>{4, 0, 0, 0, 0, 1}));
    EXPECT_EQ(read.points[5].x, 10);  // a factor of 0 counts as 1
  }
}

}  // namespace
}  // namespace orvmesh::test
