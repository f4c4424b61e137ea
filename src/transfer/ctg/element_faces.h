#pragma once

#include <cstdint>
#include <memory>

#include "platform/mesh_records.h"

namespace orvmesh::transfer {

// The faces of a mesh, numbered as the elements make them, and thus in the order of the positive entries.
struct ElementFaces {
  // Element after element, as many entries as its type has faces, in the order of its face table: the number
  // of a face that this element makes, minus the number of one that was there before. The nodes of a face are
  // those of the element that made it; its second owner is the last element with the negative number.
  std::unique_ptr<std::int32_t[]> entries;
  std::int32_t faceCount = 0;
  std::int32_t skipped = 0;    // elements with a node count that no element type has; they have no entries
  std::int32_t collapsed = 0;  // faces of elements that name a node twice
  std::int32_t crowded = 0;    // element faces that come third or later on their face
};

// Entries that the faces of these elements take; at most kMostElementFaces can be matched.
std::uint64_t countElementFaces(const ElementTable& elements);
inline constexpr std::uint64_t kMostElementFaces = 0x7FFFFFFF;

// Two faces are the same when they have as many nodes and every node of the later one is a node of the
// earlier, whatever their order; of several such faces the one with the lowest number is taken.
ElementFaces matchElementFaces(const ElementTable& elements, std::int32_t nodeCount);

}  // namespace orvmesh::transfer
