#include <gtest/gtest.h>
#include <orvmesh/check_bounding_box.h>
#include <orvmesh/transfer_20_to_02.h>
#include <orvmesh/write_mesh_data_as_ofe.h>

#include <algorithm>
#include <filesystem>
#include <random>
#include <vector>

#include "platform/ofeio.h"
#include "support/temp_dir.h"

namespace orvmesh::test {
namespace {

TEST(BoundingBox, OneBoundPerAxisAndCall) {
  CCheckBoundingBox box;
  EXPECT_FALSE(box.IfInBoundingBox(0, 0, 0));
  box.SetMaxBoundingBox(1, 2, 3);
  EXPECT_FALSE(box.IfInBoundingBox(1, 2, 3));  // it has no minimum yet

  CCheckBoundingBox rising, falling;
  rising.SetMaxBoundingBox(0, 0, 0);
  rising.SetMinBoundingBox(1, 1, 1);
  EXPECT_FALSE(rising.IfInBoundingBox(0.5, 0.5, 0.5));
  falling.SetMaxBoundingBox(1, 1, 1);
  falling.SetMaxBoundingBox(0, 0, 0);
  for (const double v : {0.0, 0.5, 1.0}) EXPECT_TRUE(falling.IfInBoundingBox(v, 1 - v, v));
  EXPECT_FALSE(falling.IfInBoundingBox(0.5, 0.5, 1.0001));
}

TEST(BoundingBox, EnlargesByPartsOfItsSize) {
  CCheckBoundingBox box;
  box.SetMinBoundingBox(10, 10, 10);
  box.SetMinBoundingBox(0, 0, 0);
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

struct Element {
  std::vector<int> nodes;
  int a, b;
  float value;
  bool operator==(const Element&) const = default;
};
struct Content {
  OFEHeader header;
  int version = 0;
  std::vector<float> xyz;
  std::vector<Element> elements;
};

Content contentOf(const std::string& path) {
  OFEIO_Manipulator file;
  EXPECT_EQ(file.beginReading(path.c_str(), nullptr, 0), 1);
  Content content{file.header, file.fileVersion(), {}, {}};
  for (float p[3]; file.readNodeBlockEntry(p[0], p[1], p[2]) >= 0;)
    content.xyz.insert(content.xyz.end(), p, p + 3);
  int count = 0, nodes[8];
  for (Element e{}; file.readElementPlasticBlockEntry(count, nodes, e.a, e.b, e.value) >= 0;) {
    e.nodes.assign(nodes, nodes + count);
    content.elements.push_back(e);
  }
  return content;
}

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
    const Content content = contentOf(path);
    EXPECT_EQ(content.version, 2002);
    std::vector<float> xyz;
    for (std::size_t i = 1; i <= 5; ++i) xyz.insert(xyz.end(), {part.xf[i], part.yf[i], part.zf[i]});
    EXPECT_EQ(content.xyz, xyz);
    EXPECT_EQ(content.elements, (std::vector<Element>{{{1, 2, 3, 4}, 1, 7, 0}, {{1, 2, 3, 4, 5}, 1, 2, 0}}));

    OFEHeader wanted;
    const std::pair<int, int> words[] = {{0, 2009}, {1, 1003}, {2, 1}, {4, 3}, {12, 5}, {15, 1}};
    for (const auto& [word, value] : words) wanted[word] = value;
    wanted.setFloatField(29, 1);
    for (int word = 36; word < 48; ++word) wanted.setFloatField(word, word % 2 == 0 ? -1.0F : 1.0F);
    wanted.source = {'d', ':', 9, 'e', 'm', 'p'};
    wanted.dateTime = "cm";
    wanted.unit = "mm";
    wanted.remark = " ";
    EXPECT_EQ(content.header, wanted);

    std::filesystem::remove(path);
    EXPECT_EQ(writer.WriteOFE(path.c_str()), -1);  // the coordinates are gone
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(std::string(writer.GetErrorMessage_Link()).find("no mesh"), std::string::npos);
  }
}

TEST(WriteMesh, WithoutMaterialsEveryElementHasOne) {
  const TempDir dir;
  Part part;
  part.flat.insert(part.flat.begin() + 5, {2, 3, 4, 5});
  CWriteMeshDataAsOFE writer;
  writer.SetMesh(5, part.xf.data(), part.yf.data(), part.zf.data(), 3, part.bytes.data(), part.flat.data(),
                 nullptr);
  const CWriteMeshDataAsOFE copy = writer;
  CWriteMeshDataAsOFE third = copy;
  ASSERT_EQ(writer.WriteOFE((dir / "a.ofe").c_str()), 0);
  ASSERT_EQ(third.WriteOFE((dir / "b.ofe").c_str()), 0);  // what copies share outlives the first of them
  for (const char* name : {"a.ofe", "b.ofe"}) {
    const Content content = contentOf(dir / name);
    ASSERT_EQ(content.elements.size(), 3U);
    EXPECT_EQ(content.elements[1], (Element{{2, 3, 4, 5}, 1, 1, 0}));
  }
}

TEST(WriteMesh, BadMeshesWriteNothing) {
  const TempDir dir;
  const std::string path = dir / "part.ofe";
  Part part;
  const auto refused = [&](int nNode, double* x, int nElem, int* counts, int** rows) {
    CWriteMeshDataAsOFE writer;
    writer.SetMesh(nNode, x, part.y.data(), part.z.data(), nElem, counts, rows, nullptr);
    EXPECT_EQ(writer.WriteOFE(path.c_str()), -1);
    EXPECT_FALSE(std::filesystem::exists(path));
  };
  double* const x = part.x.data();
  int* const counts = part.counts.data();
  int** const rows = part.rows.pointers.data();
  refused(-1, x, 3, counts, rows);
  refused(5, nullptr, 3, counts, rows);
  refused(5, x, -2147483647 - 1, counts, rows);
  refused(5, x, 3, nullptr, rows);
  refused(5, x, 3, counts, nullptr);

  // What the format refuses is told of, though the result is 0.
  for (const int count : {0, -3, 9}) {
    part.counts[2] = count;
    CWriteMeshDataAsOFE writer;
    writer.SetMesh(5, x, part.y.data(), part.z.data(), 3, counts, rows, nullptr);
    EXPECT_EQ(writer.WriteOFE(path.c_str()), 0);
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_NE(std::string(writer.GetErrorMessage_Link()).find("nodes (legal: 1 to 8)"), std::string::npos);
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
  const Content cube = contentOf(dir / "cube.ofe");
  EXPECT_EQ(cube.elements, (std::vector<Element>{{{1, 2, 3, 4, 5, 6, 7, 8}, 1, 1, 2}}));
  EXPECT_EQ(cube.xyz, (std::vector<float>{1, -1, -1, 1, 1, -1, -1, 1, -1, -1, -1, -1,
                                          1, -1, 1,  1, 1, 1,  -1, 1, 1,  -1, -1, 1}));
  EXPECT_EQ(cube.header[m_HEADER_NNode], 8);
}

}  // namespace
}  // namespace orvmesh::test
