#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "import/msh_mesh.h"
#include "import/roles.h"
#include "import/roles_file.h"

namespace orvmesh::importing {

// A physical group that has elements.
struct Group {
  int dimension;
  std::int32_t tag;
  std::string name;
  std::uint64_t elements;
  Role role;
  std::string label() const;  // "volume group 'part'"
};

// What the groups and the element sets of a mesh stand for.
struct GroupRoles {
  std::vector<Group> groups;  // ascending by dimension and tag
  std::vector<Role> ofSet;    // by set, for volumes and surfaces: their one role, or ignore

  const Group& find(int dimension, std::int32_t tag) const;
  // By name or as "DIMENSION:TAG"; null when the mesh has no elements of such a group.
  const Group* find(const std::string& nameOrPair) const;
};

// Fails for groups of no known role, volumes of no or several roles and elements that no block takes.
GroupRoles assignRoles(const MshMesh& mesh, const RolesFile& roles);

}  // namespace orvmesh::importing
