#include "base/atomic_file.h"

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <fstream>

#include "support/files.h"
#include "support/temp_dir.h"

using orvmesh::AtomicFile;
using orvmesh::test::bytesOf;
using orvmesh::test::TempDir;

namespace {

std::size_t filesIn(const std::string& folder) {
  const std::filesystem::directory_iterator files(folder);
  return static_cast<std::size_t>(std::distance(begin(files), end(files)));
}

TEST(AtomicFile, AppearsWholeAndReplacesTheOldFile) {
  const TempDir dir;
  const std::string target = dir / "target";
  std::ofstream(target) << "old";
  ::chmod(target.c_str(), 0640);
  AtomicFile file;
  ASSERT_TRUE(file.open(target));
  ASSERT_TRUE(file.append("0123456789", 10));
  ASSERT_TRUE(file.overwrite(2, "xy", 2));
  EXPECT_EQ(file.size(), 10U);
  EXPECT_EQ(bytesOf(target), "old");
  ASSERT_TRUE(file.commit());
  EXPECT_EQ(bytesOf(target), "01xy456789");
  EXPECT_EQ(filesIn(dir.path()), 1U);
  struct stat status {};
  ::stat(target.c_str(), &status);
  EXPECT_EQ(status.st_mode & 0777, 0640U);
  EXPECT_FALSE(file.commit());  // nothing open any more
}

TEST(AtomicFile, WithoutCommitNothingHappens) {
  const TempDir dir;
  std::ofstream(dir / "target") << "old";
  {
    AtomicFile file;
    ASSERT_TRUE(file.open(dir / "target"));
    file.append("new", 3);
  }
  EXPECT_EQ(bytesOf(dir / "target"), "old");
  EXPECT_EQ(filesIn(dir.path()), 1U);
}

TEST(AtomicFile, FollowsALinkInsteadOfReplacingIt) {
  const TempDir dir;
  std::ofstream(dir / "real") << "old";
  std::filesystem::create_symlink(dir / "real", dir / "link");
  AtomicFile file;
  ASSERT_TRUE(file.open(dir / "link"));
  file.append("new", 3);
  ASSERT_TRUE(file.commit());
  EXPECT_TRUE(std::filesystem::is_symlink(dir / "link"));
  EXPECT_EQ(bytesOf(dir / "real"), "new");
}

TEST(AtomicFile, RefusesWhatCannotBeReplaced) {
  const TempDir dir;
  std::filesystem::create_directory(dir / "folder");
  std::ofstream(dir / "file") << "x";
  for (const std::string& target : {dir / "folder", dir / "missing/target", std::string("/dev/full"),
                                    dir / "file/below", std::string()}) {
    AtomicFile file;
    EXPECT_FALSE(file.open(target)) << target;
    EXPECT_FALSE(file.errorText().empty());
    EXPECT_FALSE(file.append("x", 1));
    EXPECT_FALSE(file.commit());
  }
  EXPECT_EQ(filesIn(dir.path()), 2U);
}

}  // namespace
