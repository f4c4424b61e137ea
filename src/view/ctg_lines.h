#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <string_view>

#include "base/descriptor.h"

namespace orvmesh::view {

// The lines of a text file one by one, whatever its size. Throws Failure when it cannot be read or a line is
// longer than any that a mesh has.
class CtgLines {
 public:
  explicit CtgLines(const std::string& path);

  // The next line without its end, valid until the next call; false at the end of the file.
  bool next(std::string_view& line);
  // Throws Failure about the current line.
  [[noreturn]] void fail(const std::string& what) const;

 private:
  void fill();

  std::string path_;
  Descriptor file_;
  std::size_t size_;  // of the buffer
  std::unique_ptr<char[]> buffer_;
  std::size_t at_ = 0;
  std::size_t end_ = 0;
  bool ended_ = false;
  std::int64_t number_ = 0;
};

// A piece of a line as an error message shows it.
std::string shown(std::string_view text);

// The numbers of one line: "k = " and the others behind it.
class CtgNumbers {
 public:
  CtgNumbers(const CtgLines& lines, std::string_view line) : lines_(lines), line_(line), rest_(line) {}

  // The number in front of " =", which must be this one.
  void expectKey(std::int64_t key);
  // The next number, after one space. What is named in the error; integers are within the range.
  std::int32_t integer(const char* what, std::int64_t first, std::int64_t last);
  double real(const char* what);
  bool atEnd() const { return rest_.empty(); }
  void expectEnd() const;
  [[noreturn]] void fail(const std::string& what) const { lines_.fail(what); }

 private:
  std::string_view token();

  const CtgLines& lines_;
  std::string_view line_;
  std::string_view rest_;
};

}  // namespace orvmesh::view
