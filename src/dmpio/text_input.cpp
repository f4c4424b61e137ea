#include "dmpio/text_input.h"

#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstring>

#include "base/descriptor.h"

namespace orvmesh::dmpio {
namespace {

bool isSpace(char c) { return c == ' ' || ('\t' <= c && c <= '\r'); }
bool isDigit(char c) { return '0' <= c && c <= '9'; }

}  // namespace

void Line::set(std::string_view text) {
  size_ = std::min(text.size(), kMost);
  std::memcpy(text_.data(), text.data(), size_);
}

const char* scanNumber(const char* at, const char* end, int& value) {
  while (at != end && isSpace(*at)) ++at;
  if (end - at > 1 && *at == '+' && isDigit(at[1])) ++at;
  const auto [stop, error] = std::from_chars(at, end, value);
  return error == std::errc{} ? stop : nullptr;
}

int scanNumbers(std::string_view text, int* values, int count) {
  const char* at = text.data();
  for (int i = 0; i < count; ++i)
    if (at = scanNumber(at, text.data() + text.size(), values[i]); at == nullptr) return i;
  return count;
}

bool TextInput::open(const char* path) {
  close();
  error_.clear();
  // Without O_NONBLOCK the open of a pipe would wait for its writer.
  descriptor_ = openToRead(path, O_NONBLOCK);
  struct stat status {};
  if (descriptor_ < 0 || ::fstat(descriptor_, &status) != 0)
    error_ = std::string("cannot be read: ") + std::strerror(errno);
  else if (!S_ISREG(status.st_mode))
    error_ = S_ISDIR(status.st_mode) ? "is a directory" : "is not a regular file";
  if (!error_.empty()) close();
  ended_ = !error_.empty();
  // One byte more than the file, so that its end is seen.
  if (!ended_)
    buffer_.resize(std::clamp(static_cast<std::size_t>(status.st_size) + 1, kLeastBuffer, kMostBuffer));
  return error_.empty();
}

void TextInput::close() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
  at_ = filled_ = 0;
  ended_ = true;
}

bool TextInput::refill(std::size_t wanted) {
  std::copy(buffer_.begin() + static_cast<std::ptrdiff_t>(at_),
            buffer_.begin() + static_cast<std::ptrdiff_t>(filled_), buffer_.begin());
  filled_ -= at_;
  at_ = 0;
  while (!ended_ && filled_ < wanted) {
    const auto got = readSome(descriptor_, buffer_.data() + filled_, buffer_.size() - filled_);
    if (got < 0) error_ = std::string("cannot be read: ") + std::strerror(errno);
    ended_ = got <= 0;
    if (got > 0) filled_ += static_cast<std::size_t>(got);
  }
  return filled_ > 0;
}

bool TextInput::readLine(Line& line) {
  if (!prepare(Line::kMost)) return false;
  const std::string_view seen(buffer_.data() + at_, std::min(filled_ - at_, Line::kMost));
  const auto feed = seen.find('\n');
  line.set(seen.substr(0, feed == std::string_view::npos ? seen.size() : feed + 1));
  at_ += line.text().size();
  return true;
}

bool TextInput::readPlainLine(int* values, int count) {
  constexpr int kMostNumbers = 4;
  if (!prepare(Line::kMost) || count > kMostNumbers) return false;
  const char* at = buffer_.data() + at_;
  const char* const end = at + std::min(filled_ - at_, Line::kMost);
  int read[kMostNumbers];
  for (int i = 0; i < count; ++i) {
    const auto [stop, error] = std::from_chars(at, end, read[i]);
    if (error != std::errc{} || stop == end || *stop != (i + 1 < count ? ' ' : '\n')) return false;
    at = stop + 1;
  }
  std::copy_n(read, count, values);
  at_ = static_cast<std::size_t>(at - buffer_.data());
  return true;
}

bool TextInput::readNumber(int& value) {
  while (prepare(kLookAhead) && isSpace(buffer_[at_])) ++at_;
  const char* const stop = scanNumber(buffer_.data() + at_, buffer_.data() + filled_, value);
  if (stop == nullptr) return false;
  at_ = static_cast<std::size_t>(stop - buffer_.data());
  return true;
}

}  // namespace orvmesh::dmpio
