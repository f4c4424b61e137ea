#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "import/group_roles.h"
#include "import/surfaces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// Which boundary-condition names stand on which surface elements.
struct SurfaceNames {
  std::vector<std::int32_t> surfaces;  // numbers of those that carry any, ascending
  std::vector<std::size_t> ends;       // of their lists in names
  std::vector<std::int32_t> names;     // numbers of names, ascending in each list
  std::uint64_t facesWithout = 0;      // of surface groups: no surface element lies there

  std::span<const std::int32_t> list(std::size_t k) const {
    const auto begin = k == 0 ? 0 : ends[k - 1];
    return std::span(names).subspan(begin, ends[k] - begin);
  }
};

// Puts the names of the roles file on the surface elements of their groups: of a volume group on all that its
// elements own, of a surface group on the one that lies on each of its faces (where there are two, the
// part's, else the mold's). Fails for groups that the mesh does not have or that have no surface element.
SurfaceNames placeNames(const VolumeMesh& volumes, const Surfaces& surfaces, const GroupRoles& groups,
                        const RolesFile& roles);

}  // namespace orvmesh::importing
