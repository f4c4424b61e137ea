#include "view/export_vtu.h"

#include <stdexcept>

#include "base/failure.h"
#include "platform/cofedata.h"
#include "view/grids.h"

namespace orvmesh::view {
namespace {

std::string surfacePathOf(const std::string& path) {
  constexpr std::string_view kSuffix = ".vtu";
  const std::string stem = path.ends_with(kSuffix) ? path.substr(0, path.size() - kSuffix.size()) : path;
  return stem + "_surfaces.vtu";
}

// A grid's file, complete under a temporary name until it is committed.
class GridFile {
 public:
  GridFile(const VtuGrid& grid, std::string path) : path_(std::move(path)) {
    if (!file_.open(path_)) throw Failure(path_, file_.errorText());
    writeVtu(grid, file_, path_);
  }
  void commit() {
    if (!file_.commit()) throw Failure(path_, file_.errorText());
  }

 private:
  std::string path_;
  AtomicFile file_;
};

}  // namespace

VtuExport exportVtu(const std::string& ofePath, const std::string& vtuPath) {
  COFEData data;
  if (data.ReadDataBin(ofePath.c_str(), nullptr, 0, false) != 1) throw Failure(ofePath, data.errorText());
  return exportVtu(data.model(), vtuPath, {});
}

VtuExport exportVtu(const MeshModel& model, const std::string& vtuPath, std::span<const NodalArray> nodal) {
  for (const NodalArray& array : nodal)
    if (array.values.size() != static_cast<std::size_t>(model.nodes.count()) + 1)
      throw std::invalid_argument(array.name + ": needs a value for every node");
  const VolumeGrid volume(model);
  const SurfaceGrid surface(model);
  const VtuGrid volumeGrid = volume.grid(nodal);
  const VtuGrid surfaceGrid = surface.grid(nodal);
  VtuExport done{surfacePathOf(vtuPath), static_cast<std::int64_t>(volumeGrid.cells),
                 static_cast<std::int64_t>(surfaceGrid.cells)};
  GridFile volumeFile(volumeGrid, vtuPath);
  GridFile surfaceFile(surfaceGrid, done.surfacePath);
  surfaceFile.commit();
  volumeFile.commit();
  return done;
}

}  // namespace orvmesh::view
