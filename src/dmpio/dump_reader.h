#pragma once

#include <cstdint>
#include <string>

#include "dmpio/block_source.h"
#include "dmpio/layout.h"
#include "dmpio/text_source.h"

namespace orvmesh::dmpio {

// The read side of a manipulator: one file, one current block. Results are those of the exported operations.
class DumpReader {
 public:
  static int versionOf(const char* path);

  int begin(const char* path, Header header);
  int end();

  // Here, so that the exported operations are one call per entry.
  int readOne(Block block, Header header, int& value) {
    if (const int result = seek(block, header); result < 1) return result;
    const bool there = encoding_ == Encoding::Text ? text_.readOne(value) : blocks_.readOne(index_, value);
    return there ? index_++ : kEndOfBlock;
  }
  int readPair(Block block, Header header, int& first, int& second) {
    if (const int result = seek(block, header); result < 1) return result;
    const bool there =
        encoding_ == Encoding::Text ? text_.readPair(first, second) : blocks_.readPair(index_, first, second);
    return there ? index_++ : kEndOfBlock;
  }
  int readItem(Header header, bool& newGroup, int& itemCount, int& first, int& second);

  const std::string& errorText() const {
    const bool readsText = reading_ && encoding_ == Encoding::Text;
    return error_.empty() && readsText ? text_.errorText() : error_;
  }

 private:
  // The version of the file; a block file stays open.
  static int probe(const char* path, BlockSource& blocks);
  int fail(int result, const std::string& why);
  int beginText(const char* path, Header header, int version);
  int beginBlocks(Header header, int version);
  // 1 when the block has an entry left to read, else the result of the operation.
  int seek(Block block, Header header) {
    if (reading_ && current_ != kBlockRows[block].id && !open(kBlockRows[block], header)) return kNoSuchBlock;
    if (index_ < count_) return 1;
    return reading_ && count_ < 1 ? kNoSuchBlock : kEndOfBlock;
  }
  bool open(const BlockRow& row, Header header);
  bool beginGroup();

  static constexpr int kEndOfBlock = -1;
  static constexpr int kNoSuchBlock = -2;

  bool reading_ = false;
  Encoding encoding_ = Encoding::Text;
  TextSource text_;
  BlockSource blocks_;
  long current_ = kHeaderId;
  int index_ = 0;
  int count_ = 0;
  std::int64_t itemIndex_ = 0;
  int itemCount_ = 0;
  std::string error_;
};

}  // namespace orvmesh::dmpio
