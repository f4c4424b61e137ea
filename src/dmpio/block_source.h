#pragma once

#include <cstdint>
#include <optional>

#include "dmpio/layout.h"
#include "platform/binio.h"

namespace orvmesh::dmpio {

// The block form as it is read. Copies share the file and have a current block each.
class BlockSource {
 public:
  BlockSource() = default;
  BlockSource(const BlockSource& other)
      : file_(other.file_), isOpen_(other.isOpen_), damaged_(other.damaged_), cursor_(other.cursor_) {
    aim();
  }
  BlockSource& operator=(const BlockSource& other) {
    file_ = other.file_;
    isOpen_ = other.isOpen_;
    damaged_ = other.damaged_;
    cursor_ = other.cursor_;
    aim();
    return *this;
  }
  ~BlockSource() = default;

  bool open(const char* path);
  bool isOpen() const { return isOpen_; }
  void close() {
    file_.endReading();
    isOpen_ = false;
  }
  // The version in the header block, 0 when it cannot be read.
  int version();
  // Sets the values that the version has; false when the header block is not there or too short.
  bool readHeader(Header header, int version);
  // The number of stored entries; nothing when the block is missing or damaged.
  std::optional<int> openBlock(const BlockRow& row);
  // Whether the last block asked for is there and not what was written.
  bool isDamaged() const { return damaged_; }
  bool readOne(int index, int& value) {
    if (index >= sizes_[0]) return false;
    value = values_[0][index];
    return true;
  }
  bool readPair(int index, int& first, int& second) {
    if (index >= sizes_[0] || index >= sizes_[1]) return false;
    first = values_[0][index];
    second = values_[1][index];
    return true;
  }
  // Twice the number of items.
  std::optional<int> readGroupCount(int group);
  bool readItem(int& first, int& second);

 private:
  // Finds the current block's vectors anew.
  void aim();

  BINIO_BinaryFile file_;
  bool isOpen_ = false;
  const std::int32_t* values_[2] = {};
  std::int64_t sizes_[2] = {0, 0};  // of the current block's two vectors; 0 for one that is not there
  bool damaged_ = false;
  std::int64_t cursor_ = 0;  // in vector 1 of the line-to-face map
};

}  // namespace orvmesh::dmpio
