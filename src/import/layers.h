#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "import/roles_file.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

struct Layer {
  std::int32_t material;
  std::int32_t layer;  // 1, 2, ...
  std::string name;
  std::int32_t flag;
};

// The layer tables: one row per mold material, per insert material and per channel group; the material of a
// heater group is 10900 + group.
struct Layers {
  std::vector<Layer> mold, insert, channel;
};

// Fails for a layer name of volumes that the mesh does not have.
Layers listLayers(const VolumeMesh& volumes, const RolesFile& roles);

}  // namespace orvmesh::importing
