#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "base/element_volume.h"
#include "import/surfaces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// Where points lie, for parts that have elements. Of things equally near the lowest number is taken.

// Node numbers nearest to the points, of the nodes of this part's elements.
std::vector<std::int32_t> nearestNodes(const VolumeMesh& volumes, Block block,
                                       std::span<const Vector> points);

// Elements (counted over all volume elements) that hold the points; for a point outside all of them the one
// with the nearest middle among those at its nearest node.
std::vector<std::int32_t> elementsAt(const VolumeMesh& volumes, Block block, std::span<const Vector> points);

// Position in the list of the nearest part face; -1 when there are none.
std::int64_t nearestPartFace(const VolumeMesh& volumes, const Surfaces& surfaces, const Vector& point);

}  // namespace orvmesh::importing
