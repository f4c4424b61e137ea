#include "transfer/blocks/geometry_blocks.h"

#include <algorithm>

#include "transfer/blocks/mesh_blocks.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

using WriteEntry = int (OFEIO_Manipulator::*)(int, float, float, float, const int[4], int, int);

void writeGeometry(COrvSolverMeshWriter& worker, const Geometry& geometry, OFEHeaderField firstCount,
                   WriteEntry write) {
  const auto points = static_cast<std::int32_t>(geometry.points.size());
  const auto faces = static_cast<std::int32_t>(geometry.faces.size());
  worker.setCounts(firstCount, {points, faces, points + faces});
  const float r = inverseLengthFactor(worker);
  const int none[4] = {};
  for (const GeometryPoint& point : geometry.points)
    (worker.writer.*write)(1, static_cast<float>(point.x) * r, static_cast<float>(point.y) * r,
                           static_cast<float>(point.z) * r, none, 0, 0);
  for (const GeometryFace& face : geometry.faces) {
    int nodes[4] = {};
    std::copy_n(face.nodes, std::clamp(face.nodeCount, 0, 4), nodes);
    (worker.writer.*write)(0, 0, 0, 0, nodes, face.faceCodeA, face.faceCodeB);
  }
}

}  // namespace

void WriteOfeMoldInsertDataBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Mold Insert Data");
  writeGeometry(worker, worker.model().moldInsert, m_HEADER_NMIPoint,
                &OFEIO_Manipulator::writeMoldMetalBlockEntry);
}

void WriteOfeCoolingChannelSurfaceBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Cooling Channel Surface Bin Data");
  writeGeometry(worker, worker.model().channelSurface, m_HEADER_NCCSurfacePoint,
                &OFEIO_Manipulator::writeCoolingChannelSurfaceEntry);
}

}  // namespace orvmesh::transfer
