#pragma once

#include <string>
#include <vector>

#include "import/channel_ends.h"
#include "import/conditions.h"
#include "import/element_repair.h"
#include "import/roles_file.h"
#include "import/sensors.h"
#include "import/surface_names.h"
#include "import/surfaces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// Everything that an imported mesh consists of.
struct ComponentMesh {
  const VolumeMesh& volumes;
  const Surfaces& surfaces;
  const Channels& channels;
  const std::vector<PlacedSensor>& sensors;
  const std::vector<NodeCondition>& conditions;
  const SurfaceNames& names;
  const std::vector<FoundBadElement>& bad;
  const RolesFile& roles;
  float scale;
};

// Writes the OFE file; it appears whole or not at all.
void writeOfe(const ComponentMesh& mesh, const std::string& target);

}  // namespace orvmesh::importing
