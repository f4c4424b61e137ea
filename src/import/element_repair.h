#pragma once

#include <cstdint>
#include <vector>

#include "import/volume_mesh.h"

namespace orvmesh::importing {

// Codes of bad elements.
inline constexpr std::int32_t kNoVolume = 1, kPoorQuality = 2;

struct FoundBadElement {
  std::int32_t element;  // counted from 0 over all volume elements
  std::int32_t code;
};

struct Repairs {
  std::uint64_t turned = 0;
  std::vector<FoundBadElement> bad;  // ascending; they stay
};

// Sums up the components' volumes as they came.
void measureVolumes(VolumeMesh& volumes);

// Turns inverted elements, lists those without volume or of a quality below the limit (see
// element_quality.h), sums up the volumes that are written and fills blocksOfNode. Fails for an element that
// names a node twice.
Repairs turnElements(VolumeMesh& volumes, double badQuality);

}  // namespace orvmesh::importing
