#include <cstring>
#include <filesystem>

#include "embedded/mesh.h"
#include "platform/draw_stl.h"

namespace orvmesh::test {
namespace {

using Triangle = std::array<float, 12>;  // the normal and three corners

// The triangles of a binary STL file of just the right size.
std::vector<Triangle> readStl(const std::string& path) {
  const std::string bytes = bytesOf(path);
  std::uint32_t count = 0;
  EXPECT_GE(bytes.size(), 84U);
  EXPECT_NE(bytes.substr(0, 5), "solid");  // readers would take it for text
  std::memcpy(&count, bytes.data() + 80, sizeof count);
  EXPECT_EQ(bytes.size(), 84 + 50 * std::size_t{count});
  std::vector<Triangle> triangles(count);
  for (std::size_t i = 0; i < count; ++i) std::memcpy(&triangles[i], bytes.data() + 84 + 50 * i, 48);
  return triangles;
}

TEST(DrawStl, FacesBecomeTrianglesWithTheirNormal) {
  const TempDir dir;
  float xs[] = {9, 0, 2, 2, 0}, ys[] = {9, 0, 0, 3, 3}, zs[] = {9, 1, 1, 1, 1};
  float *x = xs, *y = ys, *z = zs;
  COrvDrawSTLTool tool;
  int face[] = {0, 1, 2, 3, 4}, triangle[] = {0, 3, 2, 1, 1};
  tool.SetFace20(4, face);  // nodes are not known yet
  EXPECT_EQ(tool.OutputFile((dir / "a.stl").c_str()), 0);
  EXPECT_FALSE(std::filesystem::exists(dir / "a.stl"));
  tool.SetNode(x, y, z);
  tool.SetFace20(4, face);
  tool.SetFace20(4, triangle);
  tool.SetFace20(3, triangle);
  ASSERT_EQ(tool.OutputFile((dir / "a.stl").c_str()), 1);
  const Triangle down = {0, 0, -1, 2, 3, 1, 2, 0, 1, 0, 0, 1};
  EXPECT_EQ(readStl(dir / "a.stl"),
            (std::vector<Triangle>{
                {0, 0, 1, 0, 0, 1, 2, 0, 1, 2, 3, 1}, {0, 0, 1, 0, 0, 1, 2, 3, 1, 0, 3, 1}, down, down}));
  EXPECT_EQ(tool.OutputFile("/nowhere/a.stl"), 0);
}

TEST(DrawStl, LinesBecomeThinTriangles) {
  const TempDir dir;
  COrvDrawVectorTool tool;
  tool.SetLine10(0, 0, 0, 0, 10, 0);
  tool.SetLine10(1, 1, 1, 1, 1, 1);
  ASSERT_EQ(tool.OutputFile_STL((dir / "a.stl").c_str()), 1);
  const auto read = readStl(dir / "a.stl");
  ASSERT_EQ(read.size(), 2U);
  EXPECT_EQ(read[0][7], 10);
  const float* tip = &read[0][9];
  EXPECT_FLOAT_EQ(std::abs(tip[0]) + std::abs(tip[2]), 0.1F);
  EXPECT_EQ(tip[1], 5);
  EXPECT_EQ(read[1][0], 0);
}

}  // namespace
}  // namespace orvmesh::test
