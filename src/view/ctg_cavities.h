#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "view/ctg_mesh.h"

namespace orvmesh::view {

// A CTG mesh as the cavity operations of the transfer object take it: arrays that count from 1, entry 0
// unused.
struct CtgCavities {
  std::vector<double> x, y, z;
  std::vector<std::int32_t> faceNodeCount, faceNodes, owner, neighbour;
  std::vector<std::int32_t> cellCavity, cavityNumber, cavityKind;
  std::vector<std::int32_t> inletID, inletGroup;
};

// Elements of one property make a cavity, its number being the property; those named are channels. An element
// that makes a face owns it. Each coolant boundary whose number is a channel group makes an inlet, numbered
// 1, 2, ... in the order of these groups. Coordinates are
// multiplied by scale. For a mesh that checkCtg has passed; throws Failure when no element
// has a property that is named.
CtgCavities cavitiesOf(const CtgMesh& mesh, std::span<const std::int32_t> channels, double scale = 1);

}  // namespace orvmesh::view
