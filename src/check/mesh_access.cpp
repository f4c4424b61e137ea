#include "check/mesh_access.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace orvmesh::check {
namespace {

// Bits for the bodies of a mesh, in the order in which they come up.
class Bodies {
 public:
  std::uint32_t bitOf(std::size_t block, std::int32_t a, std::int32_t b) {
    const Body body{block, block == kChannel ? 0 : a, block == kPlastic ? b : 0};
    if (body == last_) return bit_;
    const auto at = std::find(known_.begin(), known_.end(), body);
    const auto place = std::min(static_cast<std::size_t>(at - known_.begin()), kMost - 1);
    if (at == known_.end() && known_.size() < kMost) known_.push_back(body);
    last_ = body;
    return bit_ = 1U << (kFirstBit + place);
  }

 private:
  using Body = std::tuple<std::size_t, std::int32_t, std::int32_t>;
  static constexpr std::size_t kFirstBit = 3, kMost = 28;

  std::vector<Body> known_;
  Body last_{kBlocks, 0, 0};
  std::uint32_t bit_ = 0;
};

std::span<const std::int32_t> nodesOf(const SurfaceElement& surface) {
  return {surface.nodes, static_cast<std::size_t>(surface.nodeCount)};
}

}  // namespace

Vector middleOf(const MeshModel& model, std::span<const std::int32_t> nodes) {
  Vector sum{};
  for (const std::int32_t node : nodes) sum = sum + positionOf(model, node);
  return (1.0 / static_cast<double>(std::max<std::size_t>(1, nodes.size()))) * sum;
}

Entity nodeEntity(const MeshModel& model, std::int32_t node, std::string detail) {
  return {"node", node, std::move(detail), positionOf(model, node)};
}

Entity elementEntity(const MeshModel& model, ElementRef element, std::string detail) {
  return {kElementKinds[element.block], element.number, std::move(detail),
          middleOf(model, tableOf(model, element.block).nodes(element.number))};
}

Entity surfaceEntity(const MeshModel& model, std::int32_t surface, std::string detail) {
  const SurfaceElement face = model.surfaces[surface];
  return {"surface element", surface, std::move(detail), middleOf(model, nodesOf(face))};
}

std::string textOf(ElementRef element) {
  return std::string(kElementKinds[element.block]) + ' ' + std::to_string(element.number);
}

NodeUses usesOfNodes(const MeshModel& model) {
  NodeUses uses(static_cast<std::size_t>(model.nodes.count()) + 1);
  Bodies bodies;
  for (std::size_t block = 0; block < kBlocks; ++block) {
    const ElementTable& table = tableOf(model, block);
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      const std::uint32_t bits = 1U << block | bodies.bitOf(block, table.material(e), table.group(e));
      for (const std::int32_t node : table.nodes(e)) uses[static_cast<std::size_t>(node)] |= bits;
    }
  }
  for (const std::int32_t node : model.surfaces.nodes) uses[static_cast<std::size_t>(node)] |= kSurfaceBit;
  uses[0] = 0;
  return uses;
}

}  // namespace orvmesh::check
