#include "view/ofv_read.h"

#include <algorithm>

#include "base/failure.h"

namespace orvmesh::view {
namespace {

void findBox(const OFVMesh& mesh, OfvSummary& found) {
  for (std::size_t d = 0; d < 3 && !mesh.xyz.empty(); ++d) {
    found.boxMin[d] = found.boxMax[d] = mesh.xyz[d];
    for (std::size_t i = d; i < mesh.xyz.size(); i += 3) {
      found.boxMin[d] = std::min(found.boxMin[d], mesh.xyz[i]);
      found.boxMax[d] = std::max(found.boxMax[d], mesh.xyz[i]);
    }
  }
}

}  // namespace

OfvFile::OfvFile(const std::string& path) {
  if (reader_.open(path.c_str()) != 1) throw Failure(path, reader_.errorText());
  if (const auto fault = faultOfRelations(mesh()); !fault.empty()) throw Failure(path, fault);
}

bool looksLikeOfv(const std::string& path) {
  return path.ends_with(".ofv") || COrvOFVReader::isOFV(path.c_str());
}

OfvSummary summaryOf(const OFVMesh& mesh) {
  OfvSummary found;
  findBox(mesh, found);
  found.cells.resize(mesh.cavityNumber.size());
  found.volumes = cavityVolumes(mesh);
  for (const std::int32_t cavity : mesh.cellCavity) ++found.cells[static_cast<std::size_t>(cavity) - 1];
  found.boundaryFaces = std::count(mesh.neighbour.begin(), mesh.neighbour.end(), 0);
  found.interiorFaces = mesh.faceCount() - found.boundaryFaces;
  return found;
}

}  // namespace orvmesh::view
