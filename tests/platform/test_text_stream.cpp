#include "platform/text_stream.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>

#include "platform/locale.h"
#include "support/comma_point.h"
#include "support/files.h"
#include "support/temp_dir.h"

namespace orvmesh::test {
namespace {

// Neither of the locales that the host may have set counts, and both come back.
TEST(TextStream, NumbersPassInTheClassicLocale) {
  const TempDir dir;
  const std::string path = dir / "\xC3\xA4.txt";
  const std::locale old = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  const std::locale global;
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  std::ofstream out;
  OpenTextStreamWithRetry(out, path.c_str());
  out << 1234567 << ' ' << 0.5 << '\n';
  out.close();
  std::ifstream in;
  OpenTextStreamWithRetry(in, path.c_str());
  std::string line;
  std::getline(in, line);
  EXPECT_EQ(line, "1234567 0.5");
  EXPECT_EQ(std::locale(), global);
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
  std::setlocale(LC_ALL, "C");
  std::locale::global(old);
}

TEST(TextStream, WritingReplacesAndFailuresSetTheFailBit) {
  const TempDir dir;
  const std::string path = dir / "text";
  for (const char* text : {"a longer text", "short"}) {
    std::ofstream out;
    OpenTextStreamWithRetry(out, path.c_str());
    ASSERT_TRUE(out.good());
    out << text;
  }
  EXPECT_EQ(bytesOf(path), "short");
  std::ifstream missing;
  OpenTextStreamWithRetry(missing, (dir / "none").c_str());
  EXPECT_TRUE(missing.fail());
  std::ofstream nowhere;
  OpenTextStreamWithRetry(nowhere, (dir / "none/text").c_str());
  EXPECT_TRUE(nowhere.fail());
}

TEST(Locale, TheDefaultExistsWhateverTheEnvironmentSays) {
  for (const char* name : {"C", "xx_NOWHERE", "", "C.UTF-8"}) {
    ::setenv("LC_ALL", name, 1);
    EXPECT_NO_THROW(std::locale{COrvLocale::GetSystemDefaultLocale()}) << name;
  }
  ::setenv("LC_ALL", "xx_NOWHERE", 1);
  EXPECT_EQ(COrvLocale::GetSystemDefaultLocale(), "C");
  ::unsetenv("LC_ALL");
}

}  // namespace
}  // namespace orvmesh::test
