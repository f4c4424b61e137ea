#include "dmpio/dump_writer.h"

namespace orvmesh::dmpio {

int DumpWriter::fail(int result, const std::string& why) {
  error_ = why;
  return result;
}

int DumpWriter::begin(const char* path, int version, Header header, std::int64_t mostEntries) {
  error_.clear();
  if (path == nullptr) return fail(0, "no target is named");
  if (writing_) return fail(0, "cannot be written: another file is being written");
  written_ = 0;
  if (!isSupported(version))
    return fail(-1, "cannot be written in version " + std::to_string(version) +
                        " (legal: 1020, 1022, 1023, 2001, 2003, 2004, 2005)");
  encoding_ = encodingOf(version);
  if (!(isText() ? text_.open(path) : blocks_.open(path)))
    return fail(0, isText() ? text_.errorText() : "cannot be written");
  header[kVersion] = version;
  if (isText()) {
    text_.writeHeader(header);
  } else if (!blocks_.writeHeader(header)) {
    abandon();
    return fail(0, "cannot be written: out of memory");
  }
  writing_ = true;
  mostEntries_ = mostEntries;
  outOfMemory_ = false;
  current_ = kHeaderId;
  count_ = 0;
  return 1;
}

int DumpWriter::end() {
  if (!writing_) return 0;
  error_.clear();
  count_ = 0;
  if (outOfMemory_) {
    abandon();
    return fail(0, "cannot be completed: out of memory");
  }
  if (!isText()) blocks_.finishBlock(current_);
  fillSkipped(kAfterLastId);
  writing_ = false;
  if (isText() ? text_.finish() : blocks_.finish()) return 1;
  const bool hasReason = isText() && !text_.errorText().empty();
  return fail(0, hasReason ? text_.errorText() : "cannot be completed");
}

void DumpWriter::fillSkipped(long before) {
  for (int b = 0; b < kBlocks; ++b) {
    const auto block = static_cast<Block>(b);
    const BlockRow& row = kBlockRows[block];
    if (row.id >= before || (written_ & setOf(block)) != 0) continue;
    if (isText())
      text_.fillIn(row);
    else
      blocks_.fillIn(row);
    written_ |= setOf(block);
  }
}

bool DumpWriter::start(Block block, Header header) {
  const BlockRow& row = kBlockRows[block];
  // Once, and not behind a later block: that one has filled it in.
  if ((written_ & setOf(block)) != 0) return false;
  if (!isText()) blocks_.finishBlock(current_);
  fillSkipped(row.id);
  written_ |= setOf(block);
  current_ = row.id;
  index_ = 0;
  itemIndex_ = 0;
  itemCount_ = 0;
  if (isText()) {
    count_ = header[row.textCount];
    text_.startBlock(row);
  } else {
    count_ = header[row.blockCount];
    written_ |= row.alsoMarksInBlockForm;
    if (!blocks_.startBlock(row, count_, mostEntries_)) outOfMemory_ = true;
  }
  return true;
}

bool DumpWriter::beginGroup(int itemCount) {
  if (isText())
    text_.beginGroup(itemCount);
  else if (!blocks_.beginGroup(index_, itemCount))
    return false;
  itemCount_ = itemCount;
  itemIndex_ = 0;
  return true;
}

void DumpWriter::endGroup() {
  ++index_;
  if (isText())
    text_.endGroup();
  else if (index_ == count_)
    outOfMemory_ = !blocks_.endGroups() || outOfMemory_;
}

int DumpWriter::writeItem(Header header, bool newGroup, int itemCount, int first, int second) {
  if (!seek(kLineToFaceMap, header)) return kBlockRows[kLineToFaceMap].refusal;
  if (newGroup && !beginGroup(itemCount)) return kBlockRows[kLineToFaceMap].refusal;
  const int group = index_;
  if (itemCount_ != 0) {
    if (isText())
      text_.writeItem(first, second);
    else
      blocks_.writeItem(first, second);
  }
  if (itemCount_ == 0 || itemIndex_ == std::int64_t{itemCount_} - 1) endGroup();
  ++itemIndex_;
  return group;
}

}  // namespace orvmesh::dmpio
