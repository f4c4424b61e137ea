#include "heatsource/line_splitter.h"

namespace orvmesh::heatsource {

// Moves what is left to the front and fills the rest of the room, which is large for texts that need it.
bool LineSplitter::readMore() {
  if (end_ == bytes_.size() && end_ < kPiece) bytes_.resize(kPiece);
  std::memmove(bytes_.data(), bytes_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  in_.read(bytes_.data() + end_, static_cast<std::streamsize>(bytes_.size() - end_));
  const auto got = static_cast<std::size_t>(in_.gcount());
  end_ += got;
  return got > 0;
}

void LineSplitter::skipToFeed() {
  skipping_ = false;
  do {
    const void* const feed = std::memchr(bytes_.data() + begin_, '\n', end_ - begin_);
    if (feed != nullptr) {
      begin_ = static_cast<std::size_t>(static_cast<const char*>(feed) - bytes_.data()) + 1;
      return;
    }
    begin_ = end_;
  } while (readMore());
}

bool LineSplitter::nextAcross(std::string_view& line) {
  if (skipping_) {
    skipToFeed();
    return next(line);
  }
  while (end_ - begin_ <= kMostBytes) {
    const std::size_t looked = end_ - begin_;
    if (!readMore()) break;
    if (std::memchr(bytes_.data() + looked, '\n', end_ - looked) != nullptr) return next(line);
  }
  if (begin_ == end_) return false;
  skipping_ = end_ - begin_ > kMostBytes;
  take(bytes_.data() + begin_, end_ - begin_, line);
  begin_ = end_;
  return true;
}

}  // namespace orvmesh::heatsource
