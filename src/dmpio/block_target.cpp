#include "dmpio/block_target.h"

#include <algorithm>

namespace orvmesh::dmpio {

void BlockTarget::aim() {
  for (int i = 0; i < 2; ++i) {
    values_[i] = file_ ? file_->currentBlock().setValues(i) : nullptr;
    sizes_[i] = values_[i] == nullptr ? 0 : file_->currentBlock().getVectorSize('I', i);
  }
}

bool BlockTarget::open(const char* path) {
  // A file of its own: copies of this object may still write the one before.
  file_.emplace();
  aim();
  return file_->beginWriting(path) >= 1;
}

bool BlockTarget::writeHeader(Header header) {
  BINIO_BinaryBlock& block = file_->currentBlock();
  const int count = headerValues(Encoding::Block, header[kVersion]);
  block.destroy();
  aim();  // what comes may throw
  block.setVectorCount('I', 1);
  const bool fits = block.setVectorSize('I', 0, count) == 1;
  aim();
  for (int i = 0; i < count && fits; ++i) values_[0][i] = header[i];
  return fits;
}

void BlockTarget::fillIn(const BlockRow& row) {
  file_->currentBlock().destroy();
  aim();
  (void)file_->writeBlock(row.id);
}

bool BlockTarget::startBlock(const BlockRow& row, int count, std::int64_t most) {
  BINIO_BinaryBlock& block = file_->currentBlock();
  const auto size = std::clamp<std::int64_t>(count, 0, most);
  block.destroy();
  aim();  // what comes may throw
  pending_.clear();
  block.setVectorCount('I', row.shape == Shape::One ? 1 : 2);
  bool fits = block.setVectorSize('I', 0, size) == 1;
  if (row.shape == Shape::Pair) fits = block.setVectorSize('I', 1, size) == 1 && fits;
  aim();
  return fits;
}

bool BlockTarget::beginGroup(int group, int itemCount) {
  return writeOne(group, static_cast<std::int32_t>(2U * static_cast<unsigned>(itemCount)));
}

void BlockTarget::writeItem(int first, int second) {
  pending_.push_back(first);
  pending_.push_back(second);
}

bool BlockTarget::endGroups() {
  const bool fits =
      file_->currentBlock().setVectorSize('I', 1, static_cast<std::int64_t>(pending_.size())) == 1;
  aim();
  if (fits && !pending_.empty()) std::copy(pending_.begin(), pending_.end(), values_[1]);
  pending_.clear();
  return fits;
}

}  // namespace orvmesh::dmpio
