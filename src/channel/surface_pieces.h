#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "channel/channel_surface.h"

namespace orvmesh::channel {

// What the edges of one group's faces tell.
struct SurfacePieces {
  std::int64_t openEdges = 0;                       // with one face only
  std::int32_t openEdge[2] = {0, 0};                // nodes (of the surface) of the first of them
  std::int64_t crowdedEdges = 0;                    // with more than two faces
  std::int64_t inlets = 0, outlets = 0, hoses = 0;  // sets of end faces that hang together by edges
  bool isClosed = false;  // every edge has two faces, and the faces can be turned to look the same way
  double volume = 0;      // inside a closed surface; each piece counts by itself
};

// groupOf: for each face, which of `groups` groups (0, 1, ...) it belongs to. Faces may look either way.
std::vector<SurfacePieces> findPieces(const ChannelSurface& surface, std::span<const std::uint32_t> groupOf,
                                      std::size_t groups);

}  // namespace orvmesh::channel
