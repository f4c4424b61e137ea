#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "platform/file_copy.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace orvmesh::test {
namespace {

TEST(FileCopy, NeverTouchesATargetItMayNotTake) {
  const TempDir dir;
  const std::string from = dir / "from", to = dir / "\xC3\xA4", text(3'000'001, 'x');
  writeBytes(from, text);
  EXPECT_TRUE(CopyFileA(from.c_str(), to.c_str(), true));
  EXPECT_EQ(bytesOf(to), text);
  writeBytes(from, "short");
  EXPECT_FALSE(CopyFileA(from.c_str(), to.c_str(), true));
  EXPECT_EQ(bytesOf(to), text);
  EXPECT_TRUE(CopyFileA(from.c_str(), to.c_str(), false));
  EXPECT_EQ(bytesOf(to), "short");
  EXPECT_FALSE(CopyFileA(from.c_str(), from.c_str(), false));
  EXPECT_EQ(bytesOf(from), "short");

  const std::string pipe = dir / "pipe", fresh = dir / "fresh";
  ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
  for (const std::string& none : {dir / "none", dir.path(), pipe})
    EXPECT_FALSE(CopyFileA(none.c_str(), fresh.c_str(), true));
  EXPECT_FALSE(CopyFileA(nullptr, fresh.c_str(), true));
  EXPECT_FALSE(std::filesystem::exists(fresh));
}

}  // namespace
}  // namespace orvmesh::test
