#include "import/element_types.h"

#include <algorithm>
#include <iterator>

namespace orvmesh::importing {
namespace {

using enum Shape;

constexpr ElementType kTypes[] = {
    {1, line, 1, 2},
    {2, triangle, 1, 3},
    {3, quadrilateral, 1, 4},
    {4, tetrahedron, 1, 4},
    {5, hexahedron, 1, 8},
    {6, wedge, 1, 6},
    {7, pyramid, 1, 5},
    {8, line, 2, 3},
    {9, triangle, 2, 6},
    {10, quadrilateral, 2, 9},
    {11, tetrahedron, 2, 10},
    {12, hexahedron, 2, 27},
    {13, wedge, 2, 18},
    {14, pyramid, 2, 14},
    {15, point, 1, 1},
    {16, quadrilateral, 2, 8},
    {17, hexahedron, 2, 20},
    {18, wedge, 2, 15},
    {19, pyramid, 2, 13},
    {20, triangle, 3, 9},
    {21, triangle, 3, 10},
    {22, triangle, 4, 12},
    {23, triangle, 4, 15},
    {24, triangle, 5, 15},
    {25, triangle, 5, 21},
    {26, line, 3, 4},
    {27, line, 4, 5},
    {28, line, 5, 6},
    {29, tetrahedron, 3, 20},
    {30, tetrahedron, 4, 35},
    {31, tetrahedron, 5, 56},
    {36, quadrilateral, 3, 16},
    {37, quadrilateral, 4, 25},
    {90, wedge, 3, 40},
    {92, hexahedron, 3, 64},
    {93, hexahedron, 4, 125},
};

}  // namespace

const char* nameOf(Shape shape) {
  constexpr const char* kNames[kShapes] = {"point",       "line",    "triangle", "quadrilateral",
                                           "tetrahedron", "pyramid", "wedge",    "hexahedron"};
  return kNames[static_cast<std::size_t>(shape)];
}

const ElementType* elementType(std::int64_t code) {
  const auto found = std::find_if(std::begin(kTypes), std::end(kTypes),
                                  [code](const ElementType& type) { return type.code == code; });
  return found == std::end(kTypes) ? nullptr : found;
}

}  // namespace orvmesh::importing
