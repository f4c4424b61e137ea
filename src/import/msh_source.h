#pragma once

#include <charconv>
#include <cstdint>
#include <cstring>
#include <limits>
#include <string>
#include <string_view>

#include "base/checked.h"
#include "import/mesh_file.h"

namespace orvmesh::importing {

// Where in a file the reader is, and in which section.
class Cursor {
 public:
  explicit Cursor(const MeshFile& file) : file_(&file), at_(file.begin()), end_(file.end()) {}

  const char* at() const { return at_; }
  bool atEnd() const { return at_ == end_; }
  std::uint64_t remaining() const { return static_cast<std::uint64_t>(end_ - at_); }
  std::string_view rest() const { return {at_, static_cast<std::size_t>(end_ - at_)}; }
  void advance(std::size_t bytes) { at_ += bytes; }
  void setSection(std::string_view name) { section_ = name; }
  std::string_view section() const { return section_; }

  void skipBlanks() {
    while (at_ != end_ && isBlank(*at_)) ++at_;
  }
  // The next word, not passed; empty at the end of the file.
  std::string_view peekWord();
  // The rest of the line without its end, passed together with it.
  std::string_view takeLine();

  [[noreturn]] void fail(const std::string& what) const { file_->fail(at_, what); }
  [[noreturn]] void failAtEnd(const char* what) const;
  const MeshFile& file() const { return *file_; }

 protected:
  static bool isBlank(char c) { return c == ' ' || c == '\n' || c == '\t' || c == '\r'; }
  // Refuses a count of items of which the rest of the file cannot hold that many.
  void requireBytes(std::uint64_t items, std::uint64_t bytesPerItem, std::uint64_t available,
                    const char* what) const;

  const MeshFile* file_;
  const char* at_;
  const char* end_;
  std::string_view section_;
};

// Values of a mesh file in reading order, from text or from binary data: both have the same operations.
// `what` names the value in messages.
class TextSource : public Cursor {
 public:
  using Cursor::Cursor;
  explicit TextSource(const Cursor& cursor) : Cursor(cursor) {}
  static constexpr bool kBinary = false;

  std::int32_t int32(const char* what) { return number<std::int32_t>(what); }
  std::uint64_t size(const char* what) { return number<std::uint64_t>(what); }
  double real(const char* what);
  template <std::size_t N>
  void sizes(std::uint64_t (&values)[N], const char* what) {
    for (auto& value : values) value = size(what);
  }
  void skipReals(std::uint64_t count, const char* what) {
    for (; count > 0; --count) real(what);
  }
  void skipSizes(std::uint64_t count, const char* what) {
    for (; count > 0; --count) size(what);
  }
  // Refuses an item count that the rest of the file cannot hold, given each item's values.
  void require(std::uint64_t items, std::uint64_t ints, std::uint64_t sizes, std::uint64_t reals,
               const char* what) const {
    constexpr std::uint64_t kDigitAndBlank = 2;
    // The last value of a file needs no blank behind it.
    requireBytes(items, kDigitAndBlank * (ints + sizes + reals), remaining() + 1, what);
  }

 private:
  template <class N>
  N number(const char* what) {
    skipBlanks();
    N value{};
    const auto [stop, error] = std::from_chars(at_, end_, value);
    if (error != std::errc{} || (stop != end_ && !isBlank(*stop))) refuse(what);
    at_ = stop;
    return value;
  }
  [[noreturn]] void refuse(const char* what);
};

class BinarySource : public Cursor {
 public:
  explicit BinarySource(const Cursor& cursor) : Cursor(cursor) {}
  static constexpr bool kBinary = true;

  std::int32_t int32(const char* what) { return value<std::int32_t>(what); }
  std::uint64_t size(const char* what) { return value<std::uint64_t>(what); }
  double real(const char* what) { return value<double>(what); }
  template <std::size_t N>
  void sizes(std::uint64_t (&values)[N], const char* what) {
    if (remaining() < sizeof values) [[unlikely]]
      failAtEnd(what);
    std::memcpy(values, at_, sizeof values);
    at_ += sizeof values;
  }
  void skipReals(std::uint64_t count, const char* what) { skip(count, sizeof(double), what); }
  void skipSizes(std::uint64_t count, const char* what) { skip(count, sizeof(std::uint64_t), what); }
  void require(std::uint64_t items, std::uint64_t ints, std::uint64_t sizes, std::uint64_t reals,
               const char* what) const {
    requireBytes(items, 4 * ints + 8 * sizes + 8 * reals, remaining(), what);
  }

 private:
  template <class V>
  V value(const char* what) {
    if (remaining() < sizeof(V)) [[unlikely]]
      failAtEnd(what);
    V result;
    std::memcpy(&result, at_, sizeof result);
    at_ += sizeof result;
    return result;
  }
  void skip(std::uint64_t count, std::size_t width, const char* what) {
    requireBytes(count, width, remaining(), what);
    at_ += count * width;
  }
};

// The coordinate as an OFE file holds it; refused when it is not finite there.
template <class Source>
float coordinate(Source& in) {
  const double value = in.real("a coordinate");
  // Written so that NaN fails too.
  if (!(value >= -std::numeric_limits<float>::max() && value <= std::numeric_limits<float>::max()))
      [[unlikely]]
    in.fail("a coordinate is not finite in single precision; expected a magnitude below 3.4e38");
  return static_cast<float>(value);
}

}  // namespace orvmesh::importing
