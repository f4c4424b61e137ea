#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "channel/channel_markers.h"
#include "channel/console.h"

namespace orvmesh::channel {

// Kinds of faces, as callers see them.
inline constexpr std::uint8_t kOtherFace = 0;
inline constexpr std::uint8_t kCoolantFace = 1;
inline constexpr std::uint8_t kHeaterFace = 2;
inline constexpr std::uint8_t kHoseFace = 3;

// The surface mesh of the cooling channels of one file. Faces and nodes in arrays of one value (or three,
// four) each, nodes numbered from 1 in the order of their numbers in the file.
struct ChannelSurface {
  std::int32_t groups = 0;  // the header's count

  std::vector<float> xyz;                 // 3 per node, times the scale factor
  std::vector<std::int32_t> fileNumbers;  // of each node

  std::vector<std::int32_t> nodes;  // 4 per face, a triangle's third twice; 0 for a node the file has not
  std::vector<std::int32_t> group;  // of each face, as all that follow
  std::vector<std::uint8_t> vertexCount, interfaceId, kind, endCode;
  std::vector<std::uint8_t> isHeater;  // by the face's own code, also for a hose

  Markers markers;

  std::int32_t nodeCount() const { return static_cast<std::int32_t>(fileNumbers.size()); }
  std::int32_t faceCount() const { return static_cast<std::int32_t>(kind.size()); }
};

// Reads the file into an empty surface. 1; else the platform's result, 0 or below, and `error` says why.
int readChannelSurface(const char* path, Console console, ChannelSurface& surface, std::string& error);

}  // namespace orvmesh::channel
