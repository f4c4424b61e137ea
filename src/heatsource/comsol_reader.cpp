#include "heatsource/comsol_reader.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <fstream>

#include "base/descriptor.h"
#include "base/field_scan.h"
#include "heatsource/line_splitter.h"

namespace orvmesh::heatsource {
namespace {

constexpr std::size_t kMostText = 500;  // of a comment line that is told

// Its words with one blank between them.
std::string textOf(std::string_view text) {
  FieldScan words(text);
  std::string out;
  for (auto word = words.word(); !word.empty() && out.size() < kMostText; word = words.word())
    (out += out.empty() ? "" : " ") += word.substr(0, kMostText - out.size());
  return out;
}

class ComsolReader {
 public:
  ComsolReader(std::istream& in, std::uint64_t mostBytes, COrvTool_PointFileReader& table,
               ComsolReport& report, const BlockEnd& blockEnd)
      : lines_(in), mostBytes_(mostBytes), table_(table), report_(report), blockEnd_(blockEnd) {}

  void read() {
    table_.SetPointNumber(0);
    std::string_view line;
    while (next(line)) {
      FieldScan words(line);
      if (words.word() == "%") readComment(line, words);
    }
    if (!isMade_) makeTable();
    report_.lines = lines_.lineNumber();
    report_.cutLines = lines_.cutLines();
  }

 private:
  // A line ends at a NUL, as text does.
  bool next(std::string_view& line) {
    if (!lines_.next(line)) return false;
    if (const void* const nul = std::memchr(line.data(), 0, line.size()))
      line = line.substr(0, static_cast<std::size_t>(static_cast<const char*>(nul) - line.data()));
    return true;
  }

  void readComment(std::string_view line, FieldScan words) {
    const std::string_view second = words.word();
    if (line.find("Nodes:") != line.npos) {
      announce(words.word());
    } else if (hasCount_ && second == "x") {
      hasCount_ = false;
      report_.columns = textOf(line.substr(line.find('%') + 1));
      if (report_.points > 0) readBlock();
    } else {
      keepText(line);
    }
  }

  void keepText(std::string_view line) {
    const auto colon = line.find(':');
    if (colon == line.npos) return;
    const std::string_view name = line.substr(0, colon);
    if (name.find("Length unit") != name.npos) report_.lengthUnit = textOf(line.substr(colon + 1));
    if (name.find("Description") != name.npos) report_.description = textOf(line.substr(colon + 1));
  }

  void announce(std::string_view number) {
    ComsolReport fresh;
    fresh.description = report_.description;
    fresh.lengthUnit = report_.lengthUnit;
    fresh.blocks = report_.blocks;
    report_ = std::move(fresh);
    hasCount_ = true;
    isMade_ = false;
    if (!FieldScan(number).integer(report_.points) || report_.points < 0)
      refuse("\"Nodes:\" is followed by no number of points from 0 to 2147483647");
    else if (bytesOf(report_.points) > mostBytes_)
      refuse(std::to_string(report_.points) +
             " points are announced, more than can be true of a text of this size (legal: up to " +
             std::to_string(mostBytes_ / (4 * sizeof(double)) - 1) +
             "; a pipe counts as empty, a file does not)");
  }

  void refuse(const std::string& what) {
    report_.error = "line " + std::to_string(lines_.lineNumber()) + ": " + what;
    report_.points = 0;
  }

  // Not before it is needed: a number of points may be replaced by another one.
  bool makeTable() {
    isMade_ = true;
    if (table_.SetPointNumber(report_.points)) return true;
    refuse("no memory for " + std::to_string(report_.points) + " points");
    return false;
  }

  void readBlock() {
    if (!makeTable()) return;
    ++report_.blocks;
    double* const x = table_.GetX_Link();
    double* const y = table_.GetY_Link();
    double* const z = table_.GetZ_Link();
    double* const value = table_.GetValue_Link();
    std::string_view line;
    for (int i = 1; i <= report_.points && next(line); ++i) {
      double row[4] = {0, 0, 0, 0};
      readRow(line, i, row);
      x[i] = row[0] * 100;
      y[i] = row[1] * 100;
      z[i] = row[2] * 100;
      value[i] = (row[3] * (-0.0001)) * 10000000;
      if (row[3] > report_.largest) report_.largest = row[3];
      if (row[3] < report_.smallest) report_.smallest = row[3];
      report_.rows = i;
    }
    blockEnd_(report_.largest, report_.smallest);
  }

  void readRow(std::string_view line, int number, double (&row)[4]) {
    FieldScan fields(line);
    int got = 0;
    while (got < 4 && fields.number(row[got])) ++got;
    const std::int64_t at = lines_.lineNumber();
    if (got < 4) {
      report_.empty.push_back(number);
      (got == 0 && fields.atEnd() ? report_.blank : report_.incomplete).add(at);
    } else if (!fields.atEnd()) {
      report_.longer.add(at);
      report_.moreColumns = std::max(report_.moreColumns, fields.countWords());
    }
    if (!std::isfinite(row[0]) || !std::isfinite(row[1]) || !std::isfinite(row[2])) report_.nowhere.add(at);
    if (!std::isfinite(row[3])) (std::isnan(row[3]) ? report_.notANumber : report_.infinite).add(at);
  }

  static std::uint64_t bytesOf(int points) {
    return 4 * sizeof(double) * (static_cast<std::uint64_t>(points) + 1);
  }

  LineSplitter lines_;
  std::uint64_t mostBytes_;
  COrvTool_PointFileReader& table_;
  ComsolReport& report_;
  const BlockEnd& blockEnd_;
  bool hasCount_ = false;
  bool isMade_ = true;  // the table is the one last announced
};

}  // namespace

void readComsol(std::istream& in, std::uint64_t mostBytes, COrvTool_PointFileReader& table,
                ComsolReport& report, const BlockEnd& blockEnd) {
  ComsolReader(in, mostBytes, table, report, blockEnd).read();
  if (in.bad()) report.error = "cannot be read to its end";
}

bool readComsolFile(const char* path, COrvTool_PointFileReader& table, ComsolReport& report,
                    const BlockEnd& blockEnd) {
  std::error_code noSize;
  if (path == nullptr || std::filesystem::is_directory(path, noSize)) return false;
  std::ifstream in;
  const auto open = [&] {
    in.open(path, std::ios::in | std::ios::binary);
    return in.is_open() ? 0 : -1;
  };
  if (uninterrupted(open) != 0) return false;
  const auto size = std::filesystem::file_size(path, noSize);
  readComsol(in, mostTableBytes(noSize ? 0 : size), table, report, blockEnd);
  return true;
}

}  // namespace orvmesh::heatsource
