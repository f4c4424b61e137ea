#pragma once

#include <cstring>

#include "embedded/block_format.h"
#include "embedded/checksum.h"

// Puts the checksums of a mutated block file right, so that mutations get past them.
namespace orvmesh::fuzzing {

template <class T>
bool load(const std::uint8_t* data, std::size_t size, std::uint64_t at, T& out) {
  if (at > size || size - at < sizeof out) return false;
  std::memcpy(&out, data + at, sizeof out);
  return true;
}

inline void sealColumn(std::uint8_t* data, std::size_t size, std::uint64_t at, std::uint64_t seed) {
  using namespace embedded;
  ColumnRecord column{};
  if (!load(data, size, at, column) || column.count > size) return;
  const std::uint64_t bytes = column.count * valueSize(static_cast<char>(column.type));
  const std::uint64_t whole = bytes + paddingAfter(bytes);
  if (column.offset > size || whole > size - column.offset) return;
  column.hash = checksumOf(data + column.offset, whole, seed);
  std::memcpy(data + at, &column, sizeof column);
}

inline void seal(std::uint8_t* data, std::size_t size) {
  using namespace embedded;
  BlockFileHeader header{};
  if (!load(data, size, 0, header)) return;
  std::uint64_t at = header.directoryOffset;
  for (std::uint32_t b = 0; b < header.blockCount && b < 64; ++b) {
    BlockRecord block{};
    if (!load(data, size, at, block) || block.columnCount > 64) break;
    at += sizeof block;
    for (std::uint32_t c = 0; c < block.columnCount; ++c, at += sizeof(ColumnRecord))
      sealColumn(data, size, at, columnSeed(block.id, c));
  }
  if (header.directoryOffset <= size && header.directoryLength <= size - header.directoryOffset)
    header.directoryHash = checksumOf(data + header.directoryOffset, header.directoryLength, 0);
  std::memcpy(data, &header, sizeof header);
  header.headerHash = checksumOf(data, offsetof(BlockFileHeader, headerHash), 0);
  std::memcpy(data, &header, sizeof header);
}

}  // namespace orvmesh::fuzzing
