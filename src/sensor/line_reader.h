#pragma once

#include <cstdint>
#include <cstring>
#include <istream>
#include <string_view>
#include <vector>

namespace orvmesh::sensor {

// Lines of a stream, read in large pieces.
class LineReader {
 public:
  explicit LineReader(std::istream& in) : in_(in), bytes_(kFirstPiece) {}

  // The next line without its line feed, or the rest of the text when none follows; false, and an empty line,
  // when nothing is left. The line lives until the next call.
  bool next(std::string_view& line) {
    const void* const feed = std::memchr(bytes_.data() + begin_, '\n', end_ - begin_);
    if (feed == nullptr) return nextAcross(line);
    take(static_cast<std::size_t>(static_cast<const char*>(feed) - bytes_.data()), line);
    return true;
  }
  // Whether the last line was there and ended by a line feed: the end of the text is not yet reached.
  bool good() const { return good_; }
  // Of the last line, from 1.
  std::int64_t lineNumber() const { return number_; }

 private:
  static constexpr std::size_t kFirstPiece = std::size_t{1} << 12;
  static constexpr std::size_t kPiece = std::size_t{1} << 18;

  void take(std::size_t feed, std::string_view& line) {
    line = {bytes_.data() + begin_, feed - begin_};
    begin_ = feed + 1;
    ++number_;
  }
  bool nextAcross(std::string_view& line);
  bool readMore();

  std::istream& in_;
  std::vector<char> bytes_;
  std::size_t begin_ = 0, end_ = 0;  // what is read and not yet handed out
  std::int64_t number_ = 0;
  bool good_ = true;
};

}  // namespace orvmesh::sensor
