#pragma once

#include <cstdint>
#include <vector>

#include "base/one_based.h"
#include "platform/mesh_records.h"
#include "transfer/ctg/element_faces.h"

namespace orvmesh::transfer {

// Boundary types of nodes and faces: 0 none, 1 part, 2 air, and from 3 on the coolant boundary number + 2.
inline constexpr std::int32_t kPartBoundary = 1;
inline constexpr std::int32_t kAirBoundary = 2;
inline constexpr std::int32_t kFirstCoolantBoundary = 3;

struct BoundaryCounts {
  std::int32_t part = 0, air = 0, coolant = 0;
};

struct BoundaryNodes {
  OneBasedArray<std::int32_t> type;
  BoundaryCounts surfaces;                       // surface elements of each boundary, not nodes (quirk 26)
  std::vector<std::int32_t> part, air, coolant;  // nodes of the types 1, 2 and 3, ascending
};
BoundaryNodes findBoundaryNodes(const SurfaceTable& surfaces, std::int32_t nodeCount);

struct BoundaryFaces {
  std::vector<std::int32_t> face, type;  // the faces whose type is not 0, ascending
  BoundaryCounts faces;
};
BoundaryFaces findBoundaryFaces(const ElementTable& elements, const ElementFaces& faces,
                                const OneBasedArray<std::int32_t>& nodeType);

}  // namespace orvmesh::transfer
