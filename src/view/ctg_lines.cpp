#include "view/ctg_lines.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cmath>
#include <cstring>

#include "base/failure.h"
#include "base/text_number.h"

namespace orvmesh::view {
namespace {

constexpr std::size_t kLongestLine = 4096;
constexpr std::size_t kLeastBuffer = 2 * kLongestLine;
constexpr std::size_t kMostBuffer = std::size_t{1} << 18;
constexpr std::size_t kMostShown = 40;

// One byte more than a small file has, so that its end is seen with the first piece.
std::size_t bufferFor(int descriptor) {
  struct stat status {};
  const bool isFile = ::fstat(descriptor, &status) == 0 && S_ISREG(status.st_mode);
  return isFile ? std::clamp(static_cast<std::size_t>(status.st_size) + 1, kLeastBuffer, kMostBuffer)
                : kMostBuffer;
}

}  // namespace

std::string shown(std::string_view text) {
  std::string out = "\"";
  for (const char c : text.substr(0, kMostShown))
    out += c == '\r' ? "\\r" : std::string(1, ' ' <= c && c <= '~' ? c : '?');
  return out + (text.size() > kMostShown ? "...\"" : "\"");
}

CtgLines::CtgLines(const std::string& path)
    : path_(path),
      file_(openToRead(path.c_str())),
      size_(bufferFor(file_.number())),
      buffer_(std::make_unique_for_overwrite<char[]>(size_)) {
  if (!file_.isOpen()) throw Failure(path, std::string("cannot be read: ") + std::strerror(errno));
}

void CtgLines::fail(const std::string& what) const {
  throw Failure(path_, "line " + std::to_string(number_) + ": " + what);
}

void CtgLines::fill() {
  std::memmove(buffer_.get(), buffer_.get() + at_, end_ - at_);
  end_ -= at_;
  at_ = 0;
  const auto got = readSome(file_.number(), buffer_.get() + end_, size_ - end_);
  if (got < 0) throw Failure(path_, std::string("cannot be read: ") + std::strerror(errno));
  end_ += static_cast<std::size_t>(got);
  ended_ = got == 0;
}

bool CtgLines::next(std::string_view& line) {
  const auto rest = [this] { return std::string_view(buffer_.get() + at_, end_ - at_); };
  std::size_t length = rest().find('\n');
  while (length == std::string_view::npos && !ended_ && rest().size() <= kLongestLine) {
    fill();
    length = rest().find('\n');
  }
  ++number_;
  if (rest().empty()) return false;
  if (length == std::string_view::npos && ended_ && rest().size() <= kLongestLine)
    fail("has no line end (the file is cut off)");
  if (length == std::string_view::npos || length > kLongestLine)
    fail("is longer than " + std::to_string(kLongestLine) + " bytes");
  line = rest().substr(0, length);
  at_ += length + 1;
  return true;
}

void CtgNumbers::expectKey(std::int64_t key) {
  const std::size_t end = rest_.find(" =");
  const auto found = parseNumber<std::int64_t>(rest_.substr(0, end));
  if (end == std::string_view::npos || !found)
    fail(shown(line_) + " (legal: " + std::to_string(key) + " = ..., or the end of the section)");
  if (*found != key) fail("has number " + std::to_string(*found) + " (legal: " + std::to_string(key) + ")");
  rest_.remove_prefix(end + 2);
}

std::string_view CtgNumbers::token() {
  if (rest_.empty()) fail("ends too early");
  if (rest_.front() != ' ') fail(shown(rest_) + " (legal: a space and a number)");
  const std::size_t end = std::min(rest_.find(' ', 1), rest_.size());
  const std::string_view found = rest_.substr(1, end - 1);
  rest_.remove_prefix(end);
  return found;
}

std::int32_t CtgNumbers::integer(const char* what, std::int64_t first, std::int64_t last) {
  const std::string_view text = token();
  const auto value = parseNumber<std::int64_t>(text);
  if (!value || *value < first || *value > last)
    fail(std::string(what) + " is " + shown(text) + " (legal: " + std::to_string(first) + " to " +
         std::to_string(last) + ")");
  return static_cast<std::int32_t>(*value);
}

double CtgNumbers::real(const char* what) {
  const std::string_view text = token();
  const auto value = parseNumber<double>(text);
  if (!value || !std::isfinite(*value))
    fail(std::string(what) + " is " + shown(text) + " (legal: a finite number)");
  return *value;
}

void CtgNumbers::expectEnd() const {
  if (!atEnd()) fail(shown(rest_) + " (legal: the end of the line)");
}

}  // namespace orvmesh::view
