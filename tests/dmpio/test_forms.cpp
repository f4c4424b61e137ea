#include "dmpio/dump_content.h"
#include "dmpio/layout.h"
#include "embedded/block_reader.h"
#include "platform/binio.h"
#include "support/test_data.h"

// What stands in a file, byte for byte or block for block, and what comes back.
namespace orvmesh::test {
namespace {

// As many entries in each block as in no other, but where counts are shared.
Content differentCounts() {
  Content content = everything();
  content.nodes.emplace_back(4, 40);
  content.ints[0].insert(content.ints[0].end(), {5, 6, 7});
  content.ints[1].insert(content.ints[1].end(), {5, 6, 7, 8});
  content.ints[4].insert(content.ints[4].end(), {5, 6, 7, 8, 9});
  return content;
}

TEST(DumpForms, TextIsThisByteForByte) {
  const TempDir dir;
  const std::string path = dir / "text.dmp";
  ASSERT_EQ(writeFile(path, 1023, differentCounts()), 1);
  EXPECT_EQ(bytesOf(path), testData("dmpio/data/different_counts.dmp"));

  const std::pair<int, const char*> headers[] = {{1020, "1\n[HEADER]\n1020 -11\n0 0 0\n0 0\n"},
                                                 {1022, "1\n[HEADER]\n1022 -11\n0 0 0\n0 0\n0 0\n"},
                                                 {1023, "1\n[HEADER]\n1023 -11\n0 0 0\n0 0\n0 0\n0 22\n"}};
  for (const auto& [version, header] : headers) {
    ASSERT_EQ(writeFile(path, version, {}), 1);
    EXPECT_EQ(bytesOf(path), header + testData("dmpio/data/empty_blocks.txt"));
  }
}

std::vector<int> vectorOf(BINIO_BinaryFile& file, int index) {
  std::vector<int> values;
  for (std::int64_t i = 0; i < file.currentBlock().getVectorSize('I', index); ++i)
    values.push_back(file.currentBlock().getValue(index, i));
  return values;
}

TEST(DumpForms, BlocksHoldTheseVectors) {
  using V = std::vector<int>;
  const std::vector<std::pair<long, std::vector<V>>> expected{
      {10000, {{2005, -11, 5, 6, 2, 4, 1, 2, 3, 7, 22}}},
      {20000, {{1, -2147483647 - 1, 3, 4}, {10, 2147483647, 30, 40}}},
      {30000, {{100, 0, 5, 6, 7}}},
      {40000, {{101, -1, 5, 6, 7, 8}}},
      {50000, {{102, -2}}},
      {60000, {{7}, {8}}},
      {62000, {{4, 0, 8}, {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12}}},
      {63000, {{104, -4, 5, 6, 7, 8, 9}}},
      {64000, {{105, -5}}},
      {64100, {{106, -6}}}};
  const TempDir dir;
  const std::string path = dir / "block.dmp";
  ASSERT_EQ(writeFile(path, 2005, differentCounts()), 1);
  EXPECT_EQ(bytesOf(path)[0], '0');
  BINIO_BinaryFile file;
  ASSERT_EQ(file.beginReading(path.c_str(), 0), 1);
  for (const auto& [id, vectors] : expected) {
    ASSERT_EQ(file.readBlock(id), 1) << id;
    for (std::size_t i = 0; i < vectors.size(); ++i)
      EXPECT_EQ(vectorOf(file, static_cast<int>(i)), vectors[i]) << id;
    EXPECT_EQ(file.currentBlock().getVectorSize('I', static_cast<int>(vectors.size())), -1) << id;
  }
  EXPECT_EQ(file.readBlock(61000), 0);  // shut out by the cool channel map
}

TEST(DumpForms, SkippedBlocksAreThereInOrder) {
  const TempDir dir;
  const std::string path = dir / "sensors.dmp";
  Content content;
  content.ints[4] = {5};
  for (const auto& [version, headerValues] : {std::pair{2001, 7U}, {2003, 9U}, {2004, 11U}}) {
    ASSERT_EQ(writeFile(path, version, content), 1);
    embedded::BlockReader reader;
    ASSERT_TRUE(reader.open(path));
    std::string seen;  // ids and sizes of their first vectors
    for (const auto& block : reader.blocks())
      seen += std::to_string(block.record.id) + ":" +
              std::to_string(block.columns.empty() ? 0 : block.columns[0].count) + " ";
    EXPECT_EQ(seen, "10000:" + std::to_string(headerValues) +
                        " 20000:0 30000:0 40000:0 50000:0 60000:0 61000:0 62000:0 63000:1 64000:0 64100:0 ")
        << version;
  }
}

// What the form takes away from a content between writing and reading.
Content comesBack(int version, Content content) {
  content.ints[3].clear();
  if (version >= 2001) return content;
  // The heading of the face-to-line map is not found, and the search for it runs to the end of the file.
  for (std::size_t i = 4; i < 7; ++i) content.ints[i].clear();
  content.lines.clear();
  return content;
}

TEST(DumpForms, EveryVersionComesBack) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const auto& row : dmpio::kVersions) {
    ASSERT_EQ(writeFile(path, row.version, everything()), 1);
    EXPECT_EQ(Dump::getFileVersion(path.c_str()), row.version);
    EXPECT_EQ(readFile(path), comesBack(row.version, everything())) << row.version;
    Dump dump;
    dump.m_HEADER_NElemCoolFaceToLineMap = dump.m_HEADER_Aux2 = 77;
    ASSERT_EQ(dump.beginReading(path.c_str(), nullptr), 1);
    EXPECT_EQ(dump.m_HEADER_Aux1, -11);
    EXPECT_EQ(dump.m_HEADER_NElemCoolFaceToLineMap, row.headerValues > 7 ? 2 : 77) << row.version;
    EXPECT_EQ(dump.m_HEADER_Aux2, row.headerValues > 9 ? 22 : 77) << row.version;
  }
}

