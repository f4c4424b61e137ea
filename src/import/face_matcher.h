#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "import/element_types.h"

namespace orvmesh::importing {

// Volume elements of one shape and region, cornersOf(shape) node numbers each. Elements are counted from 0
// over all blocks; regions ascend from block to block and are at most 7.
struct ElementBlock {
  Shape shape;
  int region;
  std::span<const std::int32_t> corners;
};

struct ElementFace {
  std::int32_t element;  // -1: none
  std::int32_t face;     // position in the face table of its shape
};

// A face with nothing behind it (second.element is -1) or between two regions (first is of the lower one).
struct FaceLink {
  ElementFace first, second;
};

struct FaceMatches {
  std::vector<FaceLink> links;     // in no particular order
  std::uint64_t overlaps = 0;      // faces that two elements see from the same side
  std::vector<ElementFace> twins;  // the two elements of one such face that have the same nodes, if any have
  std::vector<ElementFace> crowd;  // the elements of one face that more than two elements share, if any do
};

// Largest number of element faces that can be matched.
inline constexpr std::uint64_t kMaxElementFaces = 0xFFFFFFFF;

// Finds the faces where regions end. Elements name each node once, nodes are numbered 1..nodeCount.
FaceMatches matchFaces(std::span<const ElementBlock> blocks, std::int32_t nodeCount);

}  // namespace orvmesh::importing
