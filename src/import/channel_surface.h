#pragma once

#include "import/roles_file.h"
#include "import/surfaces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// Walls and ends of the coolant channels as an outline: their nodes as points, ascending, and a face per
// surface element with channel group and interface as its codes.
Outline outlineChannels(const VolumeMesh& volumes, const Surfaces& surfaces);

}  // namespace orvmesh::importing
