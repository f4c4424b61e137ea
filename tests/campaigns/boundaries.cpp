// Files across 2^31 and 2^32 bytes are written, read and imported as small ones are; more than 2^31 - 1
// entities are refused in words. Usage: campaign_boundaries [FOLDER]      needs 10 GB there; exit code 77
// where there is less
#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
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
#include "import/brick_mold.h"
#include "import/import.h"
#include "platform/cofedata.h"
#include "support/failure_of.h"

namespace orvmesh::test {
namespace {

using namespace embedded;
constexpr std::uint64_t kBoundaries[] = {std::uint64_t{1} << 31, std::uint64_t{1} << 32};
constexpr std::uint64_t kMost = 0x7FFFFFFF;
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
  const std::string path = folder + "/orvmesh-many";
  for (const std::uint64_t entries : {kMost + 1, kMost + 2, 2 * kMost + 2})
    EXPECT_EQ(withManyEntries(path, entries),
              "badElementsPlastic has " + std::to_string(entries) + " entries (legal: 0 to 2147483647)");
}

// Nodes lie across the first boundary, elements across the second.
TEST(Boundaries, MeshesAcrossThemComeBackEntryByEntry) {
  constexpr int kNodes = 180'000'000, kElements = 80'000'000;
  const std::string path = folder + "/orvmesh-entries";
  OFEIO_Manipulator file;
  ASSERT_EQ(file.beginWriting(path.c_str(), 14001, 0), 1);
  for (int n = 1; n <= kNodes; ++n) file.writeNodeBlockEntry(static_cast<float>(n), 1, 2);
  for (int e = 1; e <= kElements; ++e)
    file.writeElementPlasticBlockEntry(4, std::array{e, e + 1, e + 2, kNodes}.data(), 1, e,
                                       static_cast<float>(e));
  ASSERT_EQ(file.endWriting(), 1) << file.errorText();
  EXPECT_GT(std::filesystem::file_size(path), kBoundaries[1]);

  ASSERT_EQ(file.beginReading(path.c_str(), nullptr, 0), 1) << file.errorText();
  int nodes = 0, elements = 0, corners[8], count = 0, a = 0, b = 0;
  float x = 0, y = 0, z = 0, value = 0;
  while (file.readNodeBlockEntry(x, y, z) >= 0 && x == static_cast<float>(nodes + 1) && z == 2) ++nodes;
  while (file.readElementPlasticBlockEntry(count, corners, a, b, value) >= 0 && count == 4 &&
         corners[2] == elements + 3 && corners[3] == kNodes && b == elements + 1 &&
         value == static_cast<float>(b))
    ++elements;
  EXPECT_EQ(nodes, kNodes);
  EXPECT_EQ(elements, kElements);
  file.endReading();
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(path.c_str(), nullptr, 0, false), 1) << data.errorText();
  EXPECT_EQ(data.model().nodes.count(), kNodes);
  EXPECT_EQ(data.model().elemP.count(), kElements);
  std::filesystem::remove(path);
}

TEST(Boundaries, TheWriterRefusesMoreEntriesThanThereAreNumbers) {
  const std::string path = folder + "/orvmesh-many";
  OFEIO_Manipulator file;
  ASSERT_EQ(file.beginWriting(path.c_str(), 14001, 0), 1);
  std::uint64_t written = 0;
  while (written <= kMost && file.writeBadElementPlasticBlockEntry(1, 1) >= 0) ++written;
  EXPECT_EQ(written, kMost);
  EXPECT_EQ(file.endWriting(), 0);
  EXPECT_EQ(file.errorText(), "badElementsPlastic entry 2147483648 is one too many (legal: 2147483647)");
  EXPECT_FALSE(std::filesystem::exists(path));
}

// Files with holes, written piece by piece.
class SparseFile {
 public:
  explicit SparseFile(const std::string& path)
      : file_(::open(path.c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0666)) {}
  void put(std::string_view bytes) {
    EXPECT_EQ(::pwrite(file_.number(), bytes.data(), bytes.size(), static_cast<off_t>(size_)),
              static_cast<ssize_t>(bytes.size()));
    size_ += bytes.size();
  }
  void growTo(std::uint64_t size) {
    EXPECT_EQ(::ftruncate(file_.number(), static_cast<off_t>(size)), 0);
    size_ = size;
  }
  std::uint64_t size() const { return size_; }

 private:
  Descriptor file_;
  std::uint64_t size_ = 0;
};

