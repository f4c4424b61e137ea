#include "import/node_numbers.h"

#include <algorithm>
#include <bit>
#include <cmath>

#include "base/element_volume.h"

namespace orvmesh::importing {
namespace {

std::uint64_t mixed(std::uint64_t h) {
  h = (h ^ (h >> 32)) * 0x9E3779B97F4A7C15ULL;
  return h ^ (h >> 29);
}

// Nodes by the cube of space they lie in. Cells are named by whole numbers held as doubles, so that no
// coordinate is too large for them.
class NodeGrid {
 public:
  explicit NodeGrid(std::size_t nodes)
      : heads_(std::bit_ceil(2 * nodes + 1)), next_(nodes + 1), mask_(heads_.size() - 1) {}

  void add(const Vector& cell, std::int32_t node) {
    auto& head = heads_[hash(cell) & mask_];
    next_[static_cast<std::size_t>(node)] = head;
    head = node;
  }
  // First of the nodes that may lie in the cell; 0 for none.
  std::int32_t first(const Vector& cell) const { return heads_[hash(cell) & mask_]; }
  std::int32_t after(std::int32_t node) const { return next_[static_cast<std::size_t>(node)]; }

 private:
  static std::uint64_t hash(const Vector& cell) {
    std::uint64_t h = 0;
    for (const double c : cell)
      h = mixed(h ^ std::bit_cast<std::uint64_t>(c + 0.0));  // -0 and 0 are one cell
    return h;
  }

  std::vector<std::int32_t> heads_;
  std::vector<std::int32_t> next_;
  std::uint64_t mask_;
};

// Lowest node in the cell within the tolerance, 0 for none.
std::int32_t nearestIn(const NodeGrid& grid, const Vector& cell, const float* xyz, const Vector& point,
                       double tolerance) {
  std::int32_t lowest = 0;
  for (auto node = grid.first(cell); node != 0; node = grid.after(node)) {
    const auto apart = pointOf(xyz, node) - point;
    if (dot(apart, apart) <= tolerance * tolerance && (lowest == 0 || node < lowest)) lowest = node;
  }
  return lowest;
}

class Joiner {
 public:
  // With tolerance 0 each distinct point is a cell; so it is with one whose square no double holds.
  Joiner(const MshMesh& mesh, double tolerance)
      : xyz_(mesh.xyz.data()),
        tolerance_(tolerance < 1e-150 ? 0 : tolerance),
        cellSize_(4 * tolerance_),
        grid_(static_cast<std::size_t>(mesh.nodeCount())) {}

  // The node to join to; the node itself, which then takes others in, when there is none.
  std::int32_t place(std::int32_t node) {
    const auto point = pointOf(xyz_, node);
    const auto low = cellOf(point, -tolerance_);
    const auto high = cellOf(point, tolerance_);
    std::int32_t lowest = 0;
    Vector cell;
    for (int octant = 0; octant < 8; ++octant) {
      bool other = true;  // at most two cells per axis are near enough
      for (std::size_t axis = 0; axis < 3; ++axis) {
        const bool upper = (octant >> axis & 1) != 0;
        other &= !upper || high[axis] != low[axis];
        cell[axis] = upper ? high[axis] : low[axis];
      }
      if (!other) continue;
      const auto found = nearestIn(grid_, cell, xyz_, point, tolerance_);
      if (found != 0 && (lowest == 0 || found < lowest)) lowest = found;
    }
    if (lowest != 0) return lowest;
    grid_.add(cellOf(point, 0), node);
    return node;
  }

 private:
  Vector cellOf(const Vector& point, double shift) const {
    if (tolerance_ == 0) return point;
    return {std::floor((point[0] + shift) / cellSize_), std::floor((point[1] + shift) / cellSize_),
            std::floor((point[2] + shift) / cellSize_)};
  }

  const float* xyz_;
  double tolerance_;
  double cellSize_;
  NodeGrid grid_;
};

}  // namespace

std::int32_t joinNodes(const MshMesh& mesh, double tolerance, std::vector<std::int32_t>& joinedTo) {
  joinedTo.resize(static_cast<std::size_t>(mesh.nodeCount()) + 1);
  Joiner joiner(mesh, tolerance);
  std::int32_t joined = 0;
  for (std::int32_t node = 1; node <= mesh.nodeCount(); ++node) {
    const auto to = joiner.place(node);
    joinedTo[static_cast<std::size_t>(node)] = to;
    if (to != node) ++joined;
  }
  return joined;
}

void renumberCorners(MshMesh& mesh, const std::vector<std::int32_t>& newNumber) {
  for (auto& corners : mesh.corners)
    for (auto& node : corners) node = newNumber[static_cast<std::size_t>(node)];
}

std::vector<std::int32_t> dropNodes(MshMesh& mesh, std::vector<std::uint8_t>& marks) {
  std::vector<std::int32_t> newNumber(marks.size());
  std::size_t kept = 0;
  for (std::size_t node = 1; node < marks.size(); ++node) {
    if (marks[node] == 0) continue;
    std::copy_n(mesh.xyz.data() + 3 * (node - 1), 3, mesh.xyz.data() + 3 * kept);
    newNumber[node] = static_cast<std::int32_t>(++kept);
    marks[kept] = marks[node];
  }
  mesh.xyz.resize(3 * kept);
  marks.resize(kept + 1);
  renumberCorners(mesh, newNumber);
  return newNumber;
}

}  // namespace orvmesh::importing
