#pragma once

class COrvSolverMeshWriter;

// The sensor block, in the form of each variant.
namespace orvmesh::transfer {

// Joined variants: one or the other, by header field 2 of the source.
void WriteOfeSensorBin(COrvSolverMeshWriter& worker);
void WriteOfeSensorBin_Unsplit(COrvSolverMeshWriter& worker);
void writeJoinedSensors(COrvSolverMeshWriter& worker);

void WriteOfeSensorBin_OnlyMoldbase(COrvSolverMeshWriter& worker);

// Variants without a sensor block: lists them all as dropped.
void dropSensors(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
