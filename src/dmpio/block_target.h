#pragma once

#include <cstdint>
#include <optional>
#include <vector>

#include "dmpio/layout.h"
#include "platform/binio.h"

namespace orvmesh::dmpio {

// The block form as it is written: a block is collected and reaches the file when the next one starts. Copies
// share the file and have a current block each.
class BlockTarget {
 public:
  BlockTarget() = default;
  BlockTarget(const BlockTarget& other) : file_(other.file_), pending_(other.pending_) { aim(); }
  BlockTarget& operator=(const BlockTarget& other) {
    file_ = other.file_;
    pending_ = other.pending_;
    aim();
    return *this;
  }
  ~BlockTarget() = default;

  bool open(const char* path);
  // Makes the header the current block. False when the memory does not hold it.
  bool writeHeader(Header header);
  // Hands the current block over to the file.
  void finishBlock(long id) { (void)file_->writeBlock(id); }
  void fillIn(const BlockRow& row);
  // An empty block of `count` entries, of no more than `most` if that is less, becomes the current one. False
  // when the memory does not hold it.
  bool startBlock(const BlockRow& row, int count, std::int64_t most);
  // False when the current block has no such entry.
  bool writeOne(int index, int value) {
    if (index >= sizes_[0]) return false;
    values_[0][index] = value;
    return true;
  }
  bool writePair(int index, int first, int second) {
    if (index >= sizes_[0] || index >= sizes_[1]) return false;
    values_[0][index] = first;
    values_[1][index] = second;
    return true;
  }
  bool beginGroup(int group, int itemCount);
  // The number of values of a line-to-face map is known at its last item only.
  void writeItem(int first, int second);
  // False when the memory does not hold them.
  bool endGroups();
  // True when the complete file stands at its name.
  bool finish() { return file_->endWriting() == 1; }
  // Lets go of the file; takes no memory.
  void abandon() {
    file_.reset();
    aim();
  }

 private:
  // Finds the current block's vectors anew.
  void aim();

  std::optional<BINIO_BinaryFile> file_;  // none before the first file
  std::vector<int> pending_;
  std::int32_t* values_[2] = {};
  std::int64_t sizes_[2] = {0, 0};
};

}  // namespace orvmesh::dmpio
