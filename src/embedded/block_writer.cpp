#include "embedded/block_writer.h"

#include <algorithm>

namespace orvmesh::embedded {

bool BlockWriter::open(const std::string& path) {
  blocks_.clear();
  inColumn_ = false;
  const BlockFileHeader room{};
  return file_.open(path) && file_.append(&room, sizeof room);
}

void BlockWriter::beginBlock(std::int64_t id) { blocks_.push_back({{id, file_.size(), 0, 0, 0}, {}}); }

void BlockWriter::beginColumn(char type) {
  endColumn();
  Block& block = blocks_.back();
  checksum_.restart(columnSeed(block.record.id, block.columns.size()));
  block.columns.push_back({static_cast<std::uint32_t>(type), 0, file_.size(), 0, 0});
  columnSize_ = 0;
  columnUnit_ = std::max<std::uint64_t>(1, valueSize(type));
  inColumn_ = true;
}

void BlockWriter::append(const void* bytes, std::size_t size) {
  put(bytes, size);
  columnSize_ += size;
}

// In pieces that are still in the cache when they are written.
void BlockWriter::put(const void* bytes, std::size_t size) {
  constexpr std::size_t kPiece = std::size_t{1} << 18;
  const char* next = static_cast<const char*>(bytes);
  while (size > 0) {
    const std::size_t piece = std::min(size, kPiece);
    checksum_.add(next, piece);
    (void)file_.append(next, piece);
    next += piece;
    size -= piece;
  }
}

void BlockWriter::endColumn() {
  if (!inColumn_) return;
  static constexpr char kZeros[kColumnAlignment] = {};
  put(kZeros, paddingAfter(columnSize_));
  ColumnRecord& column = blocks_.back().columns.back();
  column.count = columnSize_ / columnUnit_;
  column.hash = checksum_.value();
  inColumn_ = false;
}

void BlockWriter::endBlock() {
  endColumn();
  Block& block = blocks_.back();
  block.record.length = file_.size() - block.record.offset;
  block.record.columnCount = static_cast<std::uint32_t>(block.columns.size());
}

bool BlockWriter::commit() {
  if (!isOpen()) return false;
  std::string directory;
  for (const Block& block : blocks_) {
    directory.append(reinterpret_cast<const char*>(&block.record), sizeof block.record);
    directory.append(reinterpret_cast<const char*>(block.columns.data()),
                     block.columns.size() * sizeof(ColumnRecord));
  }
  BlockFileHeader header{};
  header.magic = kBlockMagic;
  header.containerVersion = kContainerVersion;
  header.blockCount = static_cast<std::uint32_t>(blocks_.size());
  header.directoryOffset = file_.size();
  header.directoryLength = directory.size();
  header.fileSize = header.directoryOffset + header.directoryLength;
  header.directoryHash = checksumOf(directory.data(), directory.size(), 0);
  header.headerHash = checksumOf(&header, offsetof(BlockFileHeader, headerHash), 0);
  return file_.append(directory.data(), directory.size()) && file_.overwrite(0, &header, sizeof header) &&
         file_.commit();
}

}  // namespace orvmesh::embedded
