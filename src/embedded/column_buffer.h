#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <vector>

#include "embedded/block_writer.h"

namespace orvmesh::embedded {

using Chunk = std::unique_ptr<char[]>;

// Chunks that columns hand back, so that a file's blocks share their memory.
class ChunkPool {
 public:
  // Small enough that a chunk is still in the cache when it is hashed and written.
  static constexpr std::size_t kChunkSize = std::size_t{1} << 18;
  Chunk take();
  void giveBack(Chunk chunk) { free_.push_back(std::move(chunk)); }

 private:
  std::vector<Chunk> free_;
};

// A column that is being written entry by entry. The first column of a block goes to the file while it grows;
// the others wait in chunks until the block ends.
class ColumnBuffer {
 public:
  explicit ColumnBuffer(ChunkPool& pool) : pool_(pool) {}

  // Everything pushed until finish() is spilled into the writer's open column.
  void spillInto(BlockWriter& writer) { writer_ = &writer; }

  // Room for `size` bytes in one piece, at most ChunkPool::kChunkSize.
  char* room(std::size_t size) {
    if (static_cast<std::size_t>(end_ - cursor_) < size) [[unlikely]]
      nextChunk();
    char* const place = cursor_;
    cursor_ += size;
    return place;
  }
  template <class T>
  void push(T value) {
    std::memcpy(room(sizeof value), &value, sizeof value);
  }
  template <class T>
  void push(const T* values, std::size_t count) {
    std::memcpy(room(count * sizeof(T)), values, count * sizeof(T));
  }
  // Any number of bytes.
  void pushBytes(const char* bytes, std::size_t size);

  // Hands the bytes to `consume(const char*, std::size_t)` piece by piece and empties the column.
  template <class Consume>
  void drain(Consume consume) {
    sealChunk();
    for (auto& [chunk, used, word] : full_) {
      if (!chunk) chunk = repeated(word);
      consume(static_cast<const char*>(chunk.get()), used);
      pool_.giveBack(std::move(chunk));
    }
    full_.clear();
    writer_ = nullptr;
  }
  void clear() {
    drain([](const char*, std::size_t) {});
  }
  // The spilled rest goes into the writer's open column; a waiting column becomes it.
  void finish(BlockWriter& writer);

 private:
  void nextChunk();
  void sealChunk();
  Chunk repeated(std::uint32_t word);

  // A chunk that holds nothing but one 32-bit value (materials, groups and values mostly do) keeps only that.
  struct Full {
    Chunk chunk;
    std::size_t used;
    std::uint32_t word;
  };
  ChunkPool& pool_;
  BlockWriter* writer_ = nullptr;
  std::vector<Full> full_;
  Chunk chunk_;
  char* cursor_ = nullptr;
  char* end_ = nullptr;
};

}  // namespace orvmesh::embedded
