#pragma once

#include <cstdint>

class COrvSolverMeshWriter;

// The layer tables.
namespace orvmesh::transfer {

void WriteOfeMoldMetalLayerBin(COrvSolverMeshWriter& worker);
void WriteOfeMoldMetalLayerToPartInsertLayerBin(COrvSolverMeshWriter& worker);
void WriteOfePartInsertLayerBin(COrvSolverMeshWriter& worker);
void WriteOfeCoolantChannelLayerBin(COrvSolverMeshWriter& worker);

// Material of a mold metal as a part-insert layer of the mold-base mesh. The ranges are not those of the
// elements (quirk 21).
std::int32_t insertLayerMaterial(std::int32_t material);

}  // namespace orvmesh::transfer
