#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

#include "base/atomic_file.h"
#include "embedded/block_format.h"
#include "embedded/checksum.h"

namespace orvmesh::embedded {

// Writes a block file front to back: blocks one after another, of each block its columns one after another,
// of each column its bytes in pieces of any size. Failures are kept until commit(), which then returns false.
class BlockWriter {
 public:
  bool open(const std::string& path);
  bool isOpen() const { return file_.isOpen(); }

  void beginBlock(std::int64_t id);
  void beginColumn(char type);  // one of 'I', 'L', 'F', 'D', 'C'
  void append(const void* bytes, std::size_t size);
  void endBlock();

  // Writes the directory and the header. True when the complete file stands at its name.
  bool commit();
  void discard() { file_.discard(); }
  const std::string& errorText() const { return file_.errorText(); }

 private:
  void endColumn();
  void put(const void* bytes, std::size_t size);

  struct Block {
    BlockRecord record;
    std::vector<ColumnRecord> columns;
  };
  AtomicFile file_;
  std::vector<Block> blocks_;
  RunningChecksum checksum_;
  std::uint64_t columnSize_ = 0;
  std::uint64_t columnUnit_ = 1;
  bool inColumn_ = false;
};

}  // namespace orvmesh::embedded
