#include "dmpio/block_source.h"

#include <algorithm>
#include <limits>

namespace orvmesh::dmpio {

int BlockSource::version() {
  const int result = file_.readBlock(kHeaderId);
  aim();
  return result > 0 ? file_.currentBlock().getValue(0, 0) : 0;
}

void BlockSource::aim() {
  const BINIO_BinaryBlock& block = file_.currentBlock();
  for (int i = 0; i < 2; ++i) {
    values_[i] = block.getValues(i);
    sizes_[i] = values_[i] == nullptr ? 0 : block.getVectorSize('I', i);
  }
}

bool BlockSource::open(const char* path) {
  // A file of its own: copies of this object may still read the one before.
  file_ = BINIO_BinaryFile();
  aim();
  return isOpen_ = file_.beginReading(path, 0) >= 1;
}

bool BlockSource::readHeader(Header header, int version) {
  const int count = headerValues(Encoding::Block, version);
  const int result = file_.readBlock(kHeaderId);
  aim();
  if (result < 1 || sizes_[0] < count) return false;
  for (int i = 0; i < count; ++i) header[i] = values_[0][i];
  return true;
}

std::optional<int> BlockSource::openBlock(const BlockRow& row) {
  const int result = file_.readBlock(row.id);
  aim();
  damaged_ = result < 0;
  if (result < 1) return std::nullopt;
  cursor_ = 0;
  return static_cast<int>(std::min<std::int64_t>(sizes_[0], std::numeric_limits<int>::max()));
}

std::optional<int> BlockSource::readGroupCount(int group) {
  int count = 0;
  return readOne(group, count) ? std::optional(count) : std::nullopt;
}

bool BlockSource::readItem(int& first, int& second) {
  if (sizes_[1] - cursor_ < 2) return false;
  first = values_[1][cursor_];
  second = values_[1][cursor_ + 1];
  cursor_ += 2;
  return true;
}

}  // namespace orvmesh::dmpio
