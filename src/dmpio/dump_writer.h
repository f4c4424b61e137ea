#pragma once

#include <cstdint>
#include <string>

#include "dmpio/block_target.h"
#include "dmpio/layout.h"
#include "dmpio/text_target.h"

namespace orvmesh::dmpio {

// The write side of a manipulator: one file, one current block. Results are those of the exported operations.
class DumpWriter {
 public:
  // Blocks of the block form get vectors for no more than mostEntries entries, whatever the header says.
  int begin(const char* path, int version, Header header, std::int64_t mostEntries);
  int end();

  // Here, so that the exported operations are one call per entry.
  int writeOne(Block block, Header header, int value) {
    if (!seek(block, header)) return kBlockRows[block].refusal;
    if (isText())
      text_.writeOne(value);
    else if (!blocks_.writeOne(index_, value))
      return kBlockRows[block].refusal;
    return index_++;
  }
  int writePair(Block block, Header header, int first, int second) {
    if (!seek(block, header)) return kBlockRows[block].refusal;
    if (isText())
      text_.writePair(first, second);
    else if (!blocks_.writePair(index_, first, second))
      return kBlockRows[block].refusal;
    return index_++;
  }
  int writeItem(Header header, bool newGroup, int itemCount, int first, int second);

  // The file will not be completed.
  void giveUp() { outOfMemory_ = true; }

  bool isWriting() const { return writing_; }
  // Lets go of the file, which is then not completed; takes no memory.
  void abandon() {
    writing_ = false;
    text_ = {};
    blocks_.abandon();
  }

  const std::string& errorText() const { return error_; }

 private:
  int fail(int result, const std::string& why);
  bool isText() const { return encoding_ == Encoding::Text; }
  // True when the block can take one more entry.
  bool seek(Block block, Header header) {
    if (!writing_ || (isText() && !text_.isOpen())) return false;
    if (current_ != kBlockRows[block].id && !start(block, header)) return false;
    return index_ < count_;
  }
  bool start(Block block, Header header);
  void fillSkipped(long before);
  bool beginGroup(int itemCount);
  void endGroup();

  bool writing_ = false;
  Encoding encoding_ = Encoding::Text;
  TextTarget text_;
  BlockTarget blocks_;
  BlockSet written_ = 0;
  long current_ = kHeaderId;
  int index_ = 0;
  int count_ = 0;
  std::int64_t itemIndex_ = 0;
  int itemCount_ = 0;
  std::int64_t mostEntries_ = 0;
  bool outOfMemory_ = false;  // a block did not fit: the file is given up at the end
  std::string error_;
};

}  // namespace orvmesh::dmpio
