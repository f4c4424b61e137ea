#include "transfer/blocks/mesh_blocks.h"

#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

using WriteBad = int (OFEIO_Manipulator::*)(int, int);

void writeBad(COrvSolverMeshWriter& worker, const std::vector<BadElement>& list, OFEHeaderField count,
              WriteBad write) {
  worker.setCounts(count, {static_cast<std::int32_t>(list.size())});
  for (const BadElement& bad : list) (worker.writer.*write)(bad.elementNo, bad.code);
}

}  // namespace

float inverseLengthFactor(const COrvSolverMeshWriter& worker) {
  return 1.0F / static_cast<float>(worker.model().lengthFactor);
}

void writeNodes(COrvSolverMeshWriter& worker) {
  worker.trace("/// Writing Node ///");
  worker.banner("Writing Node");
  const float k = inverseLengthFactor(worker);
  const NodeTable& nodes = worker.model().nodes;
  for (std::int32_t n = 1; n <= nodes.count(); ++n) {
    const COFE_Node node = nodes[n];
    worker.writer.writeNodeBlockEntry(static_cast<float>(node.x) * k, static_cast<float>(node.y) * k,
                                      static_cast<float>(node.z) * k);
  }
}

void writeBadPlastic(COrvSolverMeshWriter& worker) {
  writeBad(worker, worker.found.bad.plastic, m_HEADER_NBadP,
           &OFEIO_Manipulator::writeBadElementPlasticBlockEntry);
}
void writeBadMoldBase(COrvSolverMeshWriter& worker) {
  writeBad(worker, worker.found.bad.mold, m_HEADER_NBadM,
           &OFEIO_Manipulator::writeBadElementMoldBaseBlockEntry);
}
void writeBadChannel(COrvSolverMeshWriter& worker) {
  writeBad(worker, worker.found.bad.channel, m_HEADER_NBadC,
           &OFEIO_Manipulator::writeBadElementCoolChannelBlockEntry);
}

void writePartingDirection(COrvSolverMeshWriter& worker) {
  const auto& direction = worker.model().partingDirection;
  worker.writer.writePartingDirectionBlockEntry(
      static_cast<float>(direction[0]), static_cast<float>(direction[1]), static_cast<float>(direction[2]));
}

}  // namespace orvmesh::transfer
