#include "view/point_table.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>

#include "base/checked.h"
#include "base/failure.h"
#include "base/text_number.h"
#include "view/text_io.h"

namespace orvmesh::view {
namespace {

constexpr std::string_view kBlanks = " \t\r\v\f";
constexpr std::string_view kSeparators = " \t\r\v\f,";

// Cuts a line into values.
class Row {
 public:
  Row(const std::string& path, std::size_t line, std::string_view text)
      : path_(path), line_(line), rest_(text) {
    skipBlanks();
  }

  bool isEmpty() const { return rest_.empty() || rest_.front() == '#' || rest_.front() == '%'; }

  std::array<double, 4> values() {
    std::array<double, 4> values{};
    for (std::size_t i = 0; i < values.size(); ++i) {
      if (rest_.empty()) fail("has " + std::to_string(i) + " values");
      values[i] = next();
    }
    if (!rest_.empty()) fail("has more than 4 values");
    return values;
  }

 private:
  [[noreturn]] void fail(const std::string& what) const {
    throw Failure(path_, "line " + std::to_string(line_) + " " + what + " (legal: x y z value)");
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
};

void append(PointTable& table, const std::array<double, 4>& values) {
  table.x.push_back(values[0]);
  table.y.push_back(values[1]);
  table.z.push_back(values[2]);
  table.value.push_back(values[3]);
}

}  // namespace

PointTable readPointTable(const std::string& path) {
  const std::string bytes = readWholeFile(path);
  std::string_view text = bytes;
  constexpr std::string_view kByteOrderMark = "\xEF\xBB\xBF";
  if (text.starts_with(kByteOrderMark)) text.remove_prefix(kByteOrderMark.size());
  PointTable table;
  for (std::size_t line = 1; !text.empty(); ++line) {
    const std::string_view content = text.substr(0, text.find('\n'));
    text.remove_prefix(std::min(content.size() + 1, text.size()));
    Row row(path, line, content);
    if (row.isEmpty()) continue;
    append(table, row.values());
    if (table.value.size() > kMaxEntities)
      throw Failure(path, "has more than " + std::to_string(kMaxEntities - 1) + " points");
  }
  return table;
}

}  // namespace orvmesh::view
