#include "import/channel_surface.h"

#include <algorithm>

namespace orvmesh::importing {

Outline outlineChannels(const VolumeMesh& volumes, const Surfaces& surfaces) {
  Outline outline;
  std::vector<std::int32_t> pointOfNode(static_cast<std::size_t>(volumes.mesh().nodeCount()) + 1);
  const auto pointOf = [&](std::int32_t node) -> std::int32_t& {
    return pointOfNode[static_cast<std::size_t>(node)];
  };
  for (auto k = surfaces.begin(3); k < surfaces.end(4); ++k) {
    const auto& surface = surfaces.faces[k];
    const auto& role = volumes.componentOf(surface.element).role;
    if (role.kind != RoleKind::coolant) continue;
    outline.faces.push_back({{}, {role.number, surface.interfaceId}});
    std::copy_n(surface.nodes, 4, outline.faces.back().nodes.begin());
    for (const auto node : surface.nodes) pointOf(node) = 1;
  }
  const float* xyz = volumes.mesh().xyz.data();
  for (std::size_t node = 1; node < pointOfNode.size(); ++node, xyz += 3) {
    if (pointOfNode[node] == 0) continue;
    outline.points.push_back({xyz[0], xyz[1], xyz[2]});
    pointOfNode[node] = static_cast<std::int32_t>(outline.points.size());
  }
  for (auto& face : outline.faces)
    for (auto& node : face.nodes) node = pointOf(node);
  return outline;
}

}  // namespace orvmesh::importing
