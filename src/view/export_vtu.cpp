#include "view/export_vtu.h"

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
  const VolumeGrid volume(data.model());
  const SurfaceGrid surface(data.model());
  const VtuGrid volumeGrid = volume.grid();
  const VtuGrid surfaceGrid = surface.grid();
  VtuExport done{surfacePathOf(vtuPath), static_cast<std::int64_t>(volumeGrid.cells),
                 static_cast<std::int64_t>(surfaceGrid.cells)};
  GridFile volumeFile(volumeGrid, vtuPath);
  GridFile surfaceFile(surfaceGrid, done.surfacePath);
  surfaceFile.commit();
  volumeFile.commit();
  return done;
}

}  // namespace orvmesh::view