// The nodes across the first boundary, the elements across the second, a hole in a section before each.
void writeWide(const std::string& path, const std::string& msh) {
  constexpr std::string_view kEnd = "\n$EndComments\n";
  const std::size_t begins[] = {msh.find("$Nodes"), msh.find("$Elements"), msh.size()};
  SparseFile file(path);
  file.put(msh.substr(0, begins[0]));
  for (std::size_t i = 0; i < 2; ++i) {
    const std::string section = msh.substr(begins[i], begins[i + 1] - begins[i]);
    file.put("$Comments\n");
    file.growTo(kBoundaries[i] - section.size() / 2 - kEnd.size());
    file.put(kEnd);
    file.put(section);
  }
}

// The imported mesh, or why there is none.
std::string imported(const std::string& path) {
  std::filesystem::last_write_time(path,
                                   std::filesystem::file_time_type{});  // which the mesh gets as its date
  const std::string target = path + ".ofe";
  const std::string failure = failureOf([&] { importing::importMesh({path, target, "", 1, {}, false}); });
  std::string mesh = std::filesystem::exists(target) ? bytesOf(target) : failure;
  std::filesystem::remove(target);
  std::filesystem::remove(path);
  return mesh;
}

TEST(Boundaries, MeshFilesAcrossThemAreImported) {
  BrickMold mold("MMMMMM/MPIPCM/MMMMMM MMMMMM/MPIPCM/MMMMMM", Cells::tetrahedra);
  const std::string path = folder + "/orvmesh-wide.msh";
  const auto both = [&](const std::string& msh) {
    writeBytes(path, msh);
    const std::string plain = imported(path);
    writeWide(path, msh);
    return std::pair{plain, imported(path)};
  };
  for (const Encoding encoding : {Encoding::text22, Encoding::binary41}) {
    const auto [plain, wide] = both(writeMsh(mold.mesh, encoding));
    EXPECT_EQ(plain.front(), '0') << plain;
    EXPECT_TRUE(plain == wide);
  }
  mold.mesh.elements.back().nodes[0] = 9999;
  const auto lineIn = [](const std::string& text) { return std::stol(text.substr(text.find("line ") + 5)); };
  const auto [plain, wide] = both(writeMsh(mold.mesh, Encoding::text22));
  EXPECT_EQ(lineIn(wide), lineIn(plain) + 6) << wide;
}

TEST(Boundaries, MeshFilesWithMoreEntitiesThanThereAreNumbersAreRefused) {
  const auto bytesOfAll = [](auto... values) {
    std::string bytes;
    (bytes.append(reinterpret_cast<const char*>(&values), sizeof values), ...);
    return bytes;
  };
  constexpr std::uint64_t kOne = 1, kMany = kMost + 1;
  const std::string format = " 1 8\n" + bytesOfAll(1) + "\n$EndMeshFormat\n";
  const std::string new41 = "$MeshFormat\n4.1" + format + "$Nodes\n";
  const std::string oneNode = bytesOfAll(kOne, kOne, kOne, kOne, 0, 1, 0, kOne, kOne, 0.0, 0.0, 0.0);
  const struct {
    std::string head;
    std::uint64_t each;  // bytes
    const char* told;
  } rows[] = {
      {new41 + bytesOfAll(kOne, kMany, kOne, kMany, 3, 1, 0, kMany), 32, "nodes"},
      {"$MeshFormat\n2.2" + format + "$Nodes\n2147483648\n", 28, "nodes"},
      {new41 + oneNode + "\n$EndNodes\n$Elements\n" + bytesOfAll(kOne, kMany, kOne, kMany, 0, 1, 15, kMany),
       16, "elements"},
  };
  const std::string path = folder + "/orvmesh-many.msh";
  for (const auto& [head, each, told] : rows) {
    SparseFile file(path);
    file.put(head);
    file.growTo(head.size() + each * kMany);
    EXPECT_EQ(imported(path),
              path + ": byte " + std::to_string(head.size()) + ": more than 2147483647 " + told);
  }
}

}  // namespace
}  // namespace orvmesh::test

int main(int argc, char** argv) {
  ::testing::InitGoogleTest(&argc, argv);
  if (argc > 1) orvmesh::test::folder = argv[1];
  std::error_code failed;
  const auto room = std::filesystem::space(orvmesh::test::folder, failed);
  if (failed || room.available < std::uintmax_t{10'000'000'000}) {
    std::cout << orvmesh::test::folder << " has no room for 10 GB: not tried\n";
    return 77;
  }
  return RUN_ALL_TESTS();
}
