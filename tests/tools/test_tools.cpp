#include <gtest/gtest.h>
#include <orvmesh/check_bounding_box.h>
#include <orvmesh/transfer_20_to_02.h>
#include <orvmesh/write_mesh_data_as_ofe.h>

#include <algorithm>
#include <climits>
#include <filesystem>
#include <random>
#include <vector>

#include "platform/ofeio.h"
#include "support/temp_dir.h"

namespace orvmesh::test {
namespace {

TEST(BoundingBox, HasOneBoundPerAxisAndCallAndGrowsByPartsOfItsSize) {
  CCheckBoundingBox box, rising;
  EXPECT_FALSE(box.IfInBoundingBox(0, 0, 0));
  box.SetMinBoundingBox(10, 10, 10);
  EXPECT_FALSE(box.IfInBoundingBox(10, 10, 10));  // it has one bound only
  rising.SetMaxBoundingBox(0, 0, 0);
  rising.SetMinBoundingBox(1, 1, 1);
  EXPECT_FALSE(rising.IfInBoundingBox(0.5, 0.5, 0.5));

  box.SetMaxBoundingBox(0, 0, 0);
  for (const double v : {0.0, 5.0, 10.0}) EXPECT_TRUE(box.IfInBoundingBox(v, 10 - v, v));
  EXPECT_FALSE(box.IfInBoundingBox(5, 5, 10.001));
  box.EnlargeBox(10);
  EXPECT_TRUE(box.IfInBoundingBox(-0.99, 10.99, 5));
  EXPECT_FALSE(box.IfInBoundingBox(-1.01, 5, 5));
  EXPECT_FALSE(box.IfInBoundingBox(5, 5, 11.01));
  box.EnlargeBox(-25);
  EXPECT_TRUE(box.IfInBoundingBox(2.01, 7.99, 5));
  EXPECT_FALSE(box.IfInBoundingBox(1.99, 5, 5));
}

// Rows of ints that end where a read or write beyond them shows under a sanitizer.
struct Rows {
  explicit Rows(std::vector<std::vector<int>> values) : rows(std::move(values)) {
    for (auto& row : rows) pointers.push_back(row.empty() ? nullptr : row.data());
  }
  std::vector<std::vector<int>> rows;
  std::vector<int*> pointers;
};

TEST(Transfer20To02, AgreesWithASearchOfEveryFace) {
  std::mt19937 random(7);
  for (const int nNode : {0, 1, 4, 30}) {
    std::vector<std::vector<int>> faces{{}};
    for (int f = 1; f <= 60; ++f) {
      std::vector<int> face{static_cast<int>(random() % 5)};
      for (int k = 0; k < face[0]; ++k) face.push_back(static_cast<int>(random() % 36) - 2);
      faces.push_back(f % 17 == 0 ? std::vector<int>{} : face);
    }
    faces[3] = {-5};
    Rows in(faces);
    Rows out(std::vector<std::vector<int>>(static_cast<std::size_t>(nNode) + 1, std::vector<int>(10, -7)));
    EXPECT_EQ(COrvTransfer20to02().Get02From20(60, in.pointers.data(), nNode, out.pointers.data()), 1);
    EXPECT_EQ(out.rows[0], std::vector<int>(10, -7));
    for (int node = 1; node <= nNode; ++node) {
      std::vector<int> wanted{0};
      for (int f = 1; f <= 60 && wanted[0] < 9; ++f) {
        const auto& face = faces[static_cast<std::size_t>(f)];
        if (face.size() > 1 && std::count(face.begin() + 1, face.end(), node) > 0) {
          wanted.push_back(f);
          ++wanted[0];
        }
      }
      wanted.resize(10, -7);
      EXPECT_EQ(out.rows[static_cast<std::size_t>(node)], wanted) << node;
    }
  }
  Rows out({{0}, {1, 2, 3}, {}});
  EXPECT_EQ(COrvTransfer20to02().Get02From20(0, nullptr, 2, out.pointers.data()), 1);
  EXPECT_EQ(out.rows[1], (std::vector<int>{0, 2, 3}));
  EXPECT_EQ(COrvTransfer20to02().Get02From20(-1, nullptr, -1, nullptr), 1);
}

struct Content {
  explicit Content(const std::string& path) {
    EXPECT_EQ(file.beginReading(path.c_str(), nullptr, 0), 1);
    for (float p[3]; file.readNodeBlockEntry(p[0], p[1], p[2]) >= 0;) xyz.insert(xyz.end(), p, p + 3);
    int count = 0, a = 0, b = 0, nodes[8];
    for (float value = 0; file.readElementPlasticBlockEntry(count, nodes, a, b, value) >= 0;) {
      elements.push_back({double(a), double(b), value});
      elements.back().insert(elements.back().end(), nodes, nodes + count);
    }
  }
  OFEIO_Manipulator file;
  std::vector<float> xyz;
  std::vector<std::vector<double>> elements;  // type, material, value, nodes
};

// Three elements on five nodes; the second has no material.
struct Part {
  std::vector<double> x{-1, 0, 1, 0, 0, 1}, y{-1, 0, 0, 1, 0, 1}, z{-1, 0, 0, 0, 1, 1.0 / 3};
  std::vector<float> xf{x.begin(), x.end()}, yf{y.begin(), y.end()}, zf{z.begin(), z.end()};
  std::vector<int> counts{-1, 4, 4, 5};
  std::vector<unsigned char> bytes{255, 4, 4, 5};
  std::vector<int> material{-1, 7, 0, 2};
  Rows rows{{{}, {-1, 1, 2, 3, 4}, {-1, 2, 3, 4, 5}, {-1, 1, 2, 3, 4, 5}}};
  std::vector<int> flat{-1, 1, 2, 3, 4, 1, 2, 3, 4, 5};  // nothing of the element that is left out

