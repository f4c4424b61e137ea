#include "embedded/node_weld.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "embedded/face_groups.h"

namespace orvmesh::embedded {
namespace {

// Cells of eight tolerances: a point seldom reaches into a second cell, and a cell holds some hundred
// representatives at most, however close the points of a hostile file lie: those are more than a tolerance
// apart.
constexpr double kTolerancesPerCell = 8;

double squaredDistance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
  const double x = a[0] - b[0];
  const double y = a[1] - b[1];
  const double z = a[2] - b[2];
  return x * x + y * y + z * z;
}

}  // namespace

void NodeWeld::Box::add(const Point& p) {
  for (std::size_t k = 0; k < 3; ++k) {
    low[k] = std::min(low[k], p[k]);
    high[k] = std::max(high[k], p[k]);
  }
}

bool NodeWeld::Box::holds(const Point& p, double margin) const {
  for (std::size_t k = 0; k < 3; ++k)
    if (p[k] < low[k] - margin || p[k] > high[k] + margin) return false;
  return true;
}

NodeWeld::NodeWeld(const NodeTable& nodes, const std::vector<std::uint8_t>& uses, double tolerance)
    : nodes_(nodes),
      tolerance_(tolerance),
      representative_(static_cast<std::size_t>(nodes.count()) + 1),
      bits_(static_cast<std::size_t>(nodes.count()) / 64 + 1) {
  weld(uses);
  for (std::size_t n = 1; n < representative_.size(); ++n)
    bits_[n / 64] |= static_cast<std::uint64_t>(representative_[n] != 0) << (n % 64);
  occupied_ = {};
  heads_ = next_ = inserted_ = {};
}

bool NodeWeld::keyOf(const std::int32_t* nodes, std::size_t count, std::array<std::int32_t, 4>& key) const {
  for (std::size_t k = 0; k < count; ++k)
    if ((key[k] = (*this)[nodes[k]]) == 0) return false;
  if (sortFaceNodes(key, count)) return true;
  std::copy_n(nodes, count, key.begin());
  return sortFaceNodes(key, count);
}

NodeWeld::Point NodeWeld::point(std::int32_t node) const {
  const float* const p = nodes_.xyz.data() + 3 * (static_cast<std::size_t>(node) - 1);
  return {p[0], p[1], p[2]};
}

void NodeWeld::weld(const std::vector<std::uint8_t>& uses) {
  constexpr double kFar = std::numeric_limits<double>::max();
  Box box{{kFar, kFar, kFar}, {-kFar, -kFar, -kFar}};
  std::size_t memberCount = 0;
  for (std::int32_t n = 1; n <= nodes_.count(); ++n) {
    if (uses[static_cast<std::size_t>(n)] != kMember) continue;
    box.add(point(n));
    ++memberCount;
  }
  if (memberCount == 0) return;
  origin_ = box.low;
  prepareGrid(memberCount);

  for (std::int32_t n = 1; n <= nodes_.count(); ++n) {
    if (uses[static_cast<std::size_t>(n)] != kMember) continue;
    std::int32_t& representative = representative_[static_cast<std::size_t>(n)];
    representative = nearest(point(n));
    if (representative != 0) continue;
    representative = n;
    insert(n);
  }
  for (std::int32_t n = 1; n <= nodes_.count(); ++n) {
    if (uses[static_cast<std::size_t>(n)] != kAsked) continue;
    const Point p = point(n);
    if (box.holds(p, tolerance_)) representative_[static_cast<std::size_t>(n)] = nearest(p);
  }
}

void NodeWeld::prepareGrid(std::size_t memberCount) {
  cellsPerLength_ = tolerance_ > 0 ? 1 / (kTolerancesPerCell * tolerance_) : 0;
  heads_.assign(std::bit_ceil(memberCount), 0);
  occupied_.assign(std::max<std::size_t>(1, heads_.size() * 16 / 64), 0);
  inserted_.reserve(memberCount);
  next_.reserve(memberCount);
}

NodeWeld::Cells NodeWeld::cellsAround(const Point& p) const {
  Cells cells{};
  for (std::size_t k = 0; k < 3; ++k) {
    const double from = p[k] - origin_[k];
    cells.first[k] = static_cast<std::uint32_t>(std::max(0.0, (from - tolerance_) * cellsPerLength_));
    cells.last[k] = static_cast<std::uint32_t>(std::max(0.0, (from + tolerance_) * cellsPerLength_));
  }
  return cells;
}

std::uint64_t NodeWeld::hashOf(std::uint32_t x, std::uint32_t y, std::uint32_t z) const {
  std::uint64_t h = x * 0x9E3779B97F4A7C15U + y * 0xC2B2AE3D27D4EB4FU + z * 0x165667B19E3779F9U + seed_;
  h ^= h >> 32;
  h *= 0x9E3779B97F4A7C15U;
  return h >> 16;
}

std::int32_t NodeWeld::nearest(const Point& p) const {
  const Cells cells = cellsAround(p);
  std::int32_t found = 0;
  double best = tolerance_ * tolerance_;
  for (std::uint32_t x = cells.first[0]; x <= cells.last[0]; ++x)
    for (std::uint32_t y = cells.first[1]; y <= cells.last[1]; ++y)
      for (std::uint32_t z = cells.first[2]; z <= cells.last[2]; ++z) {
        const std::uint64_t hash = hashOf(x, y, z);
        const std::uint64_t bit = hash & (occupied_.size() * 64 - 1);
        if (((occupied_[bit / 64] >> (bit % 64)) & 1) == 0) continue;
        for (std::int32_t slot = heads_[hash & (heads_.size() - 1)]; slot != 0;
             slot = next_[static_cast<std::size_t>(slot) - 1]) {
          const std::int32_t node = inserted_[static_cast<std::size_t>(slot) - 1];
          const double d = squaredDistance(p, point(node));
          if (d < best || (d == best && (found == 0 || node < found))) {
            best = d;
            found = node;
          }
        }
      }
  return found;
}

void NodeWeld::insert(std::int32_t node) {
  const Point p = point(node);
  const auto cell = [this, &p](std::size_t k) {
    return static_cast<std::uint32_t>((p[k] - origin_[k]) * cellsPerLength_);
  };
  const std::uint64_t hash = hashOf(cell(0), cell(1), cell(2));
  const std::uint64_t bit = hash & (occupied_.size() * 64 - 1);
  occupied_[bit / 64] |= std::uint64_t{1} << (bit % 64);
  std::int32_t& head = heads_[hash & (heads_.size() - 1)];
  inserted_.push_back(node);
  next_.push_back(head);
  head = static_cast<std::int32_t>(inserted_.size());
}

}  // namespace orvmesh::embedded
