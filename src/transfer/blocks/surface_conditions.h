#pragma once

class COrvSolverMeshWriter;

// Boundary-condition lists of surfaces and the names of the conditions.
namespace orvmesh::transfer {

void WriteOfeSurfElemBCBin(COrvSolverMeshWriter& worker);
void WriteOfeSurfElemBCNameBin(COrvSolverMeshWriter& worker);
void WriteOfeSurfElemBCNameBin_HotRunner(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