  void setRows(CWriteMeshDataAsOFE& writer) {
    writer.SetMesh(5, x.data(), y.data(), z.data(), 3, counts.data(), rows.pointers.data(), material.data());
  }
  void setFlat(CWriteMeshDataAsOFE& writer) {
    writer.SetMesh(5, xf.data(), yf.data(), zf.data(), 3, bytes.data(), flat.data(), material.data());
  }
};

TEST(WriteMesh, BothFormsWriteNodesElementsAndHeader) {
  const TempDir dir;
  const std::string path = dir / "part.ofe";
  Part part;
  CWriteMeshDataAsOFE writer;
  part.setFlat(writer);  // the later mesh counts, not this one's node list
  for (const auto set : {&Part::setRows, &Part::setFlat}) {
    (part.*set)(writer);
    ASSERT_EQ(writer.WriteOFE(path.c_str()), 0) << writer.GetErrorMessage_Link();
    const Content content(path);
    EXPECT_EQ(content.file.fileVersion(), 2002);
    std::vector<float> xyz;
    for (std::size_t i = 1; i <= 5; ++i) xyz.insert(xyz.end(), {part.xf[i], part.yf[i], part.zf[i]});
    EXPECT_EQ(content.xyz, xyz);
    EXPECT_EQ(content.elements,
              (std::vector<std::vector<double>>{{1, 7, 0, 1, 2, 3, 4}, {1, 2, 0, 1, 2, 3, 4, 5}}));

    OFEHeader wanted;
    const std::pair<int, int> words[] = {{0, 2009}, {1, 1003}, {2, 1}, {4, 3}, {12, 5}, {15, 1}};
    for (const auto& [word, value] : words) wanted[word] = value;
    wanted.setFloatField(29, 1);
    for (int word = 36; word < 48; ++word) wanted.setFloatField(word, word % 2 == 0 ? -1.0F : 1.0F);
    wanted.source = {'d', ':', 9, 'e', 'm', 'p'};
    wanted.dateTime = "cm";
    wanted.unit = "mm";
    wanted.remark = " ";
    EXPECT_EQ(content.file.header, wanted);

    std::filesystem::remove(path);
    EXPECT_EQ(writer.WriteOFE(path.c_str()), -1);  // the coordinates are gone
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(std::string(writer.GetErrorMessage_Link()).find("no mesh"), std::string::npos);
  }
  part.flat.insert(part.flat.begin() + 5, {2, 3, 4, 5});
  writer.SetMesh(5, part.xf.data(), part.yf.data(), part.zf.data(), 3, part.bytes.data(), part.flat.data(),
                 nullptr);
  CWriteMeshDataAsOFE copy = writer;
  for (auto* const each : {&writer, &copy}) {  // what copies share outlives the first of them
    ASSERT_EQ(each->WriteOFE(path.c_str()), 0);
    const Content content(path);
    ASSERT_EQ(content.elements.size(), 3U) << "without materials every element has one";
    EXPECT_EQ(content.elements[1], (std::vector<double>{1, 1, 0, 2, 3, 4, 5}));
  }
}

TEST(WriteMesh, BadMeshesWriteNothing) {
  const TempDir dir;
  const std::string path = dir / "part.ofe";
  Part part;
  double* const x = part.x.data();
  int* const counts = part.counts.data();
  int** const rows = part.rows.pointers.data();
  const auto write = [&](int nNode, double* xs, int nElem, int* nodeCounts, int** nodes) {
    CWriteMeshDataAsOFE writer;
    writer.SetMesh(nNode, xs, part.y.data(), part.z.data(), nElem, nodeCounts, nodes, nullptr);
    const int result = writer.WriteOFE(path.c_str());
    EXPECT_FALSE(std::filesystem::exists(path));
    return std::to_string(result) + writer.GetErrorMessage_Link();
  };
  for (const std::string& told :
       {write(-1, x, 3, counts, rows), write(5, nullptr, 3, counts, rows), write(5, x, INT_MIN, counts, rows),
        write(5, x, 3, nullptr, rows), write(5, x, 3, counts, nullptr)})
    EXPECT_TRUE(told.starts_with("-1")) << told;

  // What the format refuses is told of, though the result is 0.
  for (const int count : {0, -3, 9}) {
    part.counts[2] = count;
    const std::string told = write(5, x, 3, counts, rows);
    EXPECT_TRUE(told.starts_with("0") && told.find("nodes (legal: 1 to 8)") != told.npos) << told;
  }
  CWriteMeshDataAsOFE writer;
  part.setRows(writer);
  EXPECT_EQ(writer.WriteOFE((dir / "missing/part.ofe").c_str()), -1);
  part.setRows(writer);
  EXPECT_EQ(writer.WriteOFE(nullptr), -1);
}

TEST(WriteMesh, TheCubeIsOneElement) {
  struct Cube : CWriteMeshDataAsOFE {
    Cube() { m_Verbose = m_TestCube = true; }
  };
  const TempDir dir;
  testing::internal::CaptureStdout();
  EXPECT_EQ(Cube().WriteOFE((dir / "cube.ofe").c_str()), 0);
  EXPECT_EQ(testing::internal::GetCapturedStdout(),
            "m_pWriter->m_HEADER_NElemP =1\nm_pWriter->m_HEADER_NNode =8\nm_pWriter->m_HEADER_NMatP =1\n"
            "m_pWriter->setHeaderSourceString =d:\temp\nm_pWriter->setHeaderUnitString =mm\n"
            "m_pWriter->m_HEADER_ScaleFactor =1\n");
  const Content cube(dir / "cube.ofe");
  EXPECT_EQ(cube.elements, (std::vector<std::vector<double>>{{1, 1, 2, 1, 2, 3, 4, 5, 6, 7, 8}}));
  EXPECT_EQ(cube.xyz, (std::vector<float>{1, -1, -1, 1, 1, -1, -1, 1, -1, -1, -1, -1,
                                          1, -1, 1,  1, 1, 1,  -1, 1, 1,  -1, -1, 1}));
  EXPECT_EQ(cube.file.header[m_HEADER_NNode], 8);
}

}  // namespace
}  // namespace orvmesh::test
