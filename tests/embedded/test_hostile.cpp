#include <algorithm>
#include <limits>

#include "embedded/all_blocks.h"
#include "embedded/block_format.h"
#include "embedded/checksum.h"
#include "embedded/mesh.h"
#include "embedded/ofe_layout.h"

// Damaged files, and those whose checksums are right and whose content is not: what a reader that trusted
// counts would crash on.
namespace orvmesh::test {
namespace {

using namespace embedded;
constexpr std::uint64_t k2To63 = std::uint64_t{1} << 63;

// The bytes of a file, to be changed and sealed again.
class OpenBytes {
 public:
  explicit OpenBytes(std::string bytes) : bytes_(std::move(bytes)) {}

  template <class T>
  T* at(std::size_t offset) {
    return reinterpret_cast<T*>(bytes_.data() + offset);
  }
  BlockFileHeader& header() { return *at<BlockFileHeader>(0); }
  BlockRecord& block(Block wanted) {
    std::size_t offset = header().directoryOffset;
    while (at<BlockRecord>(offset)->id != layoutOf(wanted).id)
      offset += 32 + 32 * at<BlockRecord>(offset)->columnCount;
    return *at<BlockRecord>(offset);
  }
  ColumnRecord& column(Block wanted, std::size_t index) {
    return *(reinterpret_cast<ColumnRecord*>(&block(wanted) + 1) + index);
  }
  template <class T>
  void set(Block wanted, std::size_t index, std::size_t position, T value) {
    at<T>(column(wanted, index).offset)[position] = value;
    sealColumn(wanted, index);
  }
  void sealColumn(Block wanted, std::size_t index) {
    ColumnRecord& record = column(wanted, index);
    const std::uint64_t size = record.count * valueSize(static_cast<char>(record.type));
    record.hash = checksumOf(at<char>(record.offset), size + paddingAfter(size),
                             columnSeed(layoutOf(wanted).id, index));
  }
  // Two columns of one chunk each change places, their checksums with them.
  void exchangeColumns(Block wanted, std::size_t a, std::size_t b) {
    std::swap(column(wanted, a).hash, column(wanted, b).hash);
    char* const first = at<char>(column(wanted, a).offset);
    std::swap_ranges(first, first + kColumnAlignment, at<char>(column(wanted, b).offset));
  }
  const std::string& sealed() {
    BlockFileHeader& h = header();
    if (h.directoryOffset + h.directoryLength <= bytes_.size())
      h.directoryHash = checksumOf(at<char>(h.directoryOffset), h.directoryLength, 0);
    h.headerHash = checksumOf(bytes_.data(), offsetof(BlockFileHeader, headerHash), 0);
    return bytes_;
  }

