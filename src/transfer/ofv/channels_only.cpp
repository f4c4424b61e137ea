#include <algorithm>

#include "base/one_based.h"
#include "transfer/ofv/cavity_arrays.h"

namespace orvmesh::transfer {
namespace {

// New numbers of what is kept, 0 for the rest.
using Numbers = OneBasedArray<std::int32_t>;

Numbers numberWhere(std::int32_t count, const auto& isKept) {
  Numbers numbers(count);
  std::int32_t last = 0;
  for (std::int32_t i = 1; i <= count; ++i)
    if (isKept(i)) numbers[i] = ++last;
  return numbers;
}

std::size_t place(std::int32_t i) { return static_cast<std::size_t>(i) - 1; }

class Extraction {
 public:
  explicit Extraction(const OFVMesh& mesh)
      : mesh_(mesh),
        cavities_(numberWhere(mesh.cavityCount(),
                              [&](auto i) { return mesh.cavityKind[place(i)] == kCavityChannel; })),
        cells_(
            numberWhere(mesh.cellCount(), [&](auto i) { return cavities_[mesh.cellCavity[place(i)]] != 0; })),
        points_(mesh.pointCount()) {}

  CavityArrays take() {
    takeCavitiesAndCells();
    takePoints();
    takeFaces();
    kept_.inletID.assign(mesh_.inletID.begin(), mesh_.inletID.end());
    kept_.inletGroup.assign(mesh_.inletGroup.begin(), mesh_.inletGroup.end());
    return std::move(kept_);
  }

 private:
  void takeCavitiesAndCells() {
    for (std::int32_t i = 1; i <= mesh_.cavityCount(); ++i) {
      if (cavities_[i] == 0) continue;
      kept_.cavityNumber.push_back(mesh_.cavityNumber[place(i)]);
      kept_.cavityKind.push_back(kCavityChannel);
    }
    for (std::int32_t i = 1; i <= mesh_.cellCount(); ++i)
      if (cells_[i] != 0) kept_.cellCavity.push_back(cavities_[mesh_.cellCavity[place(i)]]);
  }

  bool isKept(std::size_t f) const { return cells_[mesh_.owner[f]] != 0 || cells_[mesh_.neighbour[f]] != 0; }

  // Finds out what the faces need, too.
  void takePoints() {
    std::size_t faces = 0;
    std::size_t nodes = 0;
    for (std::size_t f = 0; f < mesh_.owner.size(); ++f) {
      if (!isKept(f)) continue;
      ++faces;
      nodes += mesh_.nodes(f).size();
      for (const std::int32_t n : mesh_.nodes(f)) points_[n] = 1;
    }
    kept_.faceOffsets.reserve(faces + 1);
    kept_.owner.reserve(faces);
    kept_.neighbour.reserve(faces);
    kept_.faceNodes.reserve(nodes);
    points_ = numberWhere(points_.count(), [this](auto i) { return points_[i] != 0; });
    for (std::int32_t i = 1; i <= points_.count(); ++i) {
      if (points_[i] == 0) continue;
      const auto xyz = mesh_.xyz.subspan(3 * place(i), 3);
      kept_.xyz.insert(kept_.xyz.end(), xyz.begin(), xyz.end());
    }
  }

  void takeFaces() {
    kept_.faceOffsets.push_back(0);
    for (std::size_t f = 0; f < mesh_.owner.size(); ++f) {
      if (!isKept(f)) continue;
      const std::int32_t owner = cells_[mesh_.owner[f]];
      const std::int32_t neighbour = cells_[mesh_.neighbour[f]];
      for (const std::int32_t n : mesh_.nodes(f)) kept_.faceNodes.push_back(points_[n]);
      // A face points out of its owner: where only the neighbour stays, it is turned around its first point.
      if (owner == 0)
        std::reverse(kept_.faceNodes.begin() + kept_.faceOffsets.back() + 1, kept_.faceNodes.end());
      kept_.owner.push_back(owner != 0 ? owner : neighbour);
      kept_.neighbour.push_back(owner != 0 ? neighbour : 0);
      kept_.faceOffsets.push_back(static_cast<std::int64_t>(kept_.faceNodes.size()));
    }
  }

  const OFVMesh& mesh_;
  Numbers cavities_, cells_, points_;
  CavityArrays kept_;
};

}  // namespace

CavityArrays channelsOf(const OFVMesh& mesh) { return Extraction(mesh).take(); }

}  // namespace orvmesh::transfer
