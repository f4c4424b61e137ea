#include "embedded/model_box.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace orvmesh::embedded {
namespace {

constexpr double kRelativeTolerance = 1e-6;
constexpr float kFar = std::numeric_limits<float>::max();

struct Box {
  std::array<float, 3> low{kFar, kFar, kFar};
  std::array<float, 3> high{-kFar, -kFar, -kFar};

  void add(const float* p) {
    for (std::size_t k = 0; k < 3; ++k) {
      low[k] = std::min(low[k], p[k]);
      high[k] = std::max(high[k], p[k]);
    }
  }
  bool operator==(const Box&) const = default;
  double diagonal() const {
    if (low[0] > high[0]) return 0;
    double sum = 0;
    for (std::size_t k = 0; k < 3; ++k) sum += (double{high[k]} - low[k]) * (double{high[k]} - low[k]);
    return std::sqrt(sum);
  }
};

void addNodes(Box& box, const NodeTable& nodes, std::span<const std::int32_t> numbers) {
  for (const std::int32_t n : numbers)
    if (n != 0) box.add(nodes.xyz.data() + 3 * (static_cast<std::size_t>(n) - 1));
}

}  // namespace

double weldTolerance(const MeshModel& model) {
  Box all;
  for (std::size_t i = 0; i < model.nodes.xyz.size(); i += 3) all.add(model.nodes.xyz.data() + i);
  // The surface elements of a whole model enclose it; only a mesh with strays (or without surfaces) costs
  // more.
  Box used;
  addNodes(used, model.nodes, model.surfaces.nodes);
  if (used == all) return kRelativeTolerance * all.diagonal();
  for (const ElementTable* table : {&model.elemP, &model.elemM, &model.elemC})
    addNodes(used, model.nodes, table->connectivity);
  return kRelativeTolerance * used.diagonal();
}

}  // namespace orvmesh::embedded
