#pragma once

#include "platform/mesh_records.h"

namespace orvmesh::embedded {

// How far apart coincident nodes may lie, in the file's own lengths: 1e-6 of the diagonal of the box around
// the nodes that an element or a surface element uses. A stray node does not widen it.
double weldTolerance(const MeshModel& model);

}  // namespace orvmesh::embedded
