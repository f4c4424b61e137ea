#pragma once

#include <cstdint>
#include <vector>

#include "platform/ofv_mesh.h"

namespace orvmesh::transfer {

// The arrays of a finite-volume mesh, owned.
struct CavityArrays {
  std::vector<double> xyz;
  std::vector<std::int64_t> faceOffsets;
  std::vector<std::int32_t> faceNodes, owner, neighbour;
  std::vector<std::int32_t> cellCavity, cavityNumber, cavityKind;
  std::vector<std::int32_t> inletID, inletGroup;

  OFVMesh mesh() const {
    return {xyz,        faceOffsets,  faceNodes,  owner,   neighbour,
            cellCavity, cavityNumber, cavityKind, inletID, inletGroup};
  }
};

// The cells of the cavities that are channels, with their faces, points and cavities, numbered without gaps
// in the order of the source; all inlets. A face between a channel and another cell becomes a boundary face
// of the channel cell.
CavityArrays channelsOf(const OFVMesh& mesh);

}  // namespace orvmesh::transfer
