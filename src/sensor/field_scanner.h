#pragma once

#include <charconv>
#include <string_view>
#include <system_error>

namespace orvmesh::sensor {

// Numbers off the front of a line, by the rules of scanf's %d and %lf in the classic locale: blanks are
// skipped, a number ends where it can go no further.
class FieldScanner {
 public:
  explicit FieldScanner(std::string_view line) : rest_(line) {}

  // Stores the next number; false, and value as it was, when none follows or it does not fit. Once false, it
  // stays so.
  template <class N>
  bool next(N& value) {
    skipBlanks();
    if (rest_.size() > 1 && rest_[0] == '+' && rest_[1] != '-') rest_.remove_prefix(1);
    const auto [stop, error] = std::from_chars(rest_.data(), rest_.data() + rest_.size(), value);
    broken_ = broken_ || error != std::errc{};
    if (!broken_) rest_.remove_prefix(static_cast<std::size_t>(stop - rest_.data()));
    return !broken_;
  }
  bool onlyBlanksLeft() {
    skipBlanks();
    return rest_.empty();
  }

 private:
  void skipBlanks() { rest_.remove_prefix(std::min(rest_.find_first_not_of(" \t\r\v\f"), rest_.size())); }

  std::string_view rest_;
  bool broken_ = false;
};

}  // namespace orvmesh::sensor
