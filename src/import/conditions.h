#pragma once

#include <cstdint>
#include <vector>

#include "import/group_roles.h"
#include "import/roles_file.h"

namespace orvmesh::importing {

// A boundary condition on one node, as it is written.
struct NodeCondition {
  std::int32_t node;
  std::int32_t type;
  float value;
};

// The conditions of the roles file, node by node; those of a group on all corner nodes of its elements,
// ascending. Fails for a group or a node that the mesh does not have.
std::vector<NodeCondition> listConditions(const MshMesh& mesh, const GroupRoles& groups,
                                          const RolesFile& roles);

}  // namespace orvmesh::importing
