#pragma once

#include <array>
#include <cstdint>
#include <span>

#include "base/face_tables.h"

namespace orvmesh {

using Vector = std::array<double, 3>;

inline Vector operator-(const Vector& a, const Vector& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
inline Vector operator+(const Vector& a, const Vector& b) { return {a[0] + b[0], a[1] + b[1], a[2] + b[2]}; }
inline Vector operator*(double f, const Vector& a) { return {f * a[0], f * a[1], f * a[2]}; }
inline Vector cross(const Vector& a, const Vector& b) {
  return {a[1] * b[2] - a[2] * b[1], a[2] * b[0] - a[0] * b[2], a[0] * b[1] - a[1] * b[0]};
}
inline double dot(const Vector& a, const Vector& b) { return a[0] * b[0] + a[1] * b[1] + a[2] * b[2]; }
inline double determinant(const Vector& a, const Vector& b, const Vector& c) { return dot(a, cross(b, c)); }

// Coordinates of a node; `xyz` has 3 per node, nodes count from 1.
inline Vector pointOf(const float* xyz, std::int32_t node) {
  const float* p = xyz + 3 * (static_cast<std::size_t>(node) - 1);
  return {p[0], p[1], p[2]};
}

inline Vector middleOf(const float* xyz, std::span<const std::int32_t> nodes) {
  Vector sum{0, 0, 0};
  for (const auto node : nodes) sum = sum + pointOf(xyz, node);
  return (1.0 / static_cast<double>(nodes.size())) * sum;
}

// Volume of an element with this many corners, negative when it is inverted. Quadrilateral faces are the
// bilinear patches through their corners, so that neighbours agree about the face between them: twice the
// volume under a patch is that under its two halves, halved both ways.
template <int Corners>
double signedVolume(const float* xyz, const std::int32_t* nodes) {
  const auto origin = pointOf(xyz, nodes[0]);
  std::array<Vector, Corners> p;
  for (std::size_t k = 1; k < Corners; ++k) p[k] = pointOf(xyz, nodes[k]) - origin;
  if constexpr (Corners == 4) return determinant(p[1], p[2], p[3]) / 6;
  p[0] = {0, 0, 0};
  double twelfths = 0;
  for (const auto& face : facesOf(Corners)) {
    const auto at = [&](int k) -> const Vector& { return p[static_cast<std::size_t>(face.nodes[k])]; };
    if (face.nodeCount == 3) {
      twelfths += 2 * determinant(at(0), at(1), at(2));
    } else {
      twelfths += determinant(at(0), at(1), at(2)) + determinant(at(0), at(2), at(3)) +
                  determinant(at(0), at(1), at(3)) + determinant(at(1), at(2), at(3));
    }
  }
  return twelfths / 12;
}

inline double signedVolume(const float* xyz, std::span<const std::int32_t> nodes) {
  switch (nodes.size()) {
    case 5:
      return signedVolume<5>(xyz, nodes.data());
    case 6:
      return signedVolume<6>(xyz, nodes.data());
    case 8:
      return signedVolume<8>(xyz, nodes.data());
    default:
      return signedVolume<4>(xyz, nodes.data());
  }
}

// Half the cross product of the diagonals, or of two edges of a triangle: points outwards, as long as the
// face is large.
inline Vector areaVector(const std::array<Vector, 4>& p, bool triangle) {
  return 0.5 * cross(p[2] - p[0], triangle ? p[2] - p[1] : p[3] - p[1]);
}

}  // namespace orvmesh
