#include "platform/text_stream.h"

#include <gtest/gtest.h>

#include <clocale>
#include <locale>

#include "platform/locale.h"
#include "support/comma_point.h"
#include "support/temp_dir.h"

namespace orvmesh::test {
namespace {

TEST(TextStream, NumbersPassInTheClassicLocale) {
  const TempDir dir;
  const std::string path = dir / "\xC3\xA4.txt";
  const std::locale old = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  const std::locale global;
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
  std::locale::global(old);
}

// The host may have set the locale of C alone.
TEST(TextStream, TheLocaleOfCComesBack) {
  const TempDir dir;
  ASSERT_NE(std::setlocale(LC_ALL, "C.UTF-8"), nullptr);
  std::ofstream out;
  OpenTextStreamWithRetry(out, (dir / "text").c_str());
  EXPECT_STREQ(std::setlocale(LC_ALL, nullptr), "C.UTF-8");
  std::setlocale(LC_ALL, "C");
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
  std::ifstream in;
  OpenTextStreamWithRetry(in, path.c_str());
  std::string all;
  std::getline(in, all, '\0');
  EXPECT_EQ(all, "short");
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
