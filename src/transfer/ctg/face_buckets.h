#pragma once

#include <algorithm>
#include <cstdint>
#include <memory>
#include <span>
#include <vector>

#include "transfer/ctg/element_walk.h"

namespace orvmesh::transfer {

// A face by its sorted nodes: the smallest, the next two in `key`, and the fourth one, 0 for a triangle.
struct SortedFace {
  std::uint32_t smallest;
  std::uint32_t fourth;
  std::uint64_t key;
  bool repeatsNode;
};

inline SortedFace sortedFace(const std::int32_t (&nodes)[3]) {
  const auto a = static_cast<std::uint32_t>(nodes[0]);
  const auto b = static_cast<std::uint32_t>(nodes[1]);
  const auto c = static_cast<std::uint32_t>(nodes[2]);
  const std::uint32_t low = std::min(a, b);
  const std::uint32_t high = std::max(a, b);
  const std::uint32_t smallest = std::min(low, c);
  const std::uint32_t other = std::max(low, c);
  const std::uint32_t middle = std::min(high, other);
  const std::uint32_t largest = std::max(high, other);
  return {smallest, 0, std::uint64_t{middle} << 32 | largest, smallest == middle || middle == largest};
}

inline SortedFace sortedFace(const std::int32_t (&nodes)[4]) {
  std::uint32_t n[4];
  for (int k = 0; k < 4; ++k) n[k] = static_cast<std::uint32_t>(nodes[k]);
  const auto order = [&n](int low, int high) {
    const std::uint32_t smaller = std::min(n[low], n[high]);
    n[high] = std::max(n[low], n[high]);
    n[low] = smaller;
  };
  order(0, 1);
  order(2, 3);
  order(0, 2);
  order(1, 3);
  order(1, 2);
  return {n[0], n[3], std::uint64_t{n[1]} << 32 | n[2], n[0] == n[1] || n[1] == n[2] || n[2] == n[3]};
}

// A face as one element has it; `place` is its place among the faces of all elements.
struct PlacedFace {
  std::uint64_t key;
  std::uint32_t fourth;
  std::uint32_t place;
  bool sameFace(const PlacedFace& other) const { return key == other.key && fourth == other.fourth; }
};

// The faces of all elements, without those that repeat a node, by their smallest node and within each such
// bucket by place: a counting sort.
class FaceBuckets {
 public:
  FaceBuckets(const ElementTable& elements, std::int32_t nodeCount);
  std::size_t count() const { return ends_.size(); }
  std::span<PlacedFace> bucket(std::size_t node) {
    const std::uint32_t first = node == 0 ? 0 : ends_[node - 1];
    return {faces_.get() + first, faces_.get() + ends_[node]};
  }
  // The places of the faces that repeat a node, ascending.
  const std::vector<std::uint32_t>& repeating() const { return repeating_; }

 private:
  std::vector<std::uint32_t> ends_;
  std::unique_ptr<PlacedFace[]> faces_;
  std::vector<std::uint32_t> repeating_;
};

}  // namespace orvmesh::transfer
