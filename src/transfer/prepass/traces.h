#pragma once

class COrvSolverMeshWriter;

// Diagnostic lines about what the pre-passes found.
namespace orvmesh::transfer {

struct ChannelNodeLists;

void traceNodeTyping(COrvSolverMeshWriter& worker);
void traceGroups(COrvSolverMeshWriter& worker);
void traceHeaterFaces(COrvSolverMeshWriter& worker);
void traceChannelNodes(COrvSolverMeshWriter& worker, const ChannelNodeLists& lists);

}  // namespace orvmesh::transfer
