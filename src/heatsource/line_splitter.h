#pragma once

#include <cstdint>
#include <cstring>
#include <istream>
#include <string_view>
#include <vector>

namespace orvmesh::heatsource {

// Lines of a stream, read in large pieces. A line longer than kMostBytes is cut there, what follows up to its
// end is passed over.
class LineSplitter {
 public:
  static constexpr std::size_t kMostBytes = std::size_t{1} << 16;

  explicit LineSplitter(std::istream& in) : in_(in), bytes_(kFirstPiece) {}

  // The next line without its line feed; false when nothing is left. The line lives until the next call.
  bool next(std::string_view& line) {
    const char* const begin = bytes_.data() + begin_;
    const void* const feed = std::memchr(begin, '\n', end_ - begin_);
    if (feed == nullptr) return nextAcross(line);
    const auto length = static_cast<std::size_t>(static_cast<const char*>(feed) - begin);
    take(begin, length, line);
    begin_ += length + 1;
    return true;
  }
  std::int64_t lineNumber() const { return number_; }  // of the last line, from 1
  std::int64_t cutLines() const { return cut_; }

 private:
  static constexpr std::size_t kFirstPiece = std::size_t{1} << 12;
  static constexpr std::size_t kPiece = std::size_t{1} << 18;

  void take(const char* begin, std::size_t length, std::string_view& line) {
    ++number_;
    if (length > kMostBytes) ++cut_;
    line = {begin, length < kMostBytes ? length : kMostBytes};
  }
  bool nextAcross(std::string_view& line);
  bool readMore();
  void skipToFeed();

  std::istream& in_;
  std::vector<char> bytes_;
  std::size_t begin_ = 0, end_ = 0;  // what is read and not yet handed out
  std::int64_t number_ = 0, cut_ = 0;
  bool skipping_ = false;  // the last line's end is still to come
};

}  // namespace orvmesh::heatsource
