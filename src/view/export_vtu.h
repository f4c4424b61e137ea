#pragma once

#include <cstdint>
#include <string>

namespace orvmesh::view {

struct VtuExport {
  std::string surfacePath;
  std::int64_t cells = 0, surfaces = 0;
};

// Writes an OFE file as two VTK XML files (raw appended data): the volume elements to vtuPath, the surface
// elements to "NAME_surfaces.vtu" beside it. Coordinates are in model units. Throws Failure; neither file is
// touched before both are complete.
VtuExport exportVtu(const std::string& ofePath, const std::string& vtuPath);

}  // namespace orvmesh::view
