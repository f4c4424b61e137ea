#pragma once

class COrvSolverMeshWriter;

// The small blocks that every variant writes alike.
namespace orvmesh::transfer {

// Every node of the source, divided by the length factor.
void writeNodes(COrvSolverMeshWriter& worker);
void writeBadPlastic(COrvSolverMeshWriter& worker);
void writeBadMoldBase(COrvSolverMeshWriter& worker);
void writeBadChannel(COrvSolverMeshWriter& worker);
void writePartingDirection(COrvSolverMeshWriter& worker);

// What the target's lengths are multiplied with, in single precision.
float inverseLengthFactor(const COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
