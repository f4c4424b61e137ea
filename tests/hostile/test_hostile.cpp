#include <orvmesh/sensor_mapping.h>

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <regex>
#include <vector>

#include "fuzz/reseal.h"
#include "fuzz/scratch.h"
#include "heatsource/comsol_reader.h"
#include "mutations/readers.h"
#include "platform/ofv_reader.h"
#include "support/allocation_hook.h"
#include "support/everything.h"
#include "support/json_mesh.h"
#include "support/long_run.h"
#include "view/ofv_read.h"

// Files whose numbers lie, one at a time: in text every number is replaced, in the other forms every word
// that may be a count, a size or an offset; checksums are right. No reader asks for more memory than the
// file's size allows, and each refuses in one line or finds a valid file. Every 17th file is tried, and all
// of them with ORVMESH_LONG set.
namespace orvmesh::test {
namespace {

// The largest request for memory of this program's own code since it was last asked.
std::size_t largestRequest = 0;

}  // namespace

// So that a fault does not take the machine down.
bool grants(std::size_t size) {
  largestRequest = std::max(largestRequest, size);
  return size <= std::size_t{1} << 30;
}

namespace {

constexpr std::size_t mostFor(std::size_t size) { return (std::size_t{64} << 20) + 16 * size; }

// Among them products that wrap (times 4, 8, 12, 16, 24 or 32 bytes) and counts above the bytes left.
// clang-format off
constexpr const char* kTexts[] = {
    "-1", "0", "4096", "100000000", "1073741825", "2147483647", "2147483648", "-2147483648", "4294967295",
    "1152921504606846977", "9223372036854775807", "9223372036854775808", "18446744073709551615",
    "18446744073709551616"};
constexpr std::uint32_t kWords[] = {
    ~0U, 0, 4096, 100'000'000, 0x20000001U, 0x40000001U, 0x7FFFFFFFU, 0x80000000U};
constexpr std::uint64_t kOne = 1;
constexpr std::uint64_t kLongWords[] = {
    ~std::uint64_t{0}, kOne << 31, (kOne << 32) + 1, (kOne << 60) + 1, (kOne << 61) + 1, (kOne << 62) + 1,
    (kOne << 63) - 1, kOne << 63};
// clang-format on

using Use = void (*)(const std::string& path, const TempDir& dir);
using Seeds = std::vector<std::string> (*)(const TempDir& dir);

void useOfe(const std::string& path, const TempDir&) {
  COrvMeshTransfer_SensorMapping().SetMeshFilePath_Std(path.c_str(), 0, 0);
  COFEData model;
  if (model.ReadDataBin(path.c_str(), nullptr, 0, false) != 1) throw Failure(path, model.errorText());
  view::dumpJson(path, [](std::string_view) {});
}

void useOfv(const std::string& path, const TempDir& dir) {
  view::ofvInfoAsText(path);
  view::exportOfv(path, dir / "cells.vtu");
}

void useComsol(const std::string& path, const TempDir&) {
  COrvTool_PointFileReader table;
  heatsource::ComsolReport report;
  ASSERT_TRUE(heatsource::readComsolFile(path.c_str(), table, report, [](double, double) {}));
  if (!report.error.empty()) throw Failure(path, report.error);
}

// The seeds of a fuzz target.
std::vector<std::string> corpus(const char* name) {
  std::vector<std::string> files;
  for (const auto& entry : std::filesystem::directory_iterator(std::string(ORVMESH_CORPUS) + "/" + name))
    files.push_back(bytesOf(entry.path()));
  return files;
}

struct Format {
  const char* name;
  Seeds seeds;
  Use use;
  enum class Form { Text, Words, SealedWords } form;
};
void PrintTo(const Format& format, std::ostream* out) { *out << format.name; }
// clang-format off
const Format kFormats[] = {
    {"OFE", [](const TempDir& dir) { return std::vector{bytesOf(writeOfe(dir.path(), kEverything))}; }, &useOfe,
     Format::Form::SealedWords},
    {"OFV", [](const TempDir&) { return corpus("ofv"); }, &useOfv, Format::Form::SealedWords},
    {"DMPblocks", [](const TempDir&) { return corpus("dmp_block"); }, &useDump, Format::Form::SealedWords},
    {"DMPtext", [](const TempDir&) { return corpus("dmp_text"); }, &useDump, Format::Form::Text},
    {"JSON", [](const TempDir&) { return std::vector{std::string(kEverything)}; }, &useJson, Format::Form::Text},
    {"MSH", [](const TempDir&) { return corpus("msh"); }, &useMsh, Format::Form::Text},
    {"MSHwords", [](const TempDir&) { return corpus("msh"); }, &useMsh, Format::Form::Words},
    {"CTG", [](const TempDir&) { return corpus("ctg"); }, &useCtg, Format::Form::Text},
    {"SNC", [](const TempDir&) { return std::vector{std::string(kSncText)}; }, &useSnc, Format::Form::Text},
    {"COMSOL", [](const TempDir&) { return corpus("comsol"); }, &useComsol, Format::Form::Text}};
// clang-format on

template <class Visit>
void withTexts(const std::string& seed, const Visit& visit) {
  static const std::regex word("-?[A-Za-z0-9.]+"), number("-?[0-9]+");
  for (std::sregex_iterator at(seed.begin(), seed.end(), word), end; at != end; ++at) {
    if (!std::regex_match(at->str(), number)) continue;
    const auto begin = static_cast<std::size_t>(at->position()),
               size = static_cast<std::size_t>(at->length());
    for (const char* const text : kTexts) visit(std::string(seed).replace(begin, size, text));
  }
}

// Counts in seeds of this size are small; those that are 0 are aligned.
bool mayBeCount(const std::string& bytes, std::size_t at) {
  std::uint32_t word = 0;
  std::memcpy(&word, &bytes[at], sizeof word);
  return word < 65536 && (word > 0 || at % 4 == 0);
}

template <class Visit>
void withWords(const std::string& seed, bool isSealed, const Visit& visit) {
  const auto put = [&](std::size_t at, const auto& value) {
    if (at + sizeof value > seed.size()) return;
    std::string bytes = seed;
    std::memcpy(&bytes[at], &value, sizeof value);
    if (isSealed) fuzzing::seal(reinterpret_cast<std::uint8_t*>(bytes.data()), bytes.size());
    visit(bytes);
  };
  for (std::size_t at = 0; at + 4 <= seed.size(); at += isSealed ? 4 : 1) {
    if (!mayBeCount(seed, at)) continue;
    for (const auto word : kWords) put(at, word);
    for (const auto word : kLongWords) put(at, word);
  }
}

class Hostile : public ::testing::TestWithParam<Format> {
 protected:
  // In memory where there is such a folder: targets are synced to its disk.
  static void SetUpTestSuite() {
    if (std::filesystem::exists("/dev/shm")) ::setenv("TMPDIR", "/dev/shm", 1);
  }
};

TEST_P(Hostile, NumbersCostNoMemory) {
  const Format& format = GetParam();
  const TempDir dir;
  fuzzing::InputFile file;
  const std::size_t step = isLong() ? 1 : 17;
  std::size_t made = 0, tried = 0, refused = 0, largest = 0;
  const auto visit = [&](const std::string& bytes) {
    if (made++ % step != 0) return;
    file.put(bytes);
    ++tried;
    largestRequest = 0;
    try {
      format.use(file.path(), dir);
    } catch (const Failure& failure) {
      const std::string line = failure.what();
      EXPECT_TRUE(line.find('\n') == line.npos && line.size() > file.path().size() + 8) << line;
      ++refused;
    }
    EXPECT_LE(largestRequest, mostFor(bytes.size())) << "file " << made;
    largest = std::max(largest, largestRequest);
  };
  std::streambuf* const output = std::cout.rdbuf(nullptr);  // what the operations print
  for (const std::string& seed : format.seeds(dir)) {
    if (format.form == Format::Form::Text)
      withTexts(seed, visit);
    else
      withWords(seed, format.form == Format::Form::SealedWords, visit);
  }
  std::cout.rdbuf(output);
  EXPECT_GT(refused, 0);
  EXPECT_LT(refused, tried);
  std::cout << format.name << ": " << tried << " files, " << refused << " refused, largest request "
            << largest << " bytes\n";
}

INSTANTIATE_TEST_SUITE_P(Formats, Hostile, ::testing::ValuesIn(kFormats),
                         [](const auto& format) { return std::string(format.param.name); });

}  // namespace
}  // namespace orvmesh::test
