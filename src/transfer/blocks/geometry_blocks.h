#pragma once

class COrvSolverMeshWriter;

// Points and faces that are carried along: mold inserts and cooling channel surfaces.
namespace orvmesh::transfer {

void WriteOfeMoldInsertDataBin(COrvSolverMeshWriter& worker);
void WriteOfeCoolingChannelSurfaceBin(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
