#include "import/conditions.h"

#include <algorithm>

#include "base/failure.h"
#include "base/nearest_name.h"

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

[[noreturn]] void failUnknown(const GroupRoles& groups, const RolesFile& roles,
                              const RolesFile::Condition& condition) {
  std::vector<std::string_view> names;
  for (const auto& group : groups.groups) names.emplace_back(group.name);
  throw Failure(roles.path, condition.path + ".group: the mesh has no elements of group '" + condition.group +
                                "'; the nearest name is '" +
                                std::string(nearestName(condition.group, names)) + "'");
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
    if (group == nullptr) failUnknown(groups, roles, condition);
    for (const auto node : nodesOf(mesh, *group)) list.push_back({node, condition.type, condition.value});
  }
  return list;
}

}  // namespace orvmesh::importing
