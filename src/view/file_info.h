#pragma once

#include <array>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "platform/ofe_header.h"

namespace orvmesh::view {

inline constexpr std::array<const char*, 5> kElementTypes{"tetrahedra", "pyramids", "wedges", "hexahedra",
                                                          "others"};
using TypeCounts = std::array<std::int64_t, kElementTypes.size()>;

// The volume elements of one block.
struct ComponentInfo {
  std::string_view name;
  std::int64_t elements = 0;
  std::int64_t bad = 0;
  TypeCounts types{};
  std::map<std::pair<std::int32_t, std::int32_t>, TypeCounts> parts;  // by field A and field B
};
// The surface elements of one interface and boundary type.
struct SurfaceInfo {
  std::int64_t triangles = 0, quadrangles = 0, withList = 0;
};
struct NamedCount {
  const char* name;
  std::int64_t count;
};

// What `info` tells about an OFE file.
struct FileInfo {
  std::string path;
  OFEHeader header;
  int writtenVersion = 0;
  double lengthFactor = 1;
  std::int64_t nodes = 0;
  std::array<double, 3> boxMin{}, boxMax{};  // model units; meaningless without nodes
  std::array<ComponentInfo, 3> components;
  std::int64_t surfaces = 0;
  std::map<std::pair<std::int32_t, std::int32_t>, SurfaceInfo> interfaces;  // by interfaceId and boundaryType
  std::map<std::string, std::int64_t> conditions;                           // by code
  std::array<std::int64_t, 6> sensors{};                                    // by kind
  std::vector<NamedCount> others;                                           // every other block
  std::vector<std::string> notes;                                           // header counts that differ
  std::vector<std::string> warnings;                                        // of the reader
};

// Throws Failure when the file is refused.
FileInfo readFileInfo(const std::string& ofePath);

// What the field A and B of an element of the component (0 plastic, 1 mold, 2 channel) make it.
std::string_view roleOf(std::size_t component, std::int32_t a, std::int32_t b);

std::string fileInfoAsText(const FileInfo& info);
std::string fileInfoAsJson(const FileInfo& info);

}  // namespace orvmesh::view
