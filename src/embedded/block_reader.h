#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <utility>
#include <vector>

#include "embedded/block_format.h"
#include "embedded/mapped_file.h"

namespace orvmesh::embedded {

// A block of an open file: its records, in the reader's directory.
struct BlockEntry {
  BlockRecord record;
  std::span<const ColumnRecord> columns;
};

// Reads a block file in place. open() proves header and directory: every offset, length and count that the
// other operations use is then sound. The bytes of a column are proven by verify().
class BlockReader {
 public:
  bool open(const std::string& path);

  std::span<const BlockEntry> blocks() const { return blocks_; }
  // Null when there is no such block.
  const BlockEntry* find(std::int64_t id) const;
  // False with errorText() when the column's bytes are not those that were written.
  bool verify(const BlockEntry& block, std::size_t column);
  // The values of a column of T's size, aligned, valid as long as the reader.
  template <class T>
  std::span<const T> values(const BlockEntry& block, std::size_t column) const {
    const ColumnRecord& record = block.columns[column];
    return {reinterpret_cast<const T*>(file_.bytes().data() + record.offset),
            static_cast<std::size_t>(record.count)};
  }

  const std::string& errorText() const { return error_; }

 private:
  bool fail(std::string text);
  bool checkMagic();
  bool checkHeader();
  bool loadDirectory();
  bool checkBlock(const BlockEntry& block, std::uint64_t expectedOffset);
  bool checkUniqueIds();

  MappedFile file_;
  BlockFileHeader header_{};
  std::vector<ColumnRecord> columns_;
  std::vector<BlockEntry> blocks_;
  std::vector<std::pair<std::int64_t, std::size_t>> byId_;
  std::string error_;
};

}  // namespace orvmesh::embedded
