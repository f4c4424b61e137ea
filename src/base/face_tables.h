#pragma once

#include <array>
#include <span>

namespace orvmesh {

// A face of a volume element by local node positions (counted from 0), seen from outside the element.
struct LocalFace {
  int nodeCount;  // 3 or 4
  int nodes[4];   // -1 in the fourth place of a triangle
};

namespace face_tables {
inline constexpr std::array<LocalFace, 4> kTetrahedron{
    {{3, {0, 2, 1, -1}}, {3, {1, 3, 0, -1}}, {3, {2, 3, 1, -1}}, {3, {0, 3, 2, -1}}}};
inline constexpr std::array<LocalFace, 5> kPyramid{
    {{4, {0, 3, 2, 1}}, {3, {1, 4, 0, -1}}, {3, {2, 4, 1, -1}}, {3, {3, 4, 2, -1}}, {3, {0, 4, 3, -1}}}};
inline constexpr std::array<LocalFace, 5> kWedge{
    {{3, {0, 2, 1, -1}}, {3, {3, 4, 5, -1}}, {4, {0, 1, 4, 3}}, {4, {1, 2, 5, 4}}, {4, {2, 0, 3, 5}}}};
inline constexpr std::array<LocalFace, 6> kHexahedron{{{4, {0, 3, 2, 1}},
                                                       {4, {4, 5, 6, 7}},
                                                       {4, {0, 1, 5, 4}},
                                                       {4, {1, 2, 6, 5}},
                                                       {4, {2, 3, 7, 6}},
                                                       {4, {3, 0, 4, 7}}}};
}  // namespace face_tables

// The faces of the element type with this many nodes; none for any other count.
constexpr std::span<const LocalFace> facesOf(int nodeCount) {
  switch (nodeCount) {
    case 4:
      return face_tables::kTetrahedron;
    case 5:
      return face_tables::kPyramid;
    case 6:
      return face_tables::kWedge;
    case 8:
      return face_tables::kHexahedron;
    default:
      return {};
  }
}

}  // namespace orvmesh
