#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "platform/mesh_records.h"
#include "view/nodal_array.h"

namespace orvmesh::view {

struct VtuExport {
  std::string surfacePath;
  std::int64_t cells = 0, surfaces = 0;
};

// Writes an OFE file as two VTK XML files (raw appended data): the volume elements to vtuPath, the surface
// elements to "NAME_surfaces.vtu" beside it. Coordinates are in model units. Throws Failure; neither file is
// touched before both are complete.
VtuExport exportVtu(const std::string& ofePath, const std::string& vtuPath);
// The same of a model in memory; both files carry the values of their nodes as point arrays.
VtuExport exportVtu(const MeshModel& model, const std::string& vtuPath, std::span<const NodalArray> nodal);

}  // namespace orvmesh::view
