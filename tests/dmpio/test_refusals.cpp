#include <algorithm>

#include "dmpio/dump_content.h"
#include "dmpio/dump_info.h"
#include "platform/binio.h"

// Result codes: of versions, of files that cannot be read or written, of blocks out of order, of bad bytes.
namespace orvmesh::test {
namespace {

TEST(DumpRefusals, VersionsAreClassified) {
  // Text form, known, supported; block form, known, supported; the result of beginWriting.
  using Classes = std::array<int, 7>;
  const TempDir dir;
  for (const auto& [version, wanted] : {std::pair{-2, Classes{1, 0, 0, 0, 0, 0, -1}},
                                        {1019, {1, 0, 0, 0, 0, 0, -1}},
                                        {1020, {1, 1, 1, 0, 0, 0, 1}},
                                        {1021, {1, 0, 0, 0, 0, 0, -1}},
                                        {1022, {1, 1, 1, 0, 0, 0, 1}},
                                        {1023, {1, 1, 1, 0, 0, 0, 1}},
                                        {2000, {1, 0, 0, 0, 0, 0, -1}},
                                        {2001, {0, 0, 0, 1, 1, 1, 1}},
                                        {2002, {0, 0, 0, 1, 1, 0, -1}},
                                        {2003, {0, 0, 0, 1, 1, 1, 1}},
                                        {2005, {0, 0, 0, 1, 1, 1, 1}},
                                        {2006, {0, 0, 0, 1, 1, 0, -1}}}) {
    Classes found{9, 9, 9, 9, 9, 9, 9};
    found[0] = Dump::isAsciiDMP(version, found[1], found[2]);
    found[3] = Dump::isBinaryDMP(version, found[4], found[5]);
    found[6] = Dump().beginWriting((dir / "dump").c_str(), version);
    EXPECT_EQ(found, wanted) << version;
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

TEST(DumpRefusals, FilesThatAreNoDumps) {
  const TempDir dir;
  const std::string path = dir / "dump", spaces(300, ' ');
  std::string damaged = headerBlock(path, {2004, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
  damaged[64] = static_cast<char>(damaged[64] ^ 1);
  const struct {
    std::string bytes;
    int version, result;
    const char* reason = "";  // its beginning
  } rows[] = {{"", -1, -1},
              {"2", -1, -1},
              {"0", -2, 0},
              {"0blocks\n", -2, 0},
              {"1", 1, -1},
              {"1\n[HEADER]\n", 1, -1},
              {"1\n[HEADER]\nabc\n", 1, -1},
              {"1\n[HEADER]\n1021 0\n[", 1021, -1, "has version 1021"},
              {"1\n[HEADER]\n99999999999 0\n[", 1, -1},
              {"1\n[HEADER]\n2004 0\n[", 2004, 0, "is a text file of version 2004"},
              {"1\n1020\n[HEAD]\n", 1020, 0},
              {"1\n[HEADER]\n1020 0\n1 2 3\n4 5\n", 1020, 0},
              {"1 [HEADER]\n\n+1020 0\r\n\n1 2 3\n4 5\n6 7\n[", 1020, 1},
              {"1" + spaces + "\n[HEADER]\n1020 5\n1 2 3\n4 5\n[NODE MAP]\n", 1, -1},
              {headerBlock(path, {1020, 0, 0, 0, 0, 0, 0}), 1020, 0, "is a block file of version 1020"},
              {headerBlock(path, {1021, 0, 0, 0, 0, 0, 0}), 1021, -1, "is a block file of version 1021"},
              {headerBlock(path, {2004, 0, 0}), 2004, 0, "has no sound header block of 11 values"},
              {damaged, 0, -1, "has no sound header block"}};
  for (const auto& [bytes, version, result, reason] : rows) {
    writeBytes(path, bytes);
    EXPECT_EQ(Dump::getFileVersion(path.c_str()), version) << bytes;
    Dump dump;
    dump.m_HEADER_NElemCoolFaceToLineMap = 77;
    EXPECT_EQ(dump.beginReading(path.c_str(), nullptr), result) << bytes;
    if (result == 1) {  // empty lines do not count, and the version has no values for the last one
      EXPECT_EQ(std::tuple(dump.m_HEADER_Version, dump.m_HEADER_NElemCoolChannelMap,
                           dump.m_HEADER_NElemCoolantEndMap, dump.m_HEADER_NElemCoolFaceToLineMap),
                std::tuple(1020, 3, 5, 77));
    }
    const std::string told = dump.getErrorText();
    EXPECT_TRUE(told.empty() == (result == 1) && told.starts_with(reason)) << bytes << ": " << told;
    EXPECT_EQ(dump.endReading(), result == 1 ? 1 : 0) << bytes;
  }
  for (const char* const missing : {"/no/such/file", "/dev/null", "/", static_cast<const char*>(nullptr)}) {
    EXPECT_EQ(Dump::getFileVersion(missing), -2);
    EXPECT_EQ(Dump().beginReading(missing, nullptr), 0);
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
  for (const int version : {1022, 2004}) {
    Dump dump;
    int a = 5, b = 6;
    bool isNew = true;
    EXPECT_EQ(dump.endReading() + dump.endWriting(), 0);
    EXPECT_EQ(dump.readNodeMapBlockEntry(a, b), -1);
    EXPECT_EQ(dump.readElementCoolLineToFaceMapBlockEntryItemPair(isNew, a, a, b), -1);
    EXPECT_EQ(dump.writeNodeMapBlockEntry(1, 1), 0);
    EXPECT_EQ(dump.writeElementCoolantEndMapBlockEntry(1, 1), 0);
    EXPECT_EQ(dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 1, 1, 1), -1);
    for (const auto& block : kOneInt) EXPECT_EQ((dump.*block.write)(1), -1);
    for (const char* const target : {static_cast<const char*>(nullptr), "/no/such/folder/dump", "/"})
      EXPECT_EQ(dump.beginWriting(target, version), 0);
    ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    EXPECT_EQ(dump.m_HEADER_Version, version);
    EXPECT_EQ(dump.writeNodeMapBlockEntry(1, 1), 0);  // full: an answer like that of a first entry
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
      EXPECT_EQ(first < 3 ? 0 : dump.writeElementCoolantEndMapBlockEntry(1, 2), 0);
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

TEST(DumpRefusals, TextLinesThatAreNoEntries) {
  const TempDir dir;
  const std::string path = dir / "dump";
  writeBytes(path,
             "1\n[HEADER]\n1023 0\n9 1 1\n9 0\n1 1\n1 0\n[NODE MAP]\n 1\t+2 rest\n3\nx\n4 5\n"
             "[ELEMENT PLASTIC MAP]\n8\n[SENSOR MAP]x\n7 9\n");
  Dump dump;
  ASSERT_EQ(dump.beginReading(path.c_str(), nullptr), 1);
  int a = 0, b = 0;
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

}  // namespace
}  // namespace orvmesh::test
