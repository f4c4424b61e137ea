#include "view/ofv_read.h"

#include <algorithm>
#include <cstdio>

#include "base/element_volume.h"
#include "base/failure.h"

namespace orvmesh::view {
namespace {

Vector pointAt(const OFVMesh& mesh, std::int32_t n) {
  const double* p = mesh.xyz.data() + 3 * (static_cast<std::size_t>(n) - 1);
  return {p[0], p[1], p[2]};
}

// Of the pyramid between the face, as a fan of triangles, and the origin.
double pyramidVolume(const OFVMesh& mesh, std::span<const std::int32_t> nodes, const Vector& origin) {
  double sixths = 0;
  const Vector first = pointAt(mesh, nodes[0]) - origin;
  for (std::size_t k = 2; k < nodes.size(); ++k)
    sixths += determinant(first, pointAt(mesh, nodes[k - 1]) - origin, pointAt(mesh, nodes[k]) - origin);
  return sixths / 6;
}

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
  const auto cavities = static_cast<std::size_t>(mesh.cavityCount());
  found.cells.resize(cavities);
  found.volumes.resize(cavities);
  const auto cavityOf = [&](std::int32_t cell) {
    return static_cast<std::size_t>(mesh.cellCavity[static_cast<std::size_t>(cell) - 1]) - 1;
  };
  for (std::int32_t cell = 1; cell <= mesh.cellCount(); ++cell) ++found.cells[cavityOf(cell)];
  for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
    const double volume = pyramidVolume(mesh, mesh.nodes(f), found.boxMin);
    found.volumes[cavityOf(mesh.owner[f])] += volume;
    if (mesh.neighbour[f] != 0) found.volumes[cavityOf(mesh.neighbour[f])] -= volume;
    ++(mesh.neighbour[f] != 0 ? found.interiorFaces : found.boundaryFaces);
  }
  return found;
}

}  // namespace orvmesh::view
