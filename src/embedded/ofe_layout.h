#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvmesh::embedded {

// Every block of an OFE file, in the order in which an unwritten one is filled in.
enum class Block : std::uint8_t {
  Header,
  Nodes,
  ElementsPlastic,
  ElementsMoldBase,
  ElementsCoolChannel,
  ElementSurfaces,
  BoundaryConditions,
  BadElementsPlastic,
  BadElementsMoldBase,
  BadElementsCoolChannel,
  CoolantChannelDiameters,
  CoolantChannelLines,
  CoolantChannelLayout,
  Sensors,
  MoldMetal,
  CoolingChannelSurface,
  SurfaceBoundaryConditions,
  SurfaceBoundaryConditionNames,
  MoldMetalLayers,
  PartInsertLayers,
  CoolantChannelLayers,
  PartingDirection,
};
inline constexpr std::size_t kBlockCount = 22;

// How the values of a column belong to the block's entries.
enum class Per : std::uint8_t {
  Entry,           // a fixed number of values per entry
  Pool,            // any number, cut into pieces by the block's offsets
  Offsets,         // one piece of the pool per entry: entry i has values offsets[i] to offsets[i + 1] - 1
  OffsetsIfMixed,  // the same, and empty while all pieces are of one length
  TextOffsets,     // one text of the pool per name, key and value, see the names block
  Free,            // not by entries: the header
};

struct ColumnLayout {
  char type;
  Per per;
  int width;  // values per entry for Per::Entry
  const char* name;
};

// The one statement of a block: the writer writes it, the reader holds files to it and docs/formats/ofe.md
// describes it. A block without entries has no columns in the file. Column 0 is the longest one.
struct BlockLayout {
  Block block;
  std::int64_t id;
  const char* name;
  bool secondPart;
  std::span<const ColumnLayout> columns;
};
const BlockLayout& layoutOf(Block block);
std::span<const BlockLayout> allLayouts();

// Positions of columns.
namespace column {
inline constexpr std::size_t kConnectivity = 0, kFieldA = 1, kFieldB = 2, kValue = 3, kOffsets = 4;
inline constexpr std::size_t kSurfaceNodes = 0, kInterfaceId = 1, kOwnerCode = 2, kContactCode = 3,
                             kBoundaryType = 4, kElementNo = 5, kTag = 6;
inline constexpr std::size_t kHeaderWords = 0, kFileVersion = 1, kHeaderStrings = 2;
// Blocks of the form pool, values per entry, offsets: boundary-condition lists, names and layers.
inline constexpr std::size_t kPool = 0, kPoolValues = 1, kPoolOffsets = 2;
}  // namespace column

inline constexpr int kMaxElementNodes = 8;

// The versions a file may be written as.
std::span<const int> writableVersions();
const char* writableVersionsAsText();

}  // namespace orvmesh::embedded
