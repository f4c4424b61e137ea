#include <fcntl.h>
#include <sys/resource.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "embedded/all_blocks.h"
#include "embedded/mesh.h"

// What breaks a file from outside: flipped bytes, a disk that fills up, a file put in its place.
namespace orvmesh::test {
namespace {

// Reads all entries through the manipulator; whether it noticed anything.
bool entryReaderNotices(const std::string& path) {
  OFEIO_Manipulator file;
  if (file.beginReading(path.c_str(), nullptr, 0) != 1) return !file.errorText().empty();
  readAllBlocks(file);
  return !file.errorText().empty();
}

class Damage : public ::testing::Test {
 protected:
  void SetUp() override {
    ASSERT_EQ(writeAllBlocks(path_), 1);
    bytes_ = bytesOf(path_);
    ASSERT_EQ(refusalOf(path_), "");
    ASSERT_FALSE(entryReaderNotices(path_));
  }
  TempDir dir_;
  const std::string path_ = dir_ / "mesh.ofe";
  std::string bytes_;
};

TEST_F(Damage, EveryFlippedByteIsNoticed) {
  const int descriptor = ::open(path_.c_str(), O_WRONLY);
  std::size_t unseen = 0;
  for (std::size_t i = 0; i < bytes_.size(); ++i) {
    const char flipped = static_cast<char>(bytes_[i] ^ (i % 3 == 0 ? 0x01 : i % 3 == 1 ? 0x80 : 0xFF));
    ASSERT_EQ(::pwrite(descriptor, &flipped, 1, static_cast<off_t>(i)), 1);
    if (refusalOf(path_).empty() || !entryReaderNotices(path_)) ++unseen;
    ASSERT_EQ(::pwrite(descriptor, &bytes_[i], 1, static_cast<off_t>(i)), 1);
  }
  ::close(descriptor);
  EXPECT_EQ(unseen, 0);
  EXPECT_EQ(refusalOf(path_), "");
}

TEST_F(Damage, AFullDiskLeavesTheOldTarget) {
  std::signal(SIGXFSZ, SIG_IGN);
  struct rlimit old {};
  ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &old), 0);
  const std::string target = dir_ / "target";
  writeBytes(target, "the old target");
  for (std::size_t room = 0; room <= bytes_.size() + 64; room += 64) {
    struct rlimit limit {
      room, old.rlim_max
    };
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &limit), 0);
    const int result = writeAllBlocks(target);
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &old), 0);
    EXPECT_EQ(result, room < bytes_.size() ? 0 : 1);
    EXPECT_EQ(bytesOf(target), room < bytes_.size() ? "the old target" : bytes_) << room;
    const std::filesystem::directory_iterator files(dir_.path());
    EXPECT_EQ(std::distance(begin(files), end(files)), 2);  // the mesh and the target
  }
}

TEST_F(Damage, AReplacedFileStaysReadable) {
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(path_.c_str(), nullptr, 0, false), 1);
  ASSERT_EQ(twoTetrahedra().write(path_), 1);
  EXPECT_EQ(data.model().nodes.count(), 9);
  EXPECT_EQ(data.model().nodes[9].x, 4);
}

}  // namespace
}  // namespace orvmesh::test
