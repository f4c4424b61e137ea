#include <algorithm>
#include <filesystem>
#include <sstream>

#include "dmpio/dump_content.h"
#include "dmpio/dump_info.h"
#include "platform/binio.h"

// Result codes: of versions, of files that cannot be read or written, of blocks out of order, of bad bytes.
namespace orvmesh::test {
namespace {

TEST(DumpRefusals, VersionsAreClassified) {
  struct Row {
    int version, isText, textKnown, textSupported, isBlock, blockKnown, blockSupported;
  };
  for (const Row& row : {Row{1019, 1, 0, 0, 0, 0, 0},
                         {1020, 1, 1, 1, 0, 0, 0},
                         {1021, 1, 0, 0, 0, 0, 0},
                         {1022, 1, 1, 1, 0, 0, 0},
                         {1023, 1, 1, 1, 0, 0, 0},
                         {2000, 1, 0, 0, 0, 0, 0},
                         {-2, 1, 0, 0, 0, 0, 0},
                         {2001, 0, 0, 0, 1, 1, 1},
                         {2002, 0, 0, 0, 1, 1, 0},
                         {2003, 0, 0, 0, 1, 1, 1},
                         {2005, 0, 0, 0, 1, 1, 1},
                         {2006, 0, 0, 0, 1, 1, 0}}) {
    int known = 9;
    int supported = 9;
    EXPECT_EQ(Dump::isAsciiDMP(row.version, known, supported), row.isText) << row.version;
    EXPECT_EQ(std::pair(known, supported), std::pair(row.textKnown, row.textSupported)) << row.version;
    EXPECT_EQ(Dump::isBinaryDMP(row.version, known, supported), row.isBlock) << row.version;
    EXPECT_EQ(std::pair(known, supported), std::pair(row.blockKnown, row.blockSupported)) << row.version;
    const TempDir dir;
    const bool isWritable = row.textSupported + row.blockSupported > 0;
    EXPECT_EQ(Dump().beginWriting((dir / "dump").c_str(), row.version), isWritable ? 1 : -1) << row.version;
  }
}

TEST(DumpRefusals, FilesThatAreNoDumps) {
  struct Row {
    const char* bytes;
    int version, result;
  };
  const std::string longLine(300, ' ');
  const std::string longFirstLine = "1" + longLine + "\n[HEADER]\n1020 5\n1 2 3\n4 5\n[NODE MAP]\n";
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const Row& row : {Row{"", -1, -1},
                         {"2", -1, -1},
                         {"0", -2, 0},
                         {"0blocks\n", -2, 0},
                         {"1", 1, -1},
                         {"1\n[HEADER]\n", 1, -1},
                         {"1\n[HEADER]\nabc\n", 1, -1},
                         {"1\n[HEADER]\n1021 0\n[", 1021, -1},
                         {"1\n[HEADER]\n99999999999 0\n[", 1, -1},
                         {"1\n[HEADER]\n2004 0\n[", 2004, 0},
                         {"1\n1020\n[HEAD]\n", 1020, 0},
                         {"1\n[HEADER]\n1020 0\n1 2 3\n4 5\n", 1020, 0},
                         {"1 [HEADER]\n\n+1020 0\r\n\n1 2 3\n4 5\n6 7\n[", 1020, 1},
                         {longFirstLine.c_str(), 1, -1}}) {
    writeBytes(path, row.bytes);
    EXPECT_EQ(Dump::getFileVersion(path.c_str()), row.version) << row.bytes;
    Dump dump;
    dump.m_HEADER_NElemCoolFaceToLineMap = 77;
    EXPECT_EQ(dump.beginReading(path.c_str(), nullptr), row.result) << row.bytes;
    if (row.result == 1) {  // empty lines do not count, and the version has no values for the last one
      EXPECT_EQ(std::tuple(dump.m_HEADER_Version, dump.m_HEADER_NElemCoolChannelMap,
                           dump.m_HEADER_NElemCoolantEndMap, dump.m_HEADER_NElemCoolFaceToLineMap),
                std::tuple(1020, 3, 5, 77));
    }
    EXPECT_EQ(*dump.getErrorText() == '\0', row.result == 1) << row.bytes;
    EXPECT_EQ(dump.endReading(), row.result == 1 ? 1 : 0) << row.bytes;
  }
  for (const char* const missing : {"/no/such/file", "/dev/null", "/", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(Dump::getFileVersion(missing), -2);
    EXPECT_EQ(Dump().beginReading(missing, nullptr), 0);
  }
}

// The bytes of a block file with these values in its header block.
std::string headerBlock(const std::string& path, const std::vector<int>& values) {
  BINIO_BinaryFile file;
  EXPECT_EQ(file.beginWriting(path.c_str()), 1);
  file.currentBlock().setVectorCount('I', 1);
  file.currentBlock().setVectorSize('I', 0, static_cast<std::int64_t>(values.size()));
  std::copy(values.begin(), values.end(), file.currentBlock().setValues(0));
  EXPECT_EQ(file.writeBlock(10000), 1);
  EXPECT_EQ(file.endWriting(), 1);
  return bytesOf(path);
}

TEST(DumpRefusals, TheReasonFitsTheForm) {
  const TempDir dir;
  const std::string path = dir / "dump";
  std::string damaged = headerBlock(path, {2004, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  damaged[64] = static_cast<char>(damaged[64] ^ 1);
  const std::tuple<std::string, int, const char*> rows[] = {
      {"1\n[HEADER]\n2004 0\n[", 0, "is a text file of version 2004"},
      {"1\n[HEADER]\n1021 0\n[", -1, "has version 1021"},
      {headerBlock(path, {1020, 0, 0, 0, 0, 0, 0}), 0, "is a block file of version 1020"},
      {headerBlock(path, {1021, 0, 0, 0, 0, 0, 0}), -1, "is a block file of version 1021"},
      {headerBlock(path, {2004, 0, 0}), 0, "has no sound header block of 11 values"},
      {damaged, -1, "has no sound header block"}};
  for (const auto& [bytes, result, reason] : rows) {
    writeBytes(path, bytes);
    Dump dump;
    EXPECT_EQ(dump.beginReading(path.c_str(), nullptr), result) << reason;
    EXPECT_EQ(std::string(dump.getErrorText()).rfind(reason, 0), 0U) << dump.getErrorText();
  }
}

TEST(DumpRefusals, AWriterThatStopsInALineLeavesAFileThatCanBeLookedAt) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const int version : {1023, 2004}) {
    Dump dump;
    dump.m_HEADER_NElemCoolLineToFaceMap = 2;
    dump.m_HEADER_NSensorMap = 1;
    ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 1, 1, 2);
    dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 3, 3, 4);
    dump.writeSensorMapBlockEntry(7);
    ASSERT_EQ(dump.endWriting(), 1);
    const auto info = dmpio::readDumpInfo(path);
    EXPECT_EQ(info.blocks[dmpio::kSensorMap].inFile.entries, 1) << version;
    EXPECT_EQ(info.blocks[dmpio::kLineToFaceMap].inFile.entries, 2) << version;
    EXPECT_FALSE(info.notes.empty()) << version;
  }
}

