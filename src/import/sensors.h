#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "import/surfaces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// A sensor as it is written.
struct PlacedSensor {
  std::int32_t type;
  std::int32_t display;
  Position position;
  std::array<std::int32_t, 4> ids;
};

// The sensors of point groups and of the roles file by type and display number, not yet placed. Fails for a
// group of several points and for a sensor that stands twice.
std::vector<PlacedSensor> listSensors(const MshMesh& mesh, const GroupRoles& groups, const RolesFile& roles);

// Places them on their elements, nodes and surfaces: an element sensor on the element that holds its point,
// else on the one nearest to it at the nearest node. Fails where the mesh has nothing of the kind to sit on.
void placeSensors(const VolumeMesh& volumes, const Surfaces& surfaces, std::vector<PlacedSensor>& sensors);

}  // namespace orvmesh::importing
