#include <sys/stat.h>

#include <numeric>

#include "embedded/all_blocks.h"
#include "embedded/mesh.h"
#include "support/test_data.h"

namespace orvmesh::test {
namespace {

class Ofeio : public ::testing::Test {
 protected:
  TempDir dir_;
  const std::string path_ = dir_ / "mesh.ofe";
  // What writeAllBlocks writes, as readAllBlocks tells it.
  const std::string allBlocks_ = testData("embedded/data/all_blocks.txt");
};

TEST_F(Ofeio, EveryBlockComesBackInAnyOrder) {
  ASSERT_EQ(writeAllBlocks(path_), 1);
  OFEIO_Manipulator file;
  ASSERT_EQ(file.beginReading(path_.c_str(), nullptr, 0), 1) << file.errorText();
  EXPECT_EQ(readAllBlocks(file), allBlocks_);
  EXPECT_EQ(file.errorText(), "");
  EXPECT_EQ(file.fileVersion(), 13001);
  for (int i = 0; i < OFEHeader::kWords; ++i) {
    const int wanted = i == m_HEADER_NBadC ? 77 : i == m_HEADER_ScaleFactor ? file.header[i] : 1000 + i;
    EXPECT_EQ(file.header[i], wanted) << i;
  }
  EXPECT_EQ(file.getHeaderSourceString() + "|" + file.getHeaderDateTimeString() + "|" +
                file.getHeaderUnitString() + "|" + file.getHeaderRemarkString(),
            "source||mm|remark \xC3\xA4");
  EXPECT_EQ(file.endReading(), 1);
  EXPECT_EQ(file.endReading(), 0);
}

TEST_F(Ofeio, SecondPartAloneLeavesTheFirstEmpty) {
  int format = 0;
  ASSERT_EQ(twoTetrahedra().write(path_), 1);
  EXPECT_EQ(OFEIO_Manipulator::getFileFormat(path_.c_str(), format), 1);
  EXPECT_EQ(format, 1);
  EXPECT_EQ(OFEIO_Manipulator::getFileSecondBlockExsistency(path_.c_str()), 0);
  ASSERT_EQ(writeAllBlocks(path_), 1);
  EXPECT_EQ(OFEIO_Manipulator::getFileSecondBlockExsistency(path_.c_str()), 1);
  OFEIO_Manipulator file;
  ASSERT_EQ(file.beginReading(path_.c_str(), nullptr, 1), 1);
  EXPECT_EQ(readAllBlocks(file), allBlocks_.substr(0, allBlocks_.find("badC")) + "parting 0 0 1\n");
}

// Columns of many chunks, constant and changing, element types that change late, a list longer than a chunk.
TEST_F(Ofeio, LargeBlocksComeBack) {
  constexpr int kCount = 700000;
  const auto nodeCount = [](int i) { return i < 600000 ? 4 : 4 + i % 5; };
  const auto group = [](int i) { return i < 300000 ? 1 : -i; };
  const std::vector<int> list(400000, 7);
  OFEIO_Manipulator file;
  ASSERT_EQ(file.beginWriting(path_.c_str(), 14001, 0), 1);
  int nodes[8];
  for (int i = 0; i < kCount; ++i) {
    std::iota(nodes, nodes + 8, i);
    ASSERT_EQ(file.writeElementMoldBaseBlockEntry(nodeCount(i), nodes, i, group(i), static_cast<float>(i)),
              i);
  }
  file.writeSurfaceElementBoundaryConditionBlockEntry(1, 400000, list.data());
  ASSERT_EQ(file.endWriting(), 1) << file.errorText();

  ASSERT_EQ(file.beginReading(path_.c_str(), nullptr, 0), 1);
  int count = 0, a = 0, b = 0, wrong = 0;
  float value = 0;
  for (int i = 0; i < kCount; ++i) {
    ASSERT_EQ(file.readElementMoldBaseBlockEntry(count, nodes, a, b, value), i);
    wrong += count != nodeCount(i) || nodes[count - 1] != i + count - 1 || a != i || b != group(i) ||
             value != static_cast<float>(i);
  }
  EXPECT_EQ(wrong, 0);
  EXPECT_EQ(file.readElementMoldBaseBlockEntry(count, nodes, a, b, value), -1);
  const int* read = nullptr;
  ASSERT_EQ(file.readSurfaceElementBoundaryConditionBlockEntry(a, count, read), 0);
  EXPECT_EQ(std::vector<int>(read, read + count), list);
}

TEST_F(Ofeio, RefusedEntriesSpoilTheFile) {
  const int nodes[9] = {1, 2, 3, 4, 5, 6, 7, 8, 9};
  using Write = std::function<int(OFEIO_Manipulator&)>;
  const std::pair<Write, const char*> cases[] = {
      {[&](auto& f) { return f.writeElementPlasticBlockEntry(9, nodes, 1, 1, 0); },
       "elementsPlastic entry 1 has 9 nodes (legal: 1 to 8)"},
      {[&](auto& f) { return f.writeElementPlasticBlockEntry(0, nodes, 1, 1, 0); },
       "elementsPlastic entry 1 has 0 nodes (legal: 1 to 8)"},
      {[&](auto& f) { return f.writeSurfaceElementBoundaryConditionBlockEntry(1, -1, nodes); },
       "surfaceBoundaryConditions entry 1 has a list of -1 values"},
      {[&](auto& f) {
         f.writeElementPlasticBlockEntry(4, nodes, 1, 1, 0);
         return f.writeNodeBlockEntry(0, 0, 0);
       },
       "nodes was finished before and got another entry"}};
  writeBytes(path_, "the old target");
  for (const auto& [write, text] : cases) {
    OFEIO_Manipulator file;
    ASSERT_EQ(file.beginWriting(path_.c_str(), 14001, 0), 1);
    EXPECT_EQ(file.writeNodeBlockEntry(0, 0, 0), 0);
    EXPECT_EQ(write(file), -1);
    EXPECT_EQ(file.endWriting(), 0);
    EXPECT_EQ(file.errorText(), text);
    EXPECT_EQ(bytesOf(path_), "the old target");
  }
}

TEST_F(Ofeio, VersionsHaveGaps) {
  std::string accepted;
  for (int version = 0; version < 16000; ++version) {
    OFEIO_Manipulator file;
    const int result = file.beginWriting(path_.c_str(), version, 0);
    EXPECT_EQ(result, OFEIO_Manipulator::isWritableVersion(version) ? 1 : -1);
    if (result != 1) continue;
    accepted += std::to_string(version) + " ";
    EXPECT_EQ(file.endWriting(), 1);
    EXPECT_EQ(file.beginReading(path_.c_str(), nullptr, 0), 1);
    EXPECT_EQ(file.fileVersion(), version);
  }
  EXPECT_EQ(accepted, "2002 2008 2009 2010 2011 2012 13001 14001 14002 14003 ");
}

TEST_F(Ofeio, DoorsAreShutInWords) {
  OFEIO_Manipulator file;
  EXPECT_EQ(file.writeNodeBlockEntry(0, 0, 0), -1);
  EXPECT_EQ(file.endWriting(), 0);
  for (const char* const target : {dir_.path().c_str(), "/dev/full", "", "/dev/null/below", "/none/x.ofe"}) {
    EXPECT_EQ(file.beginWriting(target, 14001, 0), 0) << target;
    EXPECT_NE(file.errorText(), "") << target;
  }
  EXPECT_EQ(file.errorText(), "cannot be written: No such file or directory");
  EXPECT_EQ(file.beginWriting(nullptr, 14001, 0), 0);
  EXPECT_EQ(file.beginWriting(path_.c_str(), 14001, 0), 1);
  EXPECT_EQ(file.beginReading(path_.c_str(), nullptr, 0), 0);
  EXPECT_EQ(file.errorText(), "another file is still open");

  writeBytes(dir_ / "empty", "");
  writeBytes(dir_ / "text", "1\n[HEADER]\n");
  ASSERT_EQ(::mkfifo((dir_ / "pipe").c_str(), 0600), 0);
  const std::string log = dir_ / "log";
  std::string logged;
  const std::pair<const char*, const char*> faults[] = {
      {"missing", "cannot be read: No such file or directory"},
      {"", "is a directory"},
      {"empty", "is empty"},
      {"pipe", "is not a regular file"},
      {"text",
       R"(is not an OFE block file (it begins with "1\x0a[HEADE", a block file with "0blocks\x0a"))"}};
  for (const auto& [name, text] : faults) {
    OFEIO_Manipulator reader;
    int format = 5;
    const std::string path = dir_ / name;
    EXPECT_EQ(reader.beginReading(path.c_str(), log.c_str(), 0), 0);
    EXPECT_EQ(reader.errorText(), text);
    EXPECT_EQ(refusalOf(path), text);
    EXPECT_EQ(OFEIO_Manipulator::getFileFormat(path.c_str(), format), 0);
    EXPECT_EQ(format, 0);
    EXPECT_EQ(OFEIO_Manipulator::getFileSecondBlockExsistency(path.c_str()), -1);
    logged += path + ": " + text + "\n";
  }
  EXPECT_EQ(bytesOf(log), logged);
}

}  // namespace
}  // namespace orvmesh::test
