#include <algorithm>
#include <cmath>
#include <limits>

#include "check/checkers.h"

namespace orvmesh::check {
namespace {

constexpr double kTolerance = 1e-6;      // of the diagonal
constexpr std::uint32_t kPerCell = 16;   // tolerances along a cell
constexpr std::uint32_t kCellBits = 21;  // 1e6 / 16 cells and one to spare

// Cells over the used nodes, counted from 1 so that each has a lower neighbour.
class Grid {
 public:
  Grid(const MeshModel& model, const NodeUses& uses) : xyz_(model.nodes.xyz.data()) {
    double high[3];
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low_[axis] = std::numeric_limits<double>::max();
      high[axis] = -low_[axis];
    }
    for (std::int32_t n = 1; n <= model.nodes.count(); ++n) {
      if (uses[static_cast<std::size_t>(n)] == 0) continue;
      for (std::size_t axis = 0; axis < 3; ++axis) {
        low_[axis] = std::min(low_[axis], at(n, axis));
        high[axis] = std::max(high[axis], at(n, axis));
      }
    }
    const double diagonal = std::hypot(high[0] - low_[0], high[1] - low_[1], high[2] - low_[2]);
    tolerance_ = kTolerance * diagonal;
    cellsPerLength_ = tolerance_ > 0 ? 1 / (kPerCell * tolerance_) : 0;
  }

  // Calls use(key) for the node's cell and for those below it that it is within a tolerance of: of two
  // coincident nodes, one cell has both.
  template <class Use>
  void eachCellOf(std::int32_t node, Use use) const {
    std::uint64_t cell[3];
    unsigned reaches = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) {
      const double place = (at(node, axis) - low_[axis]) * cellsPerLength_;
      cell[axis] = static_cast<std::uint64_t>(place) + 1;
      // A rounding more than a tolerance.
      if (place - std::floor(place) <= 1.001 / kPerCell) reaches |= 1U << axis;
    }
    for (unsigned below = 0; below < 8; ++below) {
      if ((below & ~reaches) != 0) continue;
      std::uint64_t key = 0;
      for (std::size_t axis = 0; axis < 3; ++axis)
        key = key << kCellBits | (cell[axis] - ((below >> axis) & 1U));
      use(key);
    }
  }

  bool coincide(std::int32_t a, std::int32_t b) const {
    double square = 0;
    for (std::size_t axis = 0; axis < 3; ++axis)
      square += (at(a, axis) - at(b, axis)) * (at(a, axis) - at(b, axis));
    return square <= tolerance_ * tolerance_;
  }

 private:
  double at(std::int32_t node, std::size_t axis) const {
    return xyz_[3 * (static_cast<std::size_t>(node) - 1) + axis];
  }

  const float* xyz_;
  double low_[3];
  double tolerance_;
  double cellsPerLength_;
};

struct Occupant {
  std::uint64_t cell;
  std::int32_t node;
  bool operator<(const Occupant& other) const {
    return cell != other.cell ? cell < other.cell : node < other.node;
  }
};

std::vector<Occupant> occupantsOf(const MeshModel& model, const NodeUses& uses, const Grid& grid) {
  const auto each = [&](auto use) {
    for (std::int32_t n = 1; n <= model.nodes.count(); ++n)
      if (uses[static_cast<std::size_t>(n)] != 0) grid.eachCellOf(n, [&](std::uint64_t key) { use(key, n); });
  };
  std::size_t count = 0;
  each([&](std::uint64_t, std::int32_t) { ++count; });
  std::vector<Occupant> occupants;
  occupants.reserve(count);
  each([&](std::uint64_t key, std::int32_t n) { occupants.push_back({key, n}); });
  std::sort(occupants.begin(), occupants.end());
  return occupants;
}

// A node and an earlier one at its place; a body of it may have had a node there before.
struct Coincidence {
  std::int32_t node, earlier;
  bool sameBody;
  bool operator<(const Coincidence& other) const {
    return node != other.node ? node < other.node : sameBody > other.sameBody;
  }
};

// The coincident nodes of one cell. Each is compared with the first node of every place of the cell only, of
// which there are few however close the nodes of a file lie.
class CellSearch {
 public:
  CellSearch(const Grid& grid, const NodeUses& uses) : grid_(grid), uses_(uses) {}

  void search(std::span<const Occupant> cell, std::vector<Coincidence>& result) {
    places_.clear();
    for (const Occupant& occupant : cell) add(occupant.node, result);
  }

 private:
  struct Place {
    std::int32_t node;
    std::uint32_t bodies;
  };
  void add(std::int32_t node, std::vector<Coincidence>& result) {
    const std::uint32_t bodies = uses_[static_cast<std::size_t>(node)] & kBodyBits;
    const auto at = std::find_if(places_.begin(), places_.end(),
                                 [&](const Place& place) { return grid_.coincide(place.node, node); });
    if (at == places_.end()) {
      places_.push_back({node, bodies});
      return;
    }
    result.push_back({node, at->node, (at->bodies & bodies) != 0});
    at->bodies |= bodies;
  }

  const Grid& grid_;
  const NodeUses& uses_;
  std::vector<Place> places_;
};

}  // namespace

void checkUnusedNodes(const MeshModel& model, const NodeUses& uses, Collector& found) {
  for (std::int32_t n = 1; n <= model.nodes.count(); ++n)
    if (uses[static_cast<std::size_t>(n)] == 0)
      found.add(Code::unusedNode, 0, [&] { return nodeEntity(model, n); });
}

void checkCoincidentNodes(const MeshModel& model, const NodeUses& uses, Collector& found) {
  const Grid grid(model, uses);
  const auto occupants = occupantsOf(model, uses, grid);
  std::vector<Coincidence> pairs;
  CellSearch search(grid, uses);
  for (std::size_t begin = 0; begin < occupants.size();) {
    std::size_t end = begin + 1;
    while (end < occupants.size() && occupants[end].cell == occupants[begin].cell) ++end;
    if (end - begin > 1) search.search({&occupants[begin], end - begin}, pairs);
    begin = end;
  }
  std::sort(pairs.begin(), pairs.end());
  std::int32_t last = 0;
  for (const Coincidence& pair : pairs) {
    if (pair.node == last) continue;
    last = pair.node;
    found.add(pair.sameBody ? Code::coincidentNodes : Code::separateNodes, 0,
              [&] { return nodeEntity(model, pair.node, "lies on node " + std::to_string(pair.earlier)); });
  }
}

}  // namespace orvmesh::check
