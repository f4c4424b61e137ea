#pragma once

class COrvSolverMeshWriter;

// Coolant channel diameters, lines and layout.
namespace orvmesh::transfer {

void WriteOfeElemCCLBin(COrvSolverMeshWriter& worker);
void WriteOfeElemCCLineBin(COrvSolverMeshWriter& worker);
void WriteOfeBeamElemCCLBin(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
