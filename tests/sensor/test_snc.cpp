#include <orvmesh/sensor_file.h>

#include <clocale>
#include <filesystem>
#include <iostream>
#include <sstream>
#include <tuple>

#include "base/text_number.h"
#include "sensor/mesh.h"
#include "sensor/snc_rewrite.h"
#include "support/comma_point.h"
#include "support/files.h"

namespace orvmesh::test {
namespace {

const std::string kSnc =
    "9\n\n[HEADER] of a file\na header\n\n[SENSOR INFO] six\nfree\n2\n2\n0\n2\n0\n0\n"
    "1 1 1.5 -2 0\n1 4 4 1e10 0.1234567\n2\t2  +2 0 0\n2 6 6 0 0 \n4 3 3 0 0\r\n4 5 5 0 0\n"
    "[VARBLE INFO]\nv\nall [HISTORY DATA]\nt 0\na1\na4\na2\na6\na3\na5\n\nt 1\nb1\nb4\nb2\nb6\nb3\nb5\n*\n"
    "[TIMESTEP]\nx\n[EOF]\n";
const std::string kRewritten =
    "1\n[HEADER] of a file\na header\n\n[SENSOR INFO] six\nfree\n1\n1\n0\n3\n1\n0\n"
    "1  1      1.5 -2 0\n2  2      2 0 0\n4  3      3 0 0\n4  4      4 1e+10 0.123457\n4  5      5 0 0\n"
    "5  6      6 0 0\n"
    "[VARBLE INFO]\nv\nall [HISTORY DATA]\nt 0\na1\na2\na3\na4\na5\na6\n\nt 1\nb1\nb2\nb3\nb4\nb5\nb6\n\n"
    "[TIMESTEP]\nx\n[EOF]";

std::string replaced(std::string text, const std::string& what, const std::string& with) {
  const auto at = text.find(what);
  EXPECT_NE(at, text.npos) << what;
  return at == text.npos ? text : text.replace(at, what.size(), with);
}

class SensorFile : public testing::Test {
 protected:
  std::string errorOf(const std::string& path) {
    file_.TransferSensorFile_SNC(path.c_str(), mesh_.c_str(), 0, 0);
    return file_.GetErrorMessage_Link();
  }

  TempDir dir_;
  // One part element, one part node, three mold element and one mold node sensor; 4 (the second mold element)
  // and 6 lie in inserts. The joined order is 1 4 2 6 3 5.
  std::string mesh_ =
      writeOfe(dir_, sensorMeshJson({{1, 1, 1}, {2, 5, 2}, {4, 2, 3}, {4, 1, 4}, {4, 3, 5}, {5, 8, 6}}));
  std::string path_ = dir_ / "H\xC3\xB6he \xE6\xB8\xA9\xE5\xBA\xA6.snc";
  COrvMeshTransfer_SensorFile file_;
};

// Numbers pass in the classic locale, whatever the process's own: its C++ locale, and its C one where a
// comma-decimal one is installed.
TEST_F(SensorFile, RewritesInPlaceInAnyLocale) {
  const std::locale old = std::locale::global(std::locale(std::locale::classic(), new CommaPoint));
  for (const char* name : {"de_DE.UTF-8", "de_DE.utf8", "fr_FR.UTF-8"})
    if (std::setlocale(LC_NUMERIC, name) != nullptr) break;
  for (const std::string& text : {kSnc, replaced(kSnc, "[EOF]\n", "[EOF]")}) {
    writeBytes(path_, text);
    EXPECT_EQ(errorOf(path_), "");
    EXPECT_EQ(bytesOf(path_), kRewritten);
    EXPECT_FALSE(std::filesystem::exists(path_ + ".tmc"));
  }
  EXPECT_EQ(file_.GetSensorMappingGlobalID(SensorMap_Old2New, 2), 3);
  std::locale::global(old);
  std::setlocale(LC_ALL, "C");
}

TEST_F(SensorFile, ACopyThatIsLeftOverStopsIt) {
  writeBytes(path_, kSnc);
  writeBytes(path_ + ".tmc", "an older one");
  EXPECT_NE(errorOf(path_).find(".tmc"), std::string::npos);
  EXPECT_EQ(bytesOf(path_), kSnc);
  EXPECT_EQ(bytesOf(path_ + ".tmc"), "an older one");
  for (const std::string& gone : {dir_ / "none.snc", dir_.path()}) {
    EXPECT_NE(errorOf(gone), "");
    EXPECT_FALSE(std::filesystem::exists(gone + ".tmc"));
  }
  file_.TransferSensorFile_SNC(nullptr, nullptr, 0, 0);
}

// The mesh's sensors in reading order, as the operation without a report leaves them.
TEST_F(SensorFile, MalformedLinesRepeatWhatStoodBefore) {
  writeBytes(path_, replaced(kSnc, "2 6 6 0 0 ", "2 x"));
  EXPECT_EQ(errorOf(path_),
            path_ + ": line 17: expected sensor 4 of 6 (type, number, x, y, z), found \"2 x\"");
  EXPECT_EQ(bytesOf(path_), replaced(kRewritten, "5  6      6 0 0", "5  2      2 0 0"));
}

class Snc : public SensorFile {
 protected:
  sensor::SncReport rewrite(const std::string& text) {
    std::istringstream in(text);
    out_.clear();
    const auto take = [this](std::string_view piece) {
      largest_ = std::max(largest_, piece.size());
      out_ += piece;
      return true;
    };
    return sensor::rewriteSnc(in, take, maps_);
  }

