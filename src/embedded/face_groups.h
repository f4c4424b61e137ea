#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orvmesh::embedded {

// A face as one element or surface sees it, by its node numbers ascending; the fourth of a triangle is 0.
struct HalfFace {
  std::array<std::int32_t, 4> nodes;
  std::int32_t number;  // of the element or surface
  std::uint8_t kind;    // whose number it is
  std::uint8_t localFace;
};

// The first `count` nodes in the order that HalfFace wants, the rest 0. False for fewer than three different
// ones.
inline bool sortFaceNodes(std::array<std::int32_t, 4>& nodes, std::size_t count) {
  const std::array<std::int32_t, 4> given = nodes;
  nodes.fill(0);
  std::size_t used = 0;
  for (std::size_t i = 0; i < count; ++i) {
    std::size_t place = used;
    while (place > 0 && nodes[place - 1] > given[i]) --place;
    if (place > 0 && nodes[place - 1] == given[i]) continue;
    for (std::size_t k = used++; k > place; --k) nodes[k] = nodes[k - 1];
    nodes[place] = given[i];
  }
  return used >= 3;
}

// Half-faces grouped by face: buckets by the smallest node (a counting sort over nodes 1..lastNode), then a
// sort within each bucket. The halves of one face follow one another, by kind and number.
class FaceBuckets {
 public:
  FaceBuckets(const std::vector<HalfFace>& halves, std::int32_t lastNode)
      : ends_(static_cast<std::size_t>(lastNode) + 2), sorted_(halves.size()) {
    for (const HalfFace& half : halves) ++ends_[static_cast<std::size_t>(half.nodes[0]) + 1];
    for (std::size_t n = 1; n < ends_.size(); ++n) ends_[n] += ends_[n - 1];
    for (const HalfFace& half : halves) sorted_[ends_[static_cast<std::size_t>(half.nodes[0])]++] = half;
    for (std::size_t begin = 0; begin < sorted_.size();) {
      const std::size_t end = ends_[static_cast<std::size_t>(sorted_[begin].nodes[0])];
      std::sort(at(begin), at(end), isBefore);
      begin = end;
    }
  }

  // Calls visit(std::span<const HalfFace>) for every distinct face with all its halves.
  template <class Visit>
  void forEachFace(Visit visit) const {
    for (std::size_t begin = 0; begin < sorted_.size();) {
      std::size_t end = begin + 1;
      while (end < sorted_.size() && sorted_[end].nodes == sorted_[begin].nodes) ++end;
      visit(std::span<const HalfFace>(sorted_).subspan(begin, end - begin));
      begin = end;
    }
  }

  // The first half of a face, null when there is none. nodes as in a half-face, 1..lastNode.
  const HalfFace* find(const std::array<std::int32_t, 4>& nodes) const {
    const auto bucket = static_cast<std::size_t>(nodes[0]);
    const std::span range(sorted_.data() + ends_[bucket - 1], sorted_.data() + ends_[bucket]);
    const auto found =
        std::lower_bound(range.begin(), range.end(), nodes,
                         [](const HalfFace& half, const auto& key) { return half.nodes < key; });
    return found != range.end() && found->nodes == nodes ? &*found : nullptr;
  }

 private:
  static bool isBefore(const HalfFace& a, const HalfFace& b) {
    if (a.nodes != b.nodes) return a.nodes < b.nodes;
    return a.kind != b.kind ? a.kind < b.kind : a.number < b.number;
  }
  std::vector<HalfFace>::iterator at(std::size_t i) {
    return sorted_.begin() + static_cast<std::ptrdiff_t>(i);
  }

  std::vector<std::size_t> ends_;  // by smallest node: where its bucket ends and the next one begins
  std::vector<HalfFace> sorted_;
};

}  // namespace orvmesh::embedded