 private:
  std::string bytes_;
};

struct Case {
  std::function<void(OpenBytes&)> change;
  const char* refusal;  // the part that names the fault
};

// clang-format off
const Case kCases[] = {
    // The container.
    {[](auto& f) { f.header().containerVersion = 2; }, "has container version 2 (known: 1)"},
    {[](auto& f) { f.header().fileSize = k2To63; }, "is cut off"},
    {[](auto& f) { f.header().directoryOffset = 0; }, "has a wrong header: the directory (offset 0"},
    {[](auto& f) { f.header().reserved = 1; }, "has a wrong header"},
    {[](auto& f) { f.header().blockCount = 0xFFFFFFFF; }, "has a wrong directory: it is too short"},
    {[](auto& f) { f.header().blockCount -= 1; }, "has a wrong directory: its blocks end"},
    {[](auto& f) { f.header().blockCount += 1; }, "has a wrong directory: "},
    {[](auto& f) { f.block(Block::Nodes).columnCount = 0xFFFFFFFF; }, "block 200 has 4294967295 columns"},
    {[](auto& f) { f.block(Block::Nodes).columnCount = 0; }, "block 200 has 128 bytes, its columns 0"},
    {[](auto& f) { f.block(Block::Nodes).offset += 64; }, "block 200 begins at byte"},
    {[](auto& f) { f.block(Block::Nodes).length = ~std::uint64_t{0}; }, "block 200 has 18446744073709551615 bytes"},
    {[](auto& f) { f.block(Block::Nodes).length += 64; }, "block 200 has 192 bytes, its columns 128"},
    {[](auto& f) { f.block(Block::Nodes).id = 310; }, "block 310 is there twice"},
    {[](auto& f) { f.block(Block::Nodes).reserved = 1; }, "has a wrong directory: block 200"},
    {[](auto& f) { std::swap(f.block(Block::Nodes).id, f.block(Block::ElementSurfaces).id); }, "nodes has 7 columns (legal: 0 or 1)"},
    {[](auto& f) { f.column(Block::Nodes, 0).type = 'X'; }, "block 200 column 0 has an unknown type 88"},
    {[](auto& f) { f.column(Block::Nodes, 0).type = 'F' + 256; }, "has an unknown type 326"},
    {[](auto& f) { f.column(Block::Nodes, 0).offset = 0; }, "block 200 column 0 begins at byte 0"},
    {[](auto& f) { f.column(Block::Nodes, 0).count = k2To63 / 2 + 1; }, "values, more than its block of 128 bytes"},
    // The shapes of blocks.
    {[](auto& f) { f.block(Block::Sensors).id = 801; }, "has no block sensors"},
    {[](auto& f) { f.column(Block::Nodes, 0).type = 'I'; }, "nodes column xyz has type 'I' (legal: 'F')"},
    {[](auto& f) { f.column(Block::Nodes, 0).count = 26; }, "xyz has 26 values (legal: 24 for 8 entries)"},
    {[](auto& f) { f.column(Block::Sensors, 1).count = 1; }, "type has 1 values (legal: 2 for 2 entries)"},
    {[](auto& f) { f.column(Block::ElementsMoldBase, 4).count = 3; }, "offsets has 3 values (legal: 4 for 3"},
    {[](auto& f) { f.column(Block::SurfaceBoundaryConditions, 2).count = 4; }, "offsets has 4 values (legal: 3"},
    {[](auto& f) { f.column(Block::Header, 0).count = 159; f.template set<int>(Block::Header, 0, 159, 0); }, "header has 159 words"},
    {[](auto& f) { f.template set<int>(Block::Header, 1, 0, 14004); }, "version 14004 is unknown (known: 2002, 2008 to 2012, 13001, 14001 to 14003)"},
    // Bytes that are not what they were, at another place or in another column.
    {[](auto& f) { f.column(Block::Sensors, 1).hash ^= 1; }, "(sensors column type)"},
    {[](auto& f) { f.template set<char>(Block::Sensors, 1, 63, 1); }, "block 800, the padding of column 1 is not zero (sensors column type)"},
    {[](auto& f) { f.exchangeColumns(Block::ElementSurfaces, 2, 3); }, "(elementSurfaces column ownerCode)"},
    // The pieces of pools.
    {[](auto& f) { f.template set<std::int64_t>(Block::ElementsMoldBase, 4, 0, 1); }, "elementsMoldBase: offset 0 is 1 (legal: 0)"},
    {[](auto& f) { f.template set<std::int64_t>(Block::ElementsMoldBase, 4, 1, -4); }, "elementsMoldBase: entry 1 reaches from 0 to -4 (legal: 1 to 8 values)"},
    {[](auto& f) { f.template set<std::int64_t>(Block::ElementsMoldBase, 4, 1, 0); }, "elementsMoldBase: entry 1 reaches from 0 to 0"},
    {[](auto& f) { f.template set<std::int64_t>(Block::ElementsMoldBase, 4, 3, 18); }, "elementsMoldBase: the last offset is 18 (legal: 17)"},
    {[](auto& f) { f.template set<std::int64_t>(Block::SurfaceBoundaryConditions, 2, 1, k2To63 - 1); }, "surfaceBoundaryConditions: entry 1 reaches from 0 to 9223372036854775807"},
    {[](auto& f) { f.column(Block::ElementsPlastic, 0).count = 7; f.template set<int>(Block::ElementsPlastic, 0, 7, 0); }, "elementsPlastic: 7 node numbers for 2 elements without offsets"},
    {[](auto& f) { f.template set<int>(Block::SurfaceBoundaryConditionNames, 1, 1, 0x7FFFFFFF); }, "surfaceBoundaryConditionNames: 7 texts where names and dictionaries need 4294967297"},
    {[](auto& f) { f.template set<int>(Block::SurfaceBoundaryConditionNames, 1, 1, -2); }, "surfaceBoundaryConditionNames: entry 1: dictionary size is -2"},
    {[](auto& f) { f.template set<char>(Block::MoldMetalLayers, 0, 0, 0); }, "moldMetalLayers: a zero byte in a text, at position 0"}};
// clang-format on

TEST(Hostile, SealedLiesAreRefused) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe", sound = bytesOfAllBlocks();
  writeBytes(path, OpenBytes(sound).sealed());
  EXPECT_EQ(refusalOf(path) + entryRefusalOf(path), "");
  for (const Case& c : kCases) {
    OpenBytes bytes(sound);
    c.change(bytes);
    writeBytes(path, bytes.sealed());
    for (const std::string& refusal : {refusalOf(path), entryRefusalOf(path)})
      EXPECT_NE(refusal.find(c.refusal), std::string::npos) << c.refusal << "\n" << refusal;
  }
}

// The writer refuses such entries, so that a file with them must be made by hand.
TEST(Hostile, LengthsThatAreNotFiniteAreNamedAndNotWritten) {
  struct Place {
    Block block;
    std::size_t column, value;
    const char* name;
    int (*write)(OFEIO_Manipulator& file, float value);
  };
  static const int kNone[8] = {};
  // clang-format off
  const Place places[] = {
      {Block::Nodes, 0, 10, "nodes entry 4: y", [](auto& f, float v) { return f.writeNodeBlockEntry(0, v, 0); }},
      {Block::CoolantChannelDiameters, 1, 0, "coolantChannelDiameters entry 1: diameter",
       [](auto& f, float v) { return f.writeCoolantChannelDiameterBlockEntry(kNone, v); }},
      {Block::CoolantChannelLines, 0, 6, "coolantChannelLines entry 2: z",
       [](auto& f, float v) { return f.writeCoolantChannelLineBlockEntry(0, 0, v, 0, 0, 0, 0, 0); }},
      {Block::CoolantChannelLayout, 0, 38, "coolantChannelLayout entry 3: value 20",
       [](auto& f, float v) { return f.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, v); }},
      {Block::Sensors, 2, 4, "sensors entry 2: y", [](auto& f, float v) { return f.writeSensorInfoBlockEntry(1, kNone, 0, v, 0); }},
      {Block::MoldMetal, 2, 0, "moldMetal entry 1: x", [](auto& f, float v) { return f.writeMoldMetalBlockEntry(1, v, 0, 0, kNone, 0, 0); }},
      {Block::PartingDirection, 0, 1, "partingDirection entry 1: y", [](auto& f, float v) { return f.writePartingDirectionBlockEntry(0, v, 1); }}};
  // clang-format on
  const TempDir dir;
  const std::string sound = bytesOfAllBlocks();
  for (const Place& place : places) {
    for (const float value :
         {std::numeric_limits<float>::quiet_NaN(), -std::numeric_limits<float>::infinity()}) {
      OpenBytes bytes(sound);
      bytes.set<float>(place.block, place.column, place.value, value);
      writeBytes(dir / "changed.ofe", bytes.sealed());
      EXPECT_EQ(refusalOf(dir / "changed.ofe"),
                place.name + std::string(value < 0 ? " is -inf" : " is nan") + " (legal: a finite number)");
      OFEIO_Manipulator writer;
      ASSERT_EQ(writer.beginWriting((dir / "new.ofe").c_str(), 14001, 0), 1);
      EXPECT_EQ(place.write(writer, value), -1) << place.name;
      EXPECT_EQ(writer.endWriting(), 0) << place.name;
    }
  }
}

