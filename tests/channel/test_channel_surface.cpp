#include <orvmesh/cooling_channel_surface.h>

#include <limits>

#include "channel/mesh.h"

namespace orvmesh::test {
namespace {

using Surface = COrvMeshTrans_GetCoolingChannelFromElementSurface;

void writePoint(OFEIO_Manipulator& file, float at, int type) {
  file.writeCoolantChannelLayoutBlockEntry(1, at, 2 * at, 3 * at, type, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                           0, 0);
}
void writeBeam(OFEIO_Manipulator& file, int a, int b, float diameterA, float diameterB, int beamCode) {
  file.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, a, b, diameterA, diameterB, 1, beamCode, 0, 0, 0, 0,
                                           0, 0, 0, 0, 0);
}

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
  writeBeam(file, 1, 3, 4, 5, 1);
  for (const int type : {1, 1, 2, 2, 1, 7}) writePoint(file, static_cast<float>(10 * type + 1), type);
  writeBeam(file, 2, 4, 6, 7, 60000);
  writeBeam(file, 1, 99, 8, 9, 1);
  writeBeam(file, -1, 5, 3, 2, 6);
}

void writeChannels(OFEIO_Manipulator& file) { writeChannelsAnd({}, file); }

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

TEST(ChannelSurface, FacesAreKeptRenumberedAndClassified) {
  const TempDir dir;
  const std::string path = writeMesh(dir / "a.ofe", writeChannels);
  Surface surface;
  const std::string printed = printedBy([&] { EXPECT_EQ(surface.SetOFEFile(path.c_str()), 1); });
  EXPECT_EQ(printed, "Error! count_CCSurfElmt(3) > NTotSurfElmt\n");

  const Read read(surface);
  EXPECT_EQ(read.groups, 5);
  ASSERT_EQ(read.nodes, 5);  // 3, 5, 7, 9, 10
  const std::vector<std::vector<int>> rows{{-1, -1, -1, -1, -1, -1}, {4, 4, 3, 2, 1, 3}, {3, 3, 2, 5, 5, 4},
                                           {3, 1, 2, 4, 4, 1},       {3, 4, 5, 3, 3, 7}, {4, 5, 1, 3, 4, 8}};
  EXPECT_EQ(read.rows, rows);
  EXPECT_EQ(read.group, (std::vector<int>{-1, 3, 4, 1, 7, 8}));
  EXPECT_EQ(read.kind, (std::vector<int>{-1, 1, 2, 0, 3, 1}));

  const double x[] = {-1, 6, 10, 14, 18, 20};  // times the scale factor
  std::vector<double> xs(6, -1), ys(6, -1), zs(6, -1);
  surface.GetBrisk_STL_CCNodeData(xs.data(), ys.data(), zs.data());
  for (std::size_t k = 0; k < 6; ++k) {
    const double f = k == 0 ? 1 : 10;
    EXPECT_EQ(read.points[k].x, x[k]);
    EXPECT_EQ(read.points[k].y, f * x[k]);
    EXPECT_EQ(read.points[k].z, f * f * x[k]);
    EXPECT_EQ(xs[k], read.points[k].x);
    EXPECT_EQ(ys[k], read.points[k].y);
    EXPECT_EQ(zs[k], read.points[k].z);
  }
  int ids[] = {-7, -7, -7, -7, -7, -7};
  surface.GetBrisk_CCSurfNode2GlobalNodeID(ids);
  for (const int id : ids) EXPECT_EQ(id, -7);
  surface.GetBrisk_STL_CCNodeData(nullptr, ys.data(), zs.data());
  surface.GetBrisk_STL_CCLElemData(nullptr, ids);
  EXPECT_EQ(ids[1], -7);
}

