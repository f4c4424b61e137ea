#pragma once

#include <bitset>
#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/block_writer.h"
#include "embedded/column_buffer.h"
#include "embedded/ofe_layout.h"
#include "platform/ofe_header.h"

namespace orvmesh::embedded {

// Writes an OFE file entry by entry. Entering another block finishes the one before; a finished block cannot
// be entered again. A refused entry spoils the file: end() then discards it.
class OfeWriter {
 public:
  OfeWriter();

  bool begin(const std::string& path, int version);
  // Fills in the blocks without entries and the header. True when the complete file stands at its name.
  bool end(const OFEHeader& header);
  void discard();
  bool isWriting() const { return writing_; }
  // The first failure since begin().
  const std::string& errorText() const { return error_.empty() ? file_.errorText() : error_; }

  // Makes the block ready for one more entry; false when it cannot take one.
  bool admit(Block block) {
    if (current_ != block && !start(block)) return false;
    return count_ < std::numeric_limits<std::int32_t>::max() || refuse("is one too many (legal: 2147483647)");
  }
  ColumnBuffer& column(std::size_t index) { return columns_[index]; }
  // The admitted entry is complete; gives its index.
  int accept() { return count_++; }
  // Spoils the file; the reason is about the entry that was admitted last.
  bool refuse(const std::string& reason);

  // An entry of an element block, whole.
  int addElement(Block block, int nodeCount, const std::int32_t nodes[], std::int32_t a, std::int32_t b,
                 float value);
  // One piece of the open block's pool.
  void addList(const std::int32_t list[], std::size_t count);
  void addText(std::string_view text);

 private:
  bool start(Block block);
  void finishBlock();
  void noteNodeCount(int nodeCount);
  void writeOffsetsOfMixed();
  void writeMissingBlocks();
  void writeHeader(const OFEHeader& header);
  void endPiece(std::size_t size);

  BlockWriter file_;
  ChunkPool chunks_;
  std::vector<ColumnBuffer> columns_;
  ColumnBuffer nodeCounts_;  // a byte per element, once a block's elements differ
  std::optional<Block> current_;
  std::bitset<kBlockCount> begun_;
  std::int32_t count_ = 0;
  int commonNodeCount_ = 0;  // kMixed once elements differ
  std::int64_t poolSize_ = 0;
  int version_ = 0;
  bool writing_ = false;
  std::string error_;
};

}  // namespace orvmesh::embedded
