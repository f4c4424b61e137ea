#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace orvmesh::view {

// The VTK cell for an element of so many nodes, and which of its nodes comes at each of VTK's places. VTK
// sees the first triangle of a wedge from outside, an element from inside; every other order is the same.
struct VtkCell {
  std::uint8_t type;
  std::array<std::uint8_t, 8> order;
};

inline constexpr std::array<std::uint8_t, 8> kSameOrder{0, 1, 2, 3, 4, 5, 6, 7};
inline constexpr std::array<VtkCell, 9> kVtkCells{{
    {0, kSameOrder},                 // none
    {1, kSameOrder},                 // vertex
    {3, kSameOrder},                 // line
    {5, kSameOrder},                 // triangle
    {10, kSameOrder},                // tetrahedron
    {14, kSameOrder},                // pyramid
    {13, {0, 2, 1, 3, 5, 4, 6, 7}},  // wedge
    {41, kSameOrder},                // convex point set
    {12, kSameOrder},                // hexahedron
}};
inline constexpr std::uint8_t kVtkTriangle = 5;
inline constexpr std::uint8_t kVtkQuad = 9;

}  // namespace orvmesh::view
