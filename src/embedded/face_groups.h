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

// Calls visit(std::span<const HalfFace>) for every distinct face with all its halves, by kind and number.
// Buckets by the smallest node (a counting sort over nodes 1..lastNode), then a sort within each bucket.
template <class Visit>
void forEachFace(const std::vector<HalfFace>& halves, std::int32_t lastNode, Visit visit) {
  std::vector<std::uint32_t> ends(static_cast<std::size_t>(lastNode) + 2);
  for (const HalfFace& half : halves) ++ends[static_cast<std::size_t>(half.nodes[0]) + 1];
  for (std::size_t n = 1; n < ends.size(); ++n) ends[n] += ends[n - 1];
  std::vector<HalfFace> sorted(halves.size());
  for (const HalfFace& half : halves) sorted[ends[static_cast<std::size_t>(half.nodes[0])]++] = half;

  const auto isBefore = [](const HalfFace& a, const HalfFace& b) {
    if (a.nodes != b.nodes) return a.nodes < b.nodes;
    return a.kind != b.kind ? a.kind < b.kind : a.number < b.number;
  };
  for (std::size_t begin = 0; begin < sorted.size();) {
    const std::size_t bucketEnd = ends[static_cast<std::size_t>(sorted[begin].nodes[0])];
    std::sort(sorted.begin() + static_cast<std::ptrdiff_t>(begin),
              sorted.begin() + static_cast<std::ptrdiff_t>(bucketEnd), isBefore);
    while (begin < bucketEnd) {
      std::size_t end = begin + 1;
      while (end < bucketEnd && sorted[end].nodes == sorted[begin].nodes) ++end;
      visit(std::span<const HalfFace>(sorted).subspan(begin, end - begin));
      begin = end;
    }
  }
}

}  // namespace orvmesh::embedded
