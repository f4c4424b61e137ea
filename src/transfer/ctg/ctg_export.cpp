#include "transfer/ctg/ctg_export.h"

#include "transfer/ctg/ctg_writer.h"

namespace orvmesh::transfer {
namespace {

ExportedNodes numberNodes(COrvSolverMeshWriter& worker) {
  const MeshModel& model = worker.model();
  ExportedNodes nodes = numberExportedNodes(model.elemM, model.nodes.count());
  worker.print("NewMaxNode = ", nodes.count, ",OriMaxNode=", model.nodes.count());
  return nodes;
}

BoundaryNodes countBoundaryNodes(COrvSolverMeshWriter& worker) {
  const MeshModel& model = worker.model();
  BoundaryNodes nodes = findBoundaryNodes(model.surfaces, model.nodes.count());
  worker.print("NPartBCNode = ", nodes.surfaces.part, ",NAirBCNode", nodes.surfaces.air, ",NCoolantBCNode",
               nodes.surfaces.coolant, ",ElemS=", model.surfaces.count());
  return nodes;
}

void constructFaces(COrvSolverMeshWriter& worker, CtgMesh& mesh) {
  const MeshModel& model = worker.model();
  mesh.faces = matchElementFaces(model.elemM, model.nodes.count());
  for (std::int32_t i = 0; i < mesh.faces.skipped; ++i) worker.print("Wrong Element Face");
  worker.print("new nface = ", mesh.faces.faceCount);
  mesh.boundaryFaces = findBoundaryFaces(model.elemM, mesh.faces, mesh.boundaryNodes.type);
  const BoundaryCounts& counts = mesh.boundaryFaces.faces;
  worker.print("PartBCFace = ", counts.part, ",CoolBCFace = ", counts.coolant, ",AirBCFace = ", counts.air);
}

std::int32_t countBoundaryNodesLeftOut(const CtgMesh& mesh) {
  std::int32_t count = 0;
  for (std::int32_t n = 1; n <= mesh.boundaryNodes.type.count(); ++n)
    count += mesh.boundaryNodes.type[n] > 0 && mesh.nodes.newNumber[n] == 0 ? 1 : 0;
  return count;
}

std::string warningsOf(const CtgMesh& mesh) {
  const auto number = [](std::int32_t n) { return std::to_string(n); };
  std::string lines;
  const std::int32_t all = mesh.model.nodes.count();
  if (mesh.model.elemM.count() == 0) lines += "there is no mold element to export\n";
  if (const std::int32_t left = all - mesh.nodes.count; left > 0)
    lines +=
        number(left) + " of " + number(all) +
        " nodes belong to no mold element and are not exported; [Face] names nodes by their old numbers, "
        "[Element Node] by their new ones\n";
  if (const std::int32_t left = countBoundaryNodesLeftOut(mesh); left > 0)
    lines += number(left) + " boundary nodes belong to no mold element; they are listed as node 0\n";
  if (mesh.faces.skipped > 0)
    lines += number(mesh.faces.skipped) + " mold elements have no faces (legal: 4, 5, 6 or 8 nodes)\n";
  if (mesh.faces.collapsed > 0)
    lines += number(mesh.faces.collapsed) + " faces name a node twice; readers may refuse their elements\n";
  if (mesh.faces.crowded > 0)
    lines +=
        number(mesh.faces.crowded) +
        " faces belong to a third element or more (equal or overlapping elements); readers may refuse them\n";
  if (mesh.boundaryNodes.surfaces.part > 0 && mesh.boundaryFaces.faces.part == 0)
    lines += number(mesh.boundaryNodes.surfaces.part) +
             " surface elements of the part, but no plastic face: later surface elements took their nodes\n";
  return lines;
}

}  // namespace

CtgOutcome exportCtg(COrvSolverMeshWriter& worker, const std::string& path) {
  CtgMesh mesh{worker.model(), numberNodes(worker), countBoundaryNodes(worker), {}, {}};
  if (const auto faces = countElementFaces(worker.model().elemM); faces > kMostElementFaces)
    return {worker.path() + ": its mold elements have " + std::to_string(faces) + " faces (legal: at most " +
                std::to_string(kMostElementFaces) + ")",
            {}};
  constructFaces(worker, mesh);
  CtgOutcome outcome{writeCtg(mesh, path), warningsOf(mesh)};
  if (!outcome.error.empty()) outcome.error.insert(0, path + ": ");
  return outcome;
}

}  // namespace orvmesh::transfer
