#include "transfer/prepass/traces.h"

#include <array>

#include "transfer/prepass/results.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {

void traceNodeTyping(COrvSolverMeshWriter& worker) {
  if (worker.m_DebugLog == 0 || !worker.found.nodeTyping) return;
  const NodeTyping& typing = *worker.found.nodeTyping;
  std::array<std::int32_t, 13> counts{};
  for (std::int32_t n = 1; n <= typing.type.count(); ++n) ++counts[static_cast<std::size_t>(typing.type[n])];
  for (std::size_t k = 1; k < counts.size(); ++k) worker.trace("Type ", k, " = ", counts[k]);
  worker.trace("Part insert Element = ", typing.insertElements);
}

void traceGroups(COrvSolverMeshWriter& worker) {
  const HeaterGroups& groups = *worker.found.heaters;
  worker.trace("Heater Element = ", groups.heaterElements, ",Coolant Element = ", groups.coolantElements);
  worker.trace("Heater Group = ", groups.heaterGroups, ",Coolant Group = ", groups.coolantGroups);
}

void traceHeaterFaces(COrvSolverMeshWriter& worker) {
  const HeaterFaces& faces = worker.found.heaterFaces;
  worker.trace("NFaceHeaterWall=", faces.wall);
  for (const char* never : {"NFaceCCWall=", "NFaceCCInlet=", "NFaceCCOutlet=", "NFaceCCOthers="})
    worker.trace(never, 0);
  worker.trace("NFaceHeaterOthers=", faces.other);
}

void traceChannelNodes(COrvSolverMeshWriter& worker, const ChannelNodeLists& lists) {
  // The last label says air, its value counts heater faces (quirk 14).
  worker.trace("Check CCNodecount=", lists.nodes[0].size(), "Check HRnodecount=", lists.nodes[1].size(),
               "Check HRAircount=", lists.nodes[3].size());
}

}  // namespace orvmesh::transfer
