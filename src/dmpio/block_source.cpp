#include "dmpio/block_source.h"

#include <algorithm>
#include <limits>

namespace orvmesh::dmpio {

std::optional<int> BlockSource::versionOf(const char* path) {
  BINIO_BinaryFile file;
  if (file.beginReading(path, 0) < 1) return std::nullopt;
  const int version = file.readBlock(kHeaderId) > 0 ? file.currentBlock().getValue(0, 0) : 0;
  file.endReading();
  return version;
}

bool BlockSource::open(const char* path) {
  // A file of its own: copies of this object may still read the one before.
  file_ = BINIO_BinaryFile();
  return file_.beginReading(path, 0) >= 1;
}

bool BlockSource::readHeader(Header header, int version) {
  const int count = headerValues(Encoding::Block, version);
  const BINIO_BinaryBlock& block = file_.currentBlock();
  if (file_.readBlock(kHeaderId) < 1 || block.getVectorSize('I', 0) < count) return false;
  for (int i = 0; i < count; ++i) header[i] = block.getValue(0, i);
  return true;
}

std::optional<int> BlockSource::openBlock(const BlockRow& row) {
  const int result = file_.readBlock(row.id);
  damaged_ = result < 0;
  if (result < 1) return std::nullopt;
  for (int i = 0; i < 2; ++i)
    sizes_[i] = std::max<std::int64_t>(0, file_.currentBlock().getVectorSize('I', i));
  cursor_ = 0;
  return static_cast<int>(std::min<std::int64_t>(sizes_[0], std::numeric_limits<int>::max()));
}

std::optional<int> BlockSource::readGroupCount(int group) {
  int count = 0;
  return readOne(group, count) ? std::optional(count) : std::nullopt;
}

bool BlockSource::readItem(int& first, int& second) {
  if (sizes_[1] - cursor_ < 2) return false;
  first = file_.currentBlock().getValue(1, cursor_);
  second = file_.currentBlock().getValue(1, cursor_ + 1);
  cursor_ += 2;
  return true;
}

}  // namespace orvmesh::dmpio
