#include "dmpio/block_target.h"

#include <algorithm>

namespace orvmesh::dmpio {

bool BlockTarget::open(const char* path) {
  // A file of its own: copies of this object may still write the one before.
  file_ = BINIO_BinaryFile();
  return file_.beginWriting(path) >= 1;
}

void BlockTarget::writeHeader(Header header) {
  BINIO_BinaryBlock& block = file_.currentBlock();
  const int count = headerValues(Encoding::Block, header[kVersion]);
  block.destroy();
  block.setVectorCount('I', 1);
  block.setVectorSize('I', 0, count);
  for (int i = 0; i < count; ++i) block.setValue(0, i, header[i]);
}

void BlockTarget::fillIn(const BlockRow& row) {
  file_.currentBlock().destroy();
  (void)file_.writeBlock(row.id);
}

void BlockTarget::startBlock(const BlockRow& row, int count, std::int64_t most) {
  BINIO_BinaryBlock& block = file_.currentBlock();
  const auto size = std::clamp<std::int64_t>(count, 0, most);
  block.destroy();
  pending_.clear();
  block.setVectorCount('I', row.shape == Shape::One ? 1 : 2);
  block.setVectorSize('I', 0, size);
  if (row.shape == Shape::Pair) block.setVectorSize('I', 1, size);
}

bool BlockTarget::beginGroup(int group, int itemCount) {
  const auto stored = static_cast<std::int32_t>(2U * static_cast<unsigned>(itemCount));
  return file_.currentBlock().setValue(0, group, stored) == 1;
}

void BlockTarget::writeItem(int first, int second) {
  pending_.push_back(first);
  pending_.push_back(second);
}

void BlockTarget::endGroups() {
  BINIO_BinaryBlock& block = file_.currentBlock();
  block.setVectorSize('I', 1, static_cast<std::int64_t>(pending_.size()));
  for (std::size_t i = 0; i < pending_.size(); ++i)
    block.setValue(1, static_cast<std::int64_t>(i), pending_[i]);
  pending_.clear();
}

}  // namespace orvmesh::dmpio
