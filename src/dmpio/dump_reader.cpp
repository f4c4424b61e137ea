#include "dmpio/dump_reader.h"

namespace orvmesh::dmpio {

int DumpReader::versionOf(const char* path) {
  BlockSource blocks;
  return probe(path, blocks);
}

int DumpReader::probe(const char* path, BlockSource& blocks) {
  TextInput input;
  if (path == nullptr || !input.open(path)) return -2;
  const int first = input.peek();
  if (first == '1') return TextSource::versionOf(input);
  if (first != '0') return -1;
  return blocks.open(path) ? blocks.version() : -2;
}

int DumpReader::fail(int result, const std::string& why) {
  error_ = why;
  return result;
}

int DumpReader::begin(const char* path, Header header) {
  error_.clear();
  if (path == nullptr) return fail(0, "no file is named");
  if (reading_) return fail(0, "cannot be read: another file is being read");
  blocks_.close();
  const int version = probe(path, blocks_);
  // By the version alone, though the file may be of the other form: it is then refused.
  const bool isBlocks = encodingOf(version) == Encoding::Block;
  const int result = isBlocks ? beginBlocks(header, version) : beginText(path, header, version);
  if (!isBlocks || result < 1) blocks_.close();
  if (!isBlocks && result < 1) text_.close();
  if (result < 1) return result;
  encoding_ = isBlocks ? Encoding::Block : Encoding::Text;
  reading_ = true;
  current_ = kHeaderId;
  index_ = count_ = 0;
  return result;
}

int DumpReader::beginText(const char* path, Header header, int version) {
  if (!text_.open(path)) return fail(0, text_.errorText());
  if (version == -2) return fail(0, "is no sound block file");
  if (version == -1) return fail(-1, "is no mapping dump (one begins with the byte \"0\" or \"1\")");
  const bool isBlockFile = text_.firstByte() == '0';
  const int result = isSupported(version) ? 0 : -1;
  if (isBlockFile && version == 0) return fail(result, "has no sound header block");
  if (isBlockFile)
    return fail(result, "is a block file of version " + std::to_string(version) + " (legal: 2001 and above)");
  if (result < 0)
    return fail(result, "has version " + std::to_string(version) +
                            " (legal: 1020, 1022, 1023, 2001 and above in the block form)");
  if (text_.readHeader(header)) return 1;
  return fail(0, text_.errorText().empty() ? "has no complete header (expected: line 1 begins with 1, then "
                                             "[HEADER], then lines of numbers up to a '[')"
                                           : text_.errorText());
}

int DumpReader::beginBlocks(Header header, int version) {
  if (!blocks_.isOpen())
    return fail(0, "is a text file of version " + std::to_string(version) + " (legal: 1020, 1022, 1023)");
  if (blocks_.readHeader(header, version)) return 1;
  return fail(0, "has no sound header block of " + std::to_string(headerValues(Encoding::Block, version)) +
                     " values");
}

int DumpReader::end() {
  if (!reading_) return 0;
  reading_ = false;
  index_ = count_ = 0;
  if (encoding_ == Encoding::Text)
    text_.close();
  else
    blocks_.close();
  return 1;
}

bool DumpReader::open(const BlockRow& row, Header header) {
  const auto count = encoding_ == Encoding::Text ? text_.openBlock(row, header) : blocks_.openBlock(row);
  if (encoding_ == Encoding::Block && blocks_.isDamaged())
    error_ = "is damaged: the checksum of block " + std::to_string(row.id) + " does not match";
  if (!count) return false;
  current_ = row.id;
  count_ = *count;
  index_ = 0;
  itemIndex_ = 1;
  itemCount_ = 0;
  return true;
}

bool DumpReader::beginGroup() {
  const auto stored = encoding_ == Encoding::Text ? text_.readGroupCount() : blocks_.readGroupCount(index_);
  if (!stored) return false;
  // The block form stores twice the number of items. The text form stores the number itself and is halved all
  // the same (quirk 36): what follows the first half is taken for the next group.
  itemCount_ = *stored / 2;
  itemIndex_ = 0;
  return true;
}

int DumpReader::readItem(Header header, bool& newGroup, int& itemCount, int& first, int& second) {
  if (const int result = seek(kLineToFaceMap, header); result < 1) return result;
  newGroup = itemIndex_ >= itemCount_;
  if (newGroup && !beginGroup()) return kEndOfBlock;
  const int group = index_;
  const bool isEmpty = itemCount_ == 0;
  if (!isEmpty) {
    const bool there =
        encoding_ == Encoding::Text ? text_.readItem(first, second) : blocks_.readItem(first, second);
    if (!there) return kEndOfBlock;
  }
  if (isEmpty || itemIndex_ == itemCount_ - 1) ++index_;
  ++itemIndex_;
  itemCount = itemCount_;
  return group;
}

}  // namespace orvmesh::dmpio
