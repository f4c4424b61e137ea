#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "import/group_roles.h"
#include "import/msh_mesh.h"

namespace orvmesh::importing {

// Sorted node numbers of a face; a triangle's last is 0.
using FaceNodes = std::array<std::int32_t, 4>;
FaceNodes sortedNodes(const std::int32_t* nodes, bool triangle);

// The triangles and quadrilaterals of surface groups that name channel ends and gates.
class NamedFaces {
 public:
  // Fails where one face has two names.
  NamedFaces(const MshMesh& mesh, const GroupRoles& roles, std::int32_t nodeCount);

  // The role of the face with these nodes (a triangle repeats its third), and marks it as found; null when it
  // has none or one that does not suit.
  const Role* find(const std::int32_t (&nodes)[4], bool (*suits)(RoleKind));
  // Fails for a named face that was never found.
  void requireAllFound() const;
  std::size_t count() const { return faces_.size(); }

 private:
  struct Face {
    FaceNodes nodes;
    Role role;
    std::uint64_t tag;
    bool found;
  };
  void collect(const MshMesh& mesh, const ElementRun& run, const Role& role);
  void sortAndCompare();
  std::string label(const Face& face) const;

  std::string path_;
  std::vector<Face> faces_;           // ascending by nodes
  std::vector<std::uint8_t> marked_;  // by node: whether any face has it
};

}  // namespace orvmesh::importing
