#pragma once

#include <cstdint>

namespace orvmesh::importing {

enum class Shape : std::uint8_t {
  point,
  line,
  triangle,
  quadrilateral,
  tetrahedron,
  pyramid,
  wedge,
  hexahedron
};
inline constexpr std::size_t kShapes = 8;

constexpr int dimensionOf(Shape shape) {
  constexpr int kDimensions[kShapes] = {0, 1, 2, 2, 3, 3, 3, 3};
  return kDimensions[static_cast<std::size_t>(shape)];
}
constexpr int cornersOf(Shape shape) {
  constexpr int kCorners[kShapes] = {1, 2, 3, 4, 4, 5, 6, 8};
  return kCorners[static_cast<std::size_t>(shape)];
}
const char* nameOf(Shape shape);

// An element type of MSH files. The corner nodes come first in every one of them.
struct ElementType {
  int code;
  Shape shape;
  int order;
  int nodes;
  bool taken() const { return order <= 2; }
};
// Null for a code that no MSH version defines.
const ElementType* elementType(std::int64_t code);

}  // namespace orvmesh::importing