TEST(DumpRefusals, BeginAndEndOutOfOrder) {
  const TempDir dir;
  const std::string path = dir / "dump";
  const std::string& folder = dir;
  for (const int version : {1022, 2004}) {
    Dump dump;
    int a = 5;
    int b = 6;
    bool isNew = true;
    EXPECT_EQ(dump.endReading() + dump.endWriting(), 0);
    EXPECT_EQ(dump.readNodeMapBlockEntry(a, b), -1);
    EXPECT_EQ(dump.readElementCoolLineToFaceMapBlockEntryItemPair(isNew, a, a, b), -1);
    EXPECT_EQ(dump.writeNodeMapBlockEntry(1, 1), 0);
    EXPECT_EQ(dump.writeElementCoolantEndMapBlockEntry(1, 1), 0);
    EXPECT_EQ(dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 1, 1, 1), -1);
    for (const auto& block : kOneInt) EXPECT_EQ((dump.*block.write)(1), -1);
    EXPECT_EQ(dump.beginWriting(nullptr, version), 0);
    EXPECT_EQ(dump.beginWriting("/no/such/folder/dump", version), 0);
    EXPECT_EQ(dump.beginWriting(folder.c_str(), version), 0);
    ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    EXPECT_EQ(dump.m_HEADER_Version, version);
    EXPECT_EQ(dump.beginWriting(path.c_str(), version), 0);
    EXPECT_EQ(dump.endWriting(), 1);
    ASSERT_EQ(dump.beginReading(path.c_str(), "not used"), 1);
    EXPECT_EQ(dump.beginReading(path.c_str(), nullptr), 0);
    for (int again = 0; again < 2; ++again) EXPECT_EQ(dump.readNodeMapBlockEntry(a, b), -2);
    EXPECT_EQ(std::pair(a, b), std::pair(5, 6));
  }
}