  std::string error_;
  sensor::SensorMaps maps_ = sensor::readStandardMaps(mesh_.c_str(), 0, error_);
  std::string out_;
  std::size_t largest_ = 0;
};

TEST_F(Snc, CutAnywhereItIsToldAndEndsAsItMust) {
  const std::size_t whole = kSnc.size() - 1;
  for (std::size_t size = 0; size <= kSnc.size(); ++size) {
    const auto report = rewrite(kSnc.substr(0, size));
    EXPECT_EQ(report.error.empty(), size >= whole) << size << report.error;
    EXPECT_TRUE(out_.starts_with("1\n") && out_.ends_with("[EOF]")) << size << out_;
  }
}

TEST_F(Snc, FaultsAreNamedByLine) {
  const struct {
    const char *what, *with, *error;
  } cases[] = {
      {"2\n2\n0\n2", "1\n1\n0\n4",
       "line 13: sensor counts of types 1 to 6 are 1 1 0 4 0 0; the mesh joined with"},
      {"2\n2\n0\n2\n0", "1\n1\n0\n3\n1", "was the file rewritten before?"},
      {"free\n2", "free\ntwo", "line 8: expected the count of sensors of type 1, found \"two\""},
      {"4 5 5 0 0\n", "", "line 19: expected sensor 6 of 6 (type, number, x, y, z), found \"[VARBLE INFO]\""},
      {"4 5 5 0 0\n", "4 5 5 0 0\n4 6 6 0 0\n",
       "line 20: \"4 6 6 0 0\" stands behind the last of the mesh's 6"},
      {"4 5 5 0 0\n", "4 5 5 0 1e999\n", "line 19: expected sensor 6"},
      {"4 5 5 0 0\n", "4 2147483648 5 0 0\n", "line 19: expected sensor 6"},
      {"a3\n", "", "line 31: history record 2 or one before it has not the mesh's 6 sensor lines"},
      {"b3\n", "", "line 31: history record 2 or one"},
      {"b3\nb5\n*\n", "", "line 31: history record 2 or one"},
      {"[TIMESTEP]", "[TIME]", "\"[TIME]\" belongs to no section and would be lost"},
      {"[TIMESTEP]", "[HEADER]", "line 39: \"[HEADER]\" belongs to no section and would be lost"},
      {"9\n", "9\n\x01stray\n", "line 2: \"?stray\" belongs to no section"},
      {"[SENSOR INFO]", "[SENSORS]", "line 6: \"[SENSORS] six\" belongs to no section"},
      {"[EOF]\n", "[EOF]\nx", "line 42: \"x\" belongs to no section"},
      {"[EOF]\n", "", "line 40: the text ends without [EOF]"},
  };
  for (const auto& [what, with, wanted] : cases) {
    const std::string error = rewrite(replaced(kSnc, what, with)).error;
    EXPECT_NE(error.find(wanted), std::string::npos) << what << " -> " << with << ": " << error;
  }
  EXPECT_NE(rewrite("1\n[EOF]\n").error.find("without a section [SENSOR INFO]"), std::string::npos);
  const auto report = rewrite(replaced(kSnc, "4 3 3 0 0\r", "4 3 3 0 0 extra"));
  EXPECT_EQ(std::tuple(report.error, report.longSensorLines, report.closingTexts), std::tuple("", 1, 1));
}

struct SyncCount : std::stringbuf {
  std::int64_t syncs = 0;
  int sync() override { return ++syncs, 0; }
};

// More than the reader and the writer hold at a time, some of it in one line; each record flushes standard
// output.
TEST_F(Snc, HistoriesAreStreamed) {
  std::string text = kSnc.substr(0, kSnc.find("t 0")), wanted;
  constexpr std::int64_t kRecords = 40000;
  for (std::int64_t r = 0; r < kRecords; ++r) {
    const std::string time = std::to_string(r) + std::string(r % 9999 == 1 ? 260'000 : 0, 'x') + "\n";
    text += time + "value 1\nvalue 4\nvalue 2\nvalue 6\nvalue 3\nvalue 5\n\n";
    wanted += time + "value 1\nvalue 2\nvalue 3\nvalue 4\nvalue 5\nvalue 6\n\n";
  }
  SyncCount count;
  std::streambuf* const old = std::cout.rdbuf(&count);
  const auto report = rewrite(text + "[EOF]\n");
  std::cout.rdbuf(old);
  EXPECT_EQ(std::tuple(report.error, report.records, count.syncs), std::tuple("", kRecords, kRecords));
  EXPECT_EQ(out_.substr(out_.find("0\nvalue 1")), wanted + "[EOF]");
  EXPECT_LT(largest_, std::size_t{1} << 20);
}

}  // namespace
}  // namespace orvmesh::test
