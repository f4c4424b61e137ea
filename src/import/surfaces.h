#pragma once

#include <cstdint>
#include <vector>

#include "import/named_faces.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// One surface element as it is written.
struct Surface {
  std::int32_t nodes[4];  // a triangle repeats its third
  std::int32_t interfaceId;
  std::int32_t ownerCode;
  std::int32_t contactCode;
  std::int32_t boundaryType;
  std::int32_t elementNo;
  std::uint32_t tag;
  std::int32_t element;  // its owner, counted over all volume elements
  RoleKind named;        // ignore where no surface group names it
};

struct Surfaces {
  std::vector<Surface> faces;  // by interface (2, 1, 3, 4), owner, face
  std::uint64_t overlaps = 0;
  std::uint64_t partOnMold = 0;  // part and hot-runner faces with a mold element behind them
  std::uint64_t gates = 0;
  std::uint64_t meltInlets = 0;
  // Positions of the faces of an interface 1..4.
  std::size_t begin(int interfaceId) const;
  std::size_t end(int interfaceId) const;

 private:
  std::size_t firstAt(std::uint64_t place) const;
};

// The boundary of the volume mesh as component surfaces. End codes of channel ends are set for named ends
// only (see channel_ends.h).
Surfaces deriveSurfaces(const VolumeMesh& volumes, NamedFaces& named);

}  // namespace orvmesh::importing