TEST(DumpRefusals, BlocksAreStartedOnceAndInOrder) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const int version : {1023, 2004}) {
    for (std::size_t first = 0; first < kOneInt.size(); ++first) {
      Dump dump;
      setCounts(dump, everything());
      ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
      EXPECT_EQ((dump.*kOneInt[first].write)(1), 0);
      for (std::size_t earlier = 0; earlier < first; ++earlier)
        EXPECT_EQ((dump.*kOneInt[earlier].write)(1), -1) << kOneInt[earlier].id;
      EXPECT_EQ(dump.writeNodeMapBlockEntry(1, 2), 0);
      if (first >= 3) {
        EXPECT_EQ(dump.writeElementCoolantEndMapBlockEntry(1, 2), 0);
      }
      // The refused ones left the block as it was.
      EXPECT_EQ((dump.*kOneInt[first].write)(2), 1) << kOneInt[first].id;
      EXPECT_EQ((dump.*kOneInt[first].write)(3), -1) << kOneInt[first].id;
      ASSERT_EQ(dump.endWriting(), 1);
      EXPECT_TRUE(readFile(path).nodes.empty() && readFile(path).ends.empty());
      if (first != 3 || version == 2004) {
        EXPECT_EQ(readFile(path).ints[first], (std::vector{1, 2})) << kOneInt[first].id;
      }
    }
  }
}

TEST(DumpRefusals, AFullNodeMapAnswersLikeItsFirstEntry) {
  const TempDir dir;
  Dump dump;
  dump.m_HEADER_NNodeMap = 1;
  ASSERT_EQ(dump.beginWriting((dir / "dump").c_str(), 2001), 1);
  for (const int value : {1, 2}) EXPECT_EQ(dump.writeNodeMapBlockEntry(value, value), 0);
  ASSERT_EQ(dump.endWriting(), 1);
  EXPECT_EQ(readFile(dir / "dump").nodes, (Pairs{{1, 1}}));
}

TEST(DumpRefusals, TextLinesThatAreNoEntries) {
  const TempDir dir;
  const std::string path = dir / "dump";
  writeBytes(
      path,
      "1\n[HEADER]\n1023 0\n9 1 1\n9 0\n1 1\n1 0\n[NODE MAP]\n 1\t+2 rest\n3\nx\n4 5\n[ELEMENT PLASTIC MAP]\n"
      "8\n[SENSOR MAP]x\n7 9\n");
  Dump dump;
  ASSERT_EQ(dump.beginReading(path.c_str(), nullptr), 1);
  int a = 0;
  int b = 0;
  const std::tuple<int, int, int> expected[] = {{0, 1, 2}, {1, 3, 2}, {-1, 3, 2}, {2, 4, 5}, {-1, 4, 5}};
  for (const auto& [result, first, second] : expected) {
    EXPECT_EQ(dump.readNodeMapBlockEntry(a, b), result);
    EXPECT_EQ(std::pair(a, b), std::pair(first, second));
  }
  EXPECT_EQ(dump.readElementPlasticMapBlockEntry(a), 0);  // its heading was the last line read
  EXPECT_EQ(dump.readElementPlasticMapBlockEntry(a), -1);
  EXPECT_EQ(dump.readSensorMapBlockEntry(a), 0);
  EXPECT_EQ(std::pair(a, dump.readSensorMapBlockEntry(a)), std::pair(7, -1));
  EXPECT_EQ(dump.readElementMoldBaseMapBlockEntry(a), -2);  // forward only
}

// Reads everything twice over and converts into both forms; must end, whatever the bytes.
void useAll(const std::string& path, const std::string& target) {
  Dump dump;
  if (dump.beginReading(path.c_str(), nullptr) == 1) {
    (void)readContent(dump);
    (void)readContent(dump);
  }
  for (const int version : {1023, 2004}) EXPECT_EQ(Dump().convert(path.c_str(), target.c_str(), version), 1);
}

TEST(DumpRefusals, HostileCountsAllocateNothingMuch) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const char* const count : {"2147483647", "-2147483648", "-1", "4294967297"}) {
    std::ostringstream text;
    text << "1\n[HEADER]\n1023 0\n";
    for (int line = 0; line < 4; ++line) text << count << ' ' << count << ' ' << count << '\n';
    text << "[NODE MAP]\n1 2\n[ELEMENT COOL LINE TO FACE MAP]\n" << count << " 1 2 -8 3 4 -9 5 6\n";
    writeBytes(path, text.str());
    useAll(path, dir / "copy");
    if (std::filesystem::exists(dir / "copy")) {
      EXPECT_LT(std::filesystem::file_size(dir / "copy"), 4U << 20);
    }
  }
}

}  // namespace
}  // namespace orvmesh::test