TEST(Hostile, EveryFlippedByteIsNoticed) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe", sound = bytesOfAllBlocks();
  writeBytes(path, sound);
  std::fstream file(path, std::ios::in | std::ios::out | std::ios::binary);
  const auto put = [&file](std::size_t at, int byte) {
    file.seekp(static_cast<std::streamoff>(at)).put(static_cast<char>(byte)).flush();
  };
  for (std::size_t i = 0; i < sound.size(); ++i) {
    put(i, sound[i] ^ std::array{0x01, 0x80, 0xFF}[i % 3]);
    EXPECT_FALSE(refusalOf(path).empty() || entryRefusalOf(path).empty()) << i;
    put(i, sound[i]);
  }
  EXPECT_EQ(refusalOf(path) + entryRefusalOf(path), "");
}

TEST(Hostile, AReplacedFileStaysReadable) {
  const TempDir dir;
  const std::string path = dir / "mesh.ofe";
  ASSERT_EQ(writeAllBlocks(path), 1);
  COFEData data;
  ASSERT_EQ(data.ReadDataBin(path.c_str(), nullptr, 0, false), 1);
  ASSERT_EQ(twoTetrahedra().write(path), 1);
  EXPECT_EQ(data.model().nodes.count(), 9);
  EXPECT_EQ(data.model().nodes[9].x, 4);
}

}  // namespace
}  // namespace orvmesh::test
