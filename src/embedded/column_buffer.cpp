#include "embedded/column_buffer.h"

#include <algorithm>

namespace orvmesh::embedded {
namespace {

bool repeatsFirstWord(const char* chunk) {
  constexpr std::size_t kWord = sizeof(std::uint32_t);
  return std::memcmp(chunk, chunk + kWord, ChunkPool::kChunkSize - kWord) == 0;
}

}  // namespace

Chunk ChunkPool::take() {
  if (free_.empty()) return std::make_unique_for_overwrite<char[]>(kChunkSize);
  Chunk chunk = std::move(free_.back());
  free_.pop_back();
  return chunk;
}

void ColumnBuffer::pushBytes(const char* bytes, std::size_t size) {
  while (size > 0) {
    const std::size_t piece = std::min(size, ChunkPool::kChunkSize);
    push(bytes, piece);
    bytes += piece;
    size -= piece;
  }
}

void ColumnBuffer::sealChunk() {
  if (!chunk_) return;
  const auto used = static_cast<std::size_t>(cursor_ - chunk_.get());
  full_.push_back({std::move(chunk_), used, 0});
  cursor_ = end_ = nullptr;
  Full& sealed = full_.back();
  if (used != ChunkPool::kChunkSize || !repeatsFirstWord(sealed.chunk.get())) return;
  std::memcpy(&sealed.word, sealed.chunk.get(), sizeof sealed.word);
  pool_.giveBack(std::move(sealed.chunk));
}

Chunk ColumnBuffer::repeated(std::uint32_t word) {
  Chunk chunk = pool_.take();
  for (std::size_t at = 0; at < ChunkPool::kChunkSize; at += sizeof word)
    std::memcpy(chunk.get() + at, &word, sizeof word);
  return chunk;
}

void ColumnBuffer::nextChunk() {
  if (chunk_ && writer_ != nullptr) {
    writer_->append(chunk_.get(), static_cast<std::size_t>(cursor_ - chunk_.get()));
  } else {
    sealChunk();
    chunk_ = pool_.take();
  }
  cursor_ = chunk_.get();
  end_ = cursor_ + ChunkPool::kChunkSize;
}

void ColumnBuffer::finish(BlockWriter& writer) {
  drain([&writer](const char* bytes, std::size_t size) { writer.append(bytes, size); });
}

}  // namespace orvmesh::embedded
