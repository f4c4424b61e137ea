#pragma once

#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>

namespace orvmesh::embedded {

// The block file, byte for byte; docs/formats/block-file.md is its page. All numbers are little-endian.
static_assert(std::endian::native == std::endian::little, "block files are used in place");

inline constexpr std::array<char, 8> kBlockMagic{'0', 'b', 'l', 'o', 'c', 'k', 's', '\n'};
inline constexpr std::uint32_t kContainerVersion = 1;
inline constexpr std::uint64_t kColumnAlignment = 64;
inline constexpr std::uint32_t kMaxColumns = 65536;

struct BlockFileHeader {
  std::array<char, 8> magic;
  std::uint32_t containerVersion;
  std::uint32_t blockCount;
  std::uint64_t fileSize;
  std::uint64_t directoryOffset;
  std::uint64_t directoryLength;
  std::uint64_t directoryHash;
  std::uint64_t reserved;
  std::uint64_t headerHash;  // of the bytes before it
};
static_assert(sizeof(BlockFileHeader) == 64);

// The directory: one block record after another in the order of the blocks in the file, each followed by the
// records of its columns.
struct BlockRecord {
  std::int64_t id;
  std::uint64_t offset;
  std::uint64_t length;
  std::uint32_t columnCount;
  std::uint32_t reserved;
};
struct ColumnRecord {
  std::uint32_t type;
  std::uint32_t reserved;
  std::uint64_t offset;
  std::uint64_t count;
  std::uint64_t hash;  // of the column's bytes and their padding
};
static_assert(sizeof(BlockRecord) == 32 && sizeof(ColumnRecord) == 32);

// Bytes of one value; 0 for an unknown type.
constexpr std::uint64_t valueSize(char type) {
  switch (type) {
    case 'I':
    case 'F':
      return 4;
    case 'L':
    case 'D':
      return 8;
    case 'C':
      return 1;
    default:
      return 0;
  }
}

constexpr std::uint64_t paddingAfter(std::uint64_t size) {
  return (kColumnAlignment - size % kColumnAlignment) % kColumnAlignment;
}

// The seed ties a column's hash to its place, so that columns of equal bytes cannot be exchanged unseen.
constexpr std::uint64_t columnSeed(std::int64_t blockId, std::size_t column) {
  return static_cast<std::uint64_t>(blockId) * kMaxColumns + column;
}

}  // namespace orvmesh::embedded
