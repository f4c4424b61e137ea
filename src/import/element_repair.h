#pragma once

#include <cstdint>

#include "import/volume_mesh.h"

namespace orvmesh::importing {

struct Repairs {
  std::uint64_t turned = 0;
  std::uint64_t flat = 0;  // without volume; they stay
};

// Sums up the components' volumes as they came.
void measureVolumes(VolumeMesh& volumes);

// Turns inverted elements, sums up the volumes that are written and fills blocksOfNode. Fails for an element
// that names a node twice.
Repairs turnElements(VolumeMesh& volumes);

}  // namespace orvmesh::importing