TEST(DumpForms, TextLinesComeBackHalved) {
  const TempDir dir;
  Content content = everything();
  content.ints[3].clear();
  const std::string path = dir / "lines.dmp";
  content.lines = {{{5, 6}, {7, 8}, {9, 10}, {11, 12}}};
  ASSERT_EQ(writeFile(path, 1023, content), 1);
  EXPECT_EQ(readFile(path).lines, (std::vector<Pairs>{{{5, 6}, {7, 8}}}));
  // What is left of the first line is read as the second one: count 9 halved is 4, of which there is one.
  content.lines.push_back({{1, 2}, {3, 4}});
  ASSERT_EQ(writeFile(path, 1023, content), 1);
  EXPECT_EQ(readFile(path).lines,
            (std::vector<Pairs>{{{5, 6}, {7, 8}}, {{10, 11}, {12, 2}, {1, 2}, {3, 4}}}));
}

TEST(DumpForms, TheBlockFormCountsTheCoolChannelMapByTheFaceToLineMap) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const int version : {1023, 2004}) {
    Dump dump;
    dump.m_HEADER_NElemCoolChannelMap = 2;
    dump.m_HEADER_NElemCoolFaceToLineMap = 3;
    ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    int written = 0;
    while (dump.writeElementCoolChannelMapBlockEntry(written) >= 0) ++written;
    EXPECT_EQ(written, version == 2004 ? 3 : 2);
    EXPECT_EQ(dump.writeElementCoolFaceToLineMapBlockEntry(1), version == 2004 ? -1 : 0);
  }
}

// Vectors of a count's length come back whole, whatever was written into them.
TEST(DumpForms, UnwrittenEntriesOfABlockAreZero) {
  const TempDir dir;
  const std::string path = dir / "dump";
  Dump dump;
  dump.m_HEADER_NNodeMap = 3;
  ASSERT_EQ(dump.beginWriting(path.c_str(), 2003), 1);
  EXPECT_EQ(dump.writeNodeMapBlockEntry(8, 9), 0);
  ASSERT_EQ(dump.endWriting(), 1);
  EXPECT_EQ(readFile(path).nodes, (Pairs{{8, 9}, {0, 0}, {0, 0}}));
}

}  // namespace
}  // namespace orvmesh::test
