#pragma once

#include <algorithm>

#include "base/element_volume.h"

namespace orvmesh::importing {

// The quality of an element is its volume by that of the element with all edges as long as its longest one
// and right corners: 1 at best, 0 when it is flat.

// Volume of the best element with edges of length 1.
template <int Corners>
constexpr double bestVolume() {
  if constexpr (Corners == 4) return 0.11785113019775793;
  if constexpr (Corners == 5) return 0.23570226039551587;
  if constexpr (Corners == 6) return 0.43301270189221935;
  if constexpr (Corners == 8) return 1;
}

template <int Corners>
double longestEdgeSquared(const float* xyz, const std::int32_t* nodes) {
  double longest = 0;
  for (const auto& face : facesOf(Corners))
    for (int k = 0; k < face.nodeCount; ++k) {
      const auto edge = pointOf(xyz, nodes[face.nodes[k]]) -
                        pointOf(xyz, nodes[face.nodes[k + 1 < face.nodeCount ? k + 1 : 0]]);
      longest = std::max(longest, dot(edge, edge));
    }
  return longest;
}

// Whether an element of this volume has a quality below the limit. Most are cleared without their edges: none
// is longer than twice the way from the first corner to the farthest.
template <int Corners>
bool isPoor(const float* xyz, const std::int32_t* nodes, double volume, double limit) {
  const double least = limit * bestVolume<Corners>();
  const auto isBelow = [&](double edgeSquared) {
    return volume * volume < least * least * edgeSquared * edgeSquared * edgeSquared;
  };
  const auto origin = pointOf(xyz, nodes[0]);
  double reach = 0;
  for (int k = 1; k < Corners; ++k) {
    const auto way = pointOf(xyz, nodes[k]) - origin;
    reach = std::max(reach, dot(way, way));
  }
  return isBelow(4 * reach) && isBelow(longestEdgeSquared<Corners>(xyz, nodes));
}

}  // namespace orvmesh::importing
