#include "sensor/line_reader.h"

namespace orvmesh::sensor {

// Moves what is left to the front and reads behind it. Texts larger than the first piece get room for large
// ones, and twice the room when one line fills it all.
bool LineReader::readMore() {
  if (end_ == bytes_.size() && end_ < kPiece) bytes_.resize(kPiece);
  std::memmove(bytes_.data(), bytes_.data() + begin_, end_ - begin_);
  end_ -= begin_;
  begin_ = 0;
  if (end_ == bytes_.size()) bytes_.resize(2 * bytes_.size());
  in_.read(bytes_.data() + end_, static_cast<std::streamsize>(bytes_.size() - end_));
  const auto got = static_cast<std::size_t>(in_.gcount());
  end_ += got;
  return got > 0;
}

bool LineReader::nextAcross(std::string_view& line) {
  std::size_t looked = end_ - begin_;
  while (readMore()) {
    const void* const feed = std::memchr(bytes_.data() + looked, '\n', end_ - looked);
    if (feed != nullptr) {
      take(static_cast<std::size_t>(static_cast<const char*>(feed) - bytes_.data()), line);
      return true;
    }
    looked = end_;
  }
  good_ = false;
  line = {bytes_.data() + begin_, end_ - begin_};
  begin_ = end_;
  number_ += line.empty() ? 0 : 1;
  return !line.empty();
}

}  // namespace orvmesh::sensor
