#pragma once

#include <array>
#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace orvmesh::dmpio {

// A line with its line feed, or the part of a longer one that fits.
class Line {
 public:
  static constexpr std::size_t kMost = 255;

  std::string_view text() const { return {text_.data(), size_}; }
  bool contains(std::string_view what) const { return text().find(what) != std::string_view::npos; }
  bool isComplete() const { return size_ > 0 && text_[size_ - 1] == '\n'; }
  void set(std::string_view text);
  void clear() { size_ = 0; }

 private:
  std::array<char, kMost> text_{};
  std::size_t size_ = 0;
};

// Reads a number that white space may precede, as the conversion %d does; null when there is none or it has
// more than 32 bits, else where it ends.
const char* scanNumber(const char* at, const char* end, int& value);
// Sets as many of the values as there are numbers; returns how many.
int scanNumbers(std::string_view text, int* values, int count);

// A text file read front to back through one buffer.
class TextInput {
 public:
  TextInput() = default;
  ~TextInput() { close(); }
  TextInput(const TextInput&) = delete;
  TextInput& operator=(const TextInput&) = delete;

  // False with errorText() for anything but a readable regular file.
  bool open(const char* path);
  void close();
  const std::string& errorText() const { return error_; }

  // The first byte not yet read, or -1 at the end.
  int peek() { return prepare(1) ? static_cast<unsigned char>(buffer_[at_]) : -1; }
  void skipByte() { ++at_; }
  // False at the end; the line is then as it was.
  bool readLine(Line& line);
  // Reads a line that is just these numbers with a blank between two; anything else is not touched and gives
  // false.
  bool readPlainLine(int* values, int count);
  // The next number wherever it stands; false, with only white space read, when something else comes first.
  bool readNumber(int& value);

 private:
  // Bytes of a number, signs and zeros before it included, that are surely seen in one piece.
  static constexpr std::size_t kLookAhead = 256;
  static constexpr std::size_t kLeastBuffer = 2 * kLookAhead;
  static constexpr std::size_t kMostBuffer = std::size_t{1} << 18;

  // True when at least one byte is left; `wanted` of them are then in the buffer unless the file has fewer.
  bool prepare(std::size_t wanted) {
    return filled_ - at_ >= wanted || (ended_ ? at_ < filled_ : refill(wanted));
  }
  bool refill(std::size_t wanted);

  std::vector<char> buffer_;
  std::string error_;
  std::size_t at_ = 0;
  std::size_t filled_ = 0;
  int descriptor_ = -1;
  bool ended_ = true;
};

}  // namespace orvmesh::dmpio
