#include "view/point_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "base/checked.h"
#include "base/failure.h"
#include "base/text_number.h"
#include "view/ofv_read.h"
#include "view/text_io.h"

namespace orvmesh::view {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kSeparators = " \t\r\v\f,";

// Cuts a line into values.
class Row {
 public:
  // legal: what a row should hold, for the complaint.
  Row(const std::string& path, std::size_t line, std::string_view text, const char* legal)
      : path_(path), line_(line), rest_(text), legal_(legal) {
    skipBlanks();
  }

  bool isEmpty() const { return rest_.empty() || rest_.front() == '#' || rest_.front() == '%'; }

  template <std::size_t N>
  std::array<double, N> values() {
    std::array<double, N> values{};
    for (std::size_t i = 0; i < N; ++i) {
      if (rest_.empty()) fail("has " + std::to_string(i) + " values");
      values[i] = next();
    }
    if (!rest_.empty()) fail("has more than " + std::to_string(N) + (N == 1 ? " value" : " values"));
    return values;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw Failure(path_, "line " + std::to_string(line_) + " " + what + " (legal: " + legal_ + ")");
  }
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(kBlanks), rest_.size())); }

  double next() {
    std::string_view word = rest_.substr(0, rest_.find_first_of(kSeparators));
    rest_.remove_prefix(word.size());
    skipBlanks();
    if (!rest_.empty() && rest_.front() == ',') {
      rest_.remove_prefix(1);
      skipBlanks();
      if (rest_.empty()) fail("ends with a comma");
    }
    if (word.empty()) fail("has nothing before a comma");
    return numberOf(word);
  }

  double numberOf(std::string_view word) const {
    const bool hasPlus = word.size() > 1 && word[0] == '+' && word[1] != '-';
    const auto number = parseNumber<double>(hasPlus ? word.substr(1) : word);
    if (!number || !std::isfinite(*number))
      fail("has '" + std::string(word.substr(0, 40)) + "', which is no finite number");
    return *number;
  }

  const std::string& path_;
  std::size_t line_;
  std::string_view rest_;
  const char* legal_;
};

void append(PointTable& table, const std::array<double, 4>& values) {
  table.x.push_back(values[0]);
  table.y.push_back(values[1]);
  table.z.push_back(values[2]);
  table.value.push_back(values[3]);
}

// Calls use for every line that holds values.
void forEachRow(const std::string& path, const char* legal, const auto& use) {
  const std::string bytes = readWholeFile(path);
  std::string_view text = bytes;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  for (std::size_t line = 1; !text.empty(); ++line) {
    const std::string_view content = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(content.size() + 1, text.size()));
    Row row(path, line, content, legal);
    if (!row.isEmpty()) use(row);
  }
}

}  // namespace

PointTable readPointTable(const std::string& path) {
  PointTable table;
  forEachRow(path, "x y z value", [&](Row& row) {
    append(table, row.values<4>());
    if (table.value.size() > kMaxEntities)
      throw Failure(path, "has more than " + std::to_string(kMaxEntities - 1) + " points");
  });
  return table;
}

PointTable readPointsOfOfv(const std::string& path, const std::string& valuesPath) {
  const OfvFile file(path);
  const auto xyz = file.mesh().xyz;
  const std::size_t points = xyz.size() / 3;
  PointTable table;
  std::size_t values = 0;
  forEachRow(valuesPath, "one value", [&](Row& row) {
    const double value = row.values<1>()[0];
    if (values < points) append(table, {xyz[3 * values], xyz[3 * values + 1], xyz[3 * values + 2], value});
    ++values;
  });
  if (values != points)
    throw Failure(valuesPath, "has " + std::to_string(values) + " values (legal: " + std::to_string(points) +
                                  ", one for each point of " + path + ")");
  return table;
}

}  // namespace orvmesh::view
