#include "import/layers.h"

#include <algorithm>

#include "base/failure.h"
#include "base/ranges.h"

namespace orvmesh::importing {
namespace {

void append(std::vector<Layer>& layers, std::int32_t material, const RolesFile::LayerName& name) {
  layers.push_back({material, static_cast<std::int32_t>(layers.size()) + 1, name.name, name.flag});
}

void requireVolumes(const VolumeMesh& volumes, const RolesFile& roles) {
  for (const auto& [role, name] : roles.layerNames) {
    const auto at = std::find_if(volumes.components.begin(), volumes.components.end(),
                                 [&, wanted = role](const Component& c) { return c.role == wanted; });
    if (at == volumes.components.end() || blockOf(role.kind) == Block::plastic)
      throw Failure(roles.path, "layerNames." + textOf(role) +
                                    (at == volumes.components.end() ? ": the mesh has no such volumes"
                                                                    : ": plastic has no layers"));
  }
}

}  // namespace

Layers listLayers(const VolumeMesh& volumes, const RolesFile& roles) {
  requireVolumes(volumes, roles);
  Layers layers;
  for (const auto& component : volumes.components) {
    const auto& role = component.role;
    const auto named = roles.layerNames.find(role);
    const auto name = named == roles.layerNames.end() ? RolesFile::LayerName{} : named->second;
    if (blockOf(role.kind) == Block::mold) append(layers.mold, role.number, name);
    if (role.kind == RoleKind::insert) append(layers.insert, role.number, name);
    if (role.kind == RoleKind::coolant) append(layers.channel, role.number, name);
    if (role.kind == RoleKind::heater) append(layers.channel, kHeaterMaterial + role.number, name);
  }
  return layers;
}

}  // namespace orvmesh::importing