TEST(ChannelSurface, MarkersComeFromTheLayout) {
  const TempDir dir;
  const std::string path = writeMesh(dir / "a.ofe", writeChannels);
  Surface surface;
  int* kind = nullptr;
  double *x = nullptr, *y = nullptr, *z = nullptr, *diameter = nullptr;
  surface.GetBrisk_STL_MarkerPoint_PointCoordinate_Link(kind, x, y, z, diameter);
  EXPECT_EQ(kind, nullptr);
  printedBy([&] { surface.SetOFEFile(path.c_str()); });
  // Point 4 ends a heater, point 6 is neither inlet nor outlet; coordinates and diameters are not scaled.
  struct Marker {
    int kind;
    double x, diameter;
  };
  const Marker markers[] = {{2, 11, 8}, {4, 11, 6}, {3, 21, 5}, {4, 11, 2}};
  ASSERT_EQ(surface.GetBrisk_STL_MarkerPoint_TotalPointNumber(), 4);
  surface.GetBrisk_STL_MarkerPoint_PointCoordinate_Link(kind, x, y, z, diameter);
  for (int i = 1; i <= 4; ++i) {
    EXPECT_EQ(kind[i], markers[i - 1].kind) << i;
    EXPECT_EQ(x[i], markers[i - 1].x) << i;
    EXPECT_EQ(y[i], 2 * x[i]);
    EXPECT_EQ(z[i], 3 * x[i]);
    EXPECT_EQ(diameter[i], markers[i - 1].diameter) << i;
  }
}

TEST(ChannelSurface, ProgressIsToldWhenAsked) {
  struct Verbose : Surface {
    Verbose() { m_Verbose = 1; }
  };
  const TempDir dir;
  const std::string path = writeMesh(dir / "a.ofe", writeChannels);
  EXPECT_EQ(printedBy([&] { Verbose().SetOFEFile(path.c_str()); }),
            "ofeReader return 1\nReadOFE_HEADER();\nm_NCCGroup=5\nReadOFE_Node();\nm_NTotNode=10\n"
            "Yse! I got readNodeBlockEntry().\nError! count_CCSurfElmt(3) > NTotSurfElmt\n"
            "m_NTotCCSurfElmt=5\nMoldbase to coolant channel interface(ID=3):\n"
            "We got 2 faces in [Element Surface].\ncoolant channel ends and hoses(ID=4):\n"
            "We got 3 faces in [Element Surface].\nm_NTotCCSurfNode=5\n"
            "nCoolantInletNumner=1 nHeaterInletNumner=2 nCoolantOutletNumner=1\nReadOFE() OK\n");
}

TEST(ChannelSurface, ARefusedFileLeavesWhatWasRead) {
  const TempDir dir;
  const std::string path = writeMesh(dir / "a.ofe", writeChannels);
  Surface surface;
  EXPECT_EQ(Read(surface).faces, 0);
  printedBy([&] { surface.SetOFEFile(path.c_str()); });
  const Surface copy = surface;
  const std::string missing = dir / "missing.ofe";
  EXPECT_EQ(printedBy([&] { EXPECT_LE(surface.SetOFEFile(missing.c_str()), 0); }),
            " can not open mesh file at :" + missing + "\n");
  EXPECT_EQ(std::string(surface.GetErrorMessage_Link()).find(missing), 0U);
  printedBy([&] { EXPECT_LE(surface.SetOFEFile(nullptr), 0); });
  EXPECT_EQ(Read(surface).rows, Read(copy).rows);

  const std::string empty = writeMesh(dir / "empty.ofe", [](OFEIO_Manipulator&) {});
  EXPECT_EQ(surface.SetOFEFile(empty.c_str()), 1);
  EXPECT_EQ(Read(surface).faces, 0);
  EXPECT_EQ(surface.GetBrisk_STL_MarkerPoint_TotalPointNumber(), 0);
  EXPECT_EQ(Read(copy).faces, 5);
}

TEST(ChannelSurface, HostileCountsAndNodesStayWithinTheFile) {
  constexpr int kMost = std::numeric_limits<int>::max();
  const TempDir dir;
  for (const int count : {kMost, -1, -kMost - 1, 0}) {
    const std::string path = writeMesh(dir / "a.ofe", [count](OFEIO_Manipulator& file) {
      writeChannelsAnd({11, 0, kMost, -5}, file);
      for (const auto field :
           {m_HEADER_NNode, m_HEADER_NElemS, m_HEADER_NLayoutPoint, m_HEADER_NLayoutSegment})
        file[field] = count;
      file.header.setFloatField(m_HEADER_ScaleFactor, 0);
    });
    Surface surface;
    printedBy([&] { EXPECT_EQ(surface.SetOFEFile(path.c_str()), 1); });
    const Read read(surface);
    EXPECT_EQ(read.nodes, 5);
    ASSERT_EQ(read.faces, 6);
    EXPECT_EQ(read.rows[6], (std::vector<int>{4, 0, 0, 0, 0, 1}));
    EXPECT_EQ(read.points[5].x, 10);  // a factor of 0 counts as 1
  }
}

}  // namespace
}  // namespace orvmesh::test
