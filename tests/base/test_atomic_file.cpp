#include "base/atomic_file.h"

#include <gtest/gtest.h>

#include "support/files.h"
#include "support/temp_dir.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

TEST(AtomicFile, AppearsWholeAndReplacesTheOldFile) {
  const TempDir dir;
  const std::string target = dir / "target";
  writeBytes(target, "old");
  constexpr auto kMode = static_cast<std::filesystem::perms>(0640);
  std::filesystem::permissions(target, kMode);
  AtomicFile file;
  ASSERT_TRUE(file.open(target));
  ASSERT_TRUE(file.append("0123456789", 10));
  ASSERT_TRUE(file.overwrite(2, "xy", 2));
  EXPECT_EQ(file.size(), 10U);
  EXPECT_EQ(bytesOf(target), "old");
  ASSERT_TRUE(file.commit());
  EXPECT_EQ(bytesOf(target), "01xy456789");
  const std::filesystem::directory_iterator files(dir.path());
  EXPECT_EQ(std::distance(begin(files), end(files)), 1);
  EXPECT_EQ(std::filesystem::status(target).permissions(), kMode);
  EXPECT_FALSE(file.commit());  // nothing open any more
}

TEST(AtomicFile, FollowsALinkInsteadOfReplacingIt) {
  const TempDir dir;
  writeBytes(dir / "real", "old");
  std::filesystem::create_symlink(dir / "real", dir / "link");
  AtomicFile file;
  ASSERT_TRUE(file.open(dir / "link"));
  file.append("new", 3);
  ASSERT_TRUE(file.commit());
  EXPECT_TRUE(std::filesystem::is_symlink(dir / "link"));
  EXPECT_EQ(bytesOf(dir / "real"), "new");
}

}  // namespace
