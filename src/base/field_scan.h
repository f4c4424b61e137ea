#pragma once

#include <charconv>
#include <string_view>

namespace orvmesh {

// Words and numbers off the front of a line, as scanf's %s, %d and %lf take them in the classic locale.
class FieldScan {
 public:
  explicit FieldScan(std::string_view line) : rest_(line) {}

  // The next word; empty at the line's end.
  std::string_view word();
  // Stores the next number; false, and value as it was, when the next word does not start with one. A number
  // ends where it can go no further; too large ones are infinite, too small ones the nearest there is.
  bool number(double& value);
  // The same for an integer of 32 bits; one that does not fit is none.
  bool integer(int& value);
  bool atEnd();
  std::size_t countWords();

 private:
  static bool isBlank(char c) { return c == ' ' || ('\t' <= c && c <= '\r'); }
  void skipBlanks() {
    while (!rest_.empty() && isBlank(rest_.front())) rest_.remove_prefix(1);
  }
  bool hexNumber(bool isNegative, double& value);
  bool numberOutOfRange(double& value);

  std::string_view rest_;
};

}  // namespace orvmesh
