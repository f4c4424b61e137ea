// Blocks that straddle 2^31 and 2^32 bytes read back equal; more than 2^31 - 1 entities are refused in words.
// Usage: campaign_boundaries [FOLDER]      needs 5 GB there; exit code 77 where there is less
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <cstring>
#include <filesystem>
#include <iostream>
#include <numeric>

#include "base/descriptor.h"
#include "embedded/all_blocks.h"
#include "embedded/block_reader.h"
#include "embedded/block_writer.h"
#include "embedded/mesh.h"
#include "embedded/ofe_layout.h"

namespace orvmesh::test {
namespace {

using namespace embedded;
constexpr std::uint64_t kBoundaries[] = {std::uint64_t{1} << 31, std::uint64_t{1} << 32};
constexpr std::size_t kValues = 1 << 20;
std::string folder = "/tmp";

std::vector<std::int64_t> valuesAt(std::uint64_t boundary) {
  std::vector<std::int64_t> values(kValues);
  std::iota(values.begin(), values.end(), static_cast<std::int64_t>(boundary) - 12345);
  return values;
}

// A block of zeros up to shortly before each boundary, then one of numbers that lies across it.
bool writeAcross(const std::string& path) {
  BlockWriter writer;
  if (!writer.open(path)) return false;
  const std::vector<char> zeros(1 << 20);
  std::uint64_t size = sizeof(BlockFileHeader);
  std::int64_t id = 1;
  for (const std::uint64_t boundary : kBoundaries) {
    const std::uint64_t filled = boundary - kValues * sizeof(std::int64_t) / 2 / 64 * 64 - 64;
    writer.beginBlock(id++);
    writer.beginColumn('C');
    for (; size < filled; size += std::min<std::uint64_t>(zeros.size(), filled - size))
      writer.append(zeros.data(), std::min<std::uint64_t>(zeros.size(), filled - size));
    writer.endBlock();
    const auto values = valuesAt(boundary);
    writer.beginBlock(id++);
    writer.beginColumn('L');
    writer.append(values.data(), values.size() * sizeof values[0]);
    writer.endBlock();
    size = filled + values.size() * sizeof values[0];
  }
  return writer.commit();
}

TEST(Boundaries, BlocksAcrossThemReadBackEqual) {
  const std::string path = folder + "/orvmesh-boundaries";
  ASSERT_TRUE(writeAcross(path));
  EXPECT_GT(std::filesystem::file_size(path), kBoundaries[1]);
  BlockReader reader;
  ASSERT_TRUE(reader.open(path)) << reader.errorText();
  for (const BlockEntry& block : reader.blocks()) EXPECT_TRUE(reader.verify(block, 0)) << reader.errorText();
  for (std::size_t i = 0; i < 2; ++i) {
    const BlockEntry& block = reader.blocks()[2 * i + 1];
    EXPECT_LT(block.record.offset, kBoundaries[i]);
    EXPECT_GT(block.record.offset + block.record.length, kBoundaries[i]);
    const auto read = reader.values<std::int64_t>(block, 0);
    EXPECT_TRUE(std::ranges::equal(read, valuesAt(kBoundaries[i])));
  }
  // A damage behind each boundary is seen.
  const Descriptor file(::open(path.c_str(), O_WRONLY | O_CLOEXEC));
  for (std::size_t i = 0; i < 2; ++i)
    ASSERT_EQ(::pwrite(file.number(), "!", 1, static_cast<off_t>(kBoundaries[i] + 9)), 1);
  for (std::size_t i = 0; i < 2; ++i) EXPECT_FALSE(reader.verify(reader.blocks()[2 * i + 1], 0));
  std::filesystem::remove(path);
}

// The bad plastic elements of a sound file become more than there can be; their bytes are a hole.
std::string withManyEntries(const std::string& path, std::uint64_t entries) {
  EXPECT_EQ(writeAllBlocks(path), 1);
  std::string bytes = bytesOf(path);
  BlockFileHeader header{};
  std::memcpy(&header, bytes.data(), sizeof header);
  std::string directory = bytes.substr(header.directoryOffset);
  std::uint64_t moved = 0;
  for (std::size_t at = 0; at < directory.size();) {
    BlockRecord block{};
    std::memcpy(&block, directory.data() + at, sizeof block);
    const bool grows = block.id == layoutOf(Block::BadElementsPlastic).id;
    block.offset += moved;
    std::uint64_t used = 0;
    for (std::uint32_t c = 0; c < block.columnCount; ++c) {
      ColumnRecord column{};
      char* const place = directory.data() + at + sizeof block + c * sizeof column;
      std::memcpy(&column, place, sizeof column);
      if (grows) column.count = entries;
      column.offset = grows ? block.offset + used : column.offset + moved;
      const std::uint64_t size = column.count * valueSize(static_cast<char>(column.type));
      used += size + paddingAfter(size);
      std::memcpy(place, &column, sizeof column);
    }
    moved += used - block.length;
    block.length = used;
    std::memcpy(directory.data() + at, &block, sizeof block);
    at += sizeof block + block.columnCount * sizeof(ColumnRecord);
  }
  header.directoryOffset += moved;
  header.fileSize += moved;
  header.directoryHash = checksumOf(directory.data(), directory.size(), 0);
  header.headerHash = checksumOf(&header, offsetof(BlockFileHeader, headerHash), 0);
  const Descriptor file(::open(path.c_str(), O_RDWR | O_CLOEXEC));
  EXPECT_EQ(::pwrite(file.number(), &header, sizeof header, 0), static_cast<ssize_t>(sizeof header));
  EXPECT_EQ(
      ::pwrite(file.number(), directory.data(), directory.size(), static_cast<off_t>(header.directoryOffset)),
      static_cast<ssize_t>(directory.size()));
  std::string refusal = refusalOf(path);
  std::filesystem::remove(path);
  return refusal;
}

TEST(Boundaries, MoreEntitiesThanThereAreNumbersAreRefused) {
  constexpr std::uint64_t kMost = 0x7FFFFFFF;
  const std::string path = folder + "/orvmesh-many";
  for (const std::uint64_t entries : {kMost + 1, kMost + 2, 2 * kMost + 2})
    EXPECT_EQ(withManyEntries(path, entries),
              "badElementsPlastic has " + std::to_string(entries) + " entries (legal: 0 to 2147483647)");
}

}  // namespace
}  // namespace orvmesh::test

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (argc > 1) orvmesh::test::folder = argv[1];
  std::error_code failed;
  const auto room = std::filesystem::space(orvmesh::test::folder, failed);
  if (failed || room.available < std::uintmax_t{5'000'000'000}) {
    std::cout << orvmesh::test::folder << " has no room for 5 GB: not tried\n";
    return 77;
  }
  return RUN_ALL_TESTS();
}
