#pragma once

#include <cstdint>
#include <string>
#include <unordered_map>
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
  bool carries;               // the roles file puts conditions on it
  std::string label() const;  // "volume group 'part'"
};

// What the groups and the element sets of a mesh stand for.
struct GroupRoles {
  std::vector<Group> groups;  // ascending by dimension and tag
  std::vector<Role> ofSet;    // by set, for volumes and surfaces: their one role, or ignore
  // Positions of groups by name and by "DIMENSION:TAG".
  std::unordered_map<std::string, std::vector<std::size_t>> byKey;

  const Group& find(int dimension, std::int32_t tag) const;
  // By name or as "DIMENSION:TAG"; null when the mesh has no elements of such a group.
  const Group* find(const std::string& nameOrPair) const;
  // All groups of that name, of any dimension.
  std::vector<const Group*> findAll(const std::string& nameOrPair) const;
  // Says that the roles file names a group of which the mesh has no elements, and the nearest one.
  [[noreturn]] void failUnknown(const RolesFile& roles, const std::string& where,
                                const std::string& nameOrPair) const;
};

// Fails for groups of no known role, volumes of no or several roles and elements that no block takes.
GroupRoles assignRoles(const MshMesh& mesh, const RolesFile& roles);

}  // namespace orvmesh::importing
