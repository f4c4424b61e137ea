#include "import/msh_source.h"

#include <algorithm>

namespace orvmesh::importing {

std::string_view Cursor::peekWord() {
  skipBlanks();
  const char* const stop = std::find_if(at_, end_, isBlank);
  return {at_, static_cast<std::size_t>(stop - at_)};
}

std::string_view Cursor::takeLine() {
  const char* const stop = std::find(at_, end_, '\n');
  std::string_view line{at_, static_cast<std::size_t>(stop - at_)};
  at_ = stop == end_ ? end_ : stop + 1;
  while (!line.empty() && isBlank(line.back())) line.remove_suffix(1);
  return line;
}

void Cursor::failAtEnd(const char* what) const {
  file_->fail(end_, "the file ends inside " + std::string(section_) + "; expected " + what);
}

void Cursor::requireBytes(std::uint64_t items, std::uint64_t bytesPerItem, std::uint64_t available,
                          const char* what) const {
  const auto bytes = checkedProduct(items, bytesPerItem);
  if (!bytes || *bytes > available)
    fail(std::string(section_) + " announces " + std::to_string(items) + " " + what +
         "; the rest of the file cannot hold them");
}

// Numbers too small for a double count as 0, as everywhere else.
double TextSource::real(const char* what) {
  skipBlanks();
  if (remaining() > 1 && *at_ == '+' && at_[1] != '-') ++at_;
  double value = 0;
  const auto [stop, error] = std::from_chars(at_, end_, value);
  if (error == std::errc::result_out_of_range) {
    const std::string_view word{at_, static_cast<std::size_t>(stop - at_)};
    value = word.find("e-") != word.npos || word.find("E-") != word.npos
                ? 0.0
                : std::numeric_limits<double>::infinity();
  } else if (error != std::errc{}) {
    refuse(what);
  }
  if (stop != end_ && !isBlank(*stop)) refuse(what);
  at_ = stop;
  return value;
}

void TextSource::refuse(const char* what) {
  constexpr std::size_t kShown = 40;
  const auto word = peekWord();
  if (word.empty()) failAtEnd(what);
  fail(std::string(section_) + ": expected " + what + ", found '" + std::string(word.substr(0, kShown)) +
       "'");
}

}  // namespace orvmesh::importing
