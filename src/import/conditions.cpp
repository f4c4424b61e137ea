#include "import/conditions.h"

#include <algorithm>

#include "base/failure.h"

namespace orvmesh::importing {
namespace {

std::vector<std::int32_t> nodesOf(const MshMesh& mesh, const Group& group) {
  std::vector<std::uint8_t> marked(static_cast<std::size_t>(mesh.nodeCount()) + 1);
  for (const auto& run : mesh.runs) {
    const auto& set = mesh.sets[run.set];
    const auto tags = mesh.groupsOf(set);
    if (set.dimension != group.dimension || !run.type->taken()) continue;
    if (std::find(tags.begin(), tags.end(), group.tag) == tags.end()) continue;
    const auto corners = static_cast<std::size_t>(cornersOf(run.type->shape)) * run.count;
    for (const auto node : std::span(mesh.cornersOfElement(run, 0), corners))
      marked[static_cast<std::size_t>(node)] = 1;
  }
  std::vector<std::int32_t> nodes;
  for (std::int32_t node = 1; node <= mesh.nodeCount(); ++node)
    if (marked[static_cast<std::size_t>(node)] != 0) nodes.push_back(node);
  return nodes;
}

}  // namespace

std::vector<NodeCondition> listConditions(const MshMesh& mesh, const GroupRoles& groups,
                                          const RolesFile& roles) {
  std::vector<NodeCondition> list;
  for (const auto& condition : roles.conditions) {
    if (condition.group.empty()) {
      const auto node = mesh.tags.numberOf(condition.node);
      if (node == 0)
        throw Failure(roles.path,
                      condition.path + ".node: the mesh has no node " + std::to_string(condition.node));
      list.push_back({node, condition.type, condition.value});
      continue;
    }
    const auto* group = groups.find(condition.group);
    if (group == nullptr) groups.failUnknown(roles, condition.path + ".group", condition.group);
    for (const auto node : nodesOf(mesh, *group)) list.push_back({node, condition.type, condition.value});
  }
  return list;
}

}  // namespace orvmesh::importing
