#include <filesystem>

#include "dmpio/dump_content.h"
#include "dmpio/layout.h"

// Copies of a manipulator, copies of a file.
namespace orvmesh::test {
namespace {

TEST(DumpCopies, ShareTheOpenFileAndCloseItOnce) {
  const TempDir dir;
  const std::string path = dir / "dump";
  for (const int version : {1020, 2001}) {
    Dump dump;
    dump.m_HEADER_NNodeMap = 2;
    ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    EXPECT_EQ(dump.writeNodeMapBlockEntry(1, 2), 0);
    {
      Dump copy(dump);
      EXPECT_EQ(copy.m_HEADER_NNodeMap, 2);
      EXPECT_EQ(copy.writeNodeMapBlockEntry(3, 4), 1);
    }  // completes the file
    EXPECT_EQ(readFile(path).nodes, (Pairs{{1, 2}, {3, 4}}));
    EXPECT_EQ(dump.endWriting(), 0);
    EXPECT_EQ(readFile(path).nodes.size(), 2U);

    ASSERT_EQ(dump.beginReading(path.c_str(), nullptr), 1);
    int a = 0, b = 0;
    EXPECT_EQ(dump.readNodeMapBlockEntry(a, b), 0);
    Dump copy;
    copy = dump;
    EXPECT_EQ(copy.readNodeMapBlockEntry(a, b), 1);
    EXPECT_EQ(a, 3);
    copy.destroy();
    EXPECT_EQ(dump.readElementPlasticMapBlockEntry(a), -2);
    std::filesystem::remove(path);
  }
}

TEST(DumpCopies, ADestroyedWriterLeavesAWholeFileAnAssignedOneNone) {
  const TempDir dir;
  for (const int version : {1023, 2004}) {
    const std::string path = dir / std::to_string(version);
    {
      Dump dump;
      dump.m_HEADER_NNodeMap = 1;
      ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
      dump.writeNodeMapBlockEntry(1, 2);
      EXPECT_FALSE(std::filesystem::exists(path));
      dump = Dump();
      EXPECT_FALSE(std::filesystem::exists(path));
      ASSERT_EQ(dump.beginWriting(path.c_str(), version), 1);
    }
    EXPECT_TRUE(readFile(path) == Content());
  }
}

TEST(DumpCopies, ConvertBetweenAllVersions) {
  const TempDir dir;
  Content content = everything();
  content.ints[3].clear();  // does not come back from the text form, nor through a cool channel map
  content.ints[2].clear();
  Content expected = content;
  for (std::size_t i = 4; i < 7; ++i) expected.ints[i].clear();
  const std::string source = dir / "source", target = dir / "target";
  for (const auto& from : dmpio::kVersions) {
    ASSERT_EQ(writeFile(source, from.version, content), 1);
    for (const auto& to : dmpio::kVersions) {
      Dump dump;
      EXPECT_EQ(dump.convert(source.c_str(), target.c_str(), to.version), 1);
      EXPECT_STREQ(dump.getErrorText(), "");
      EXPECT_EQ(Dump::getFileVersion(target.c_str()), to.version);
      Content copied = readFile(target);
      if (from.version <= 2001 || to.version <= 2000) copied.lines = expected.lines;
      EXPECT_EQ(copied, expected) << from.version << " to " << to.version;
      Dump header;
      ASSERT_EQ(header.beginReading(target.c_str(), nullptr), 1);
      EXPECT_EQ(header.m_HEADER_Aux1, -11);
      EXPECT_EQ(header.m_HEADER_NSensorMap, from.headerValues == 11 && to.headerValues == 11 ? 2 : 0);
    }
  }
}

TEST(DumpCopies, ConvertOntoItselfAndWhereItCannot) {
  const TempDir dir;
  const std::string path = dir / "dump";
  ASSERT_EQ(writeFile(path, 2004, everything()), 1);
  const std::string before = bytesOf(path);
  Dump dump;
  const std::tuple<const char*, const char*, int> refused[] = {{path.c_str(), path.c_str(), 1021},
                                                               {path.c_str(), "/no/such/folder/dump", 1023},
                                                               {path.c_str(), "/", 2004},
                                                               {nullptr, path.c_str(), 1023}};
  for (const auto& [source, target, version] : refused) {
    EXPECT_EQ(dump.convert(source, target, version), 1);
    EXPECT_STRNE(dump.getErrorText(), "") << version;
  }
  EXPECT_EQ(dump.convert(path.c_str(), nullptr, 1023), 1);
  EXPECT_EQ(bytesOf(path), before);

  for (const int version : {1023, 2003}) EXPECT_EQ(dump.convert(path.c_str(), path.c_str(), version), 1);
  EXPECT_EQ(readFile(path).nodes, everything().nodes);

  std::string damaged = before;
  damaged[192] = static_cast<char>(damaged[192] ^ 1);  // within the node map
  writeBytes(path, damaged);
  EXPECT_EQ(dump.convert(path.c_str(), (dir / "copy").c_str(), 2004), 1);
  EXPECT_STREQ(dump.getErrorText(), "is damaged: the checksum of block 20000 does not match");
  EXPECT_FALSE(std::filesystem::exists(dir / "copy"));
}

}  // namespace
}  // namespace orvmesh::test
