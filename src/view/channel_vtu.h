#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvmesh::view {

// The surface mesh of cooling channels. Nodes are numbered from 1.
struct ChannelFaces {
  std::span<const float> xyz;               // 3 per node
  std::span<const std::int32_t> fileNodes;  // number of each node in the mesh file
  std::span<const std::int32_t> nodes;      // 4 per face, all of them there
  std::span<const std::int32_t> group;      // per face, as all that follow
  std::span<const std::uint8_t> vertexCount, interfaceId, kind, endCode;
};

// Writes it as a VTK XML file: cell arrays group, kind, endCode, interface and face (number), point array
// node (number in the mesh file). Throws Failure; the file appears whole or not at all.
void writeChannelVtu(const ChannelFaces& faces, const std::string& path);

}  // namespace orvmesh::view
