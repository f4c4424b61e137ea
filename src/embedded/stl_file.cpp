#include "embedded/stl_file.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <limits>

#include "base/atomic_file.h"

namespace orvmesh::embedded {
namespace {

constexpr std::size_t kHeaderSize = 80;
constexpr std::size_t kTriangleSize = 50;  // normal, three corners, two bytes of attributes
constexpr char kHeaderText[] = "binary STL";

using Point = StlDrawing::Point;

// Zero for a triangle without area, as readers expect of a normal that they are to compute themselves.
Point normalOf(const Point& a, const Point& b, const Point& c) {
  const double ux = double{b.x} - a.x, uy = double{b.y} - a.y, uz = double{b.z} - a.z;
  const double vx = double{c.x} - a.x, vy = double{c.y} - a.y, vz = double{c.z} - a.z;
  const double x = uy * vz - uz * vy, y = uz * vx - ux * vz, z = ux * vy - uy * vx;
  const double length = std::sqrt(x * x + y * y + z * z);
  if (!(length > 0) || !std::isfinite(length)) return {0, 0, 0};
  return {static_cast<float>(x / length), static_cast<float>(y / length), static_cast<float>(z / length)};
}

}  // namespace

void StlDrawing::triangle(const Point& a, const Point& b, const Point& c) {
  corners_.insert(corners_.end(), {a, b, c});
}

bool StlDrawing::write(const std::string& path, bool evenEmpty) const {
  const std::size_t triangles = corners_.size() / 3;
  AtomicFile file;
  if ((triangles == 0 && !evenEmpty) || triangles > std::numeric_limits<std::uint32_t>::max() ||
      !file.open(path))
    return false;
  std::array<char, kHeaderSize + sizeof(std::uint32_t)> head{};
  const auto count = static_cast<std::uint32_t>(triangles);
  std::memcpy(head.data(), kHeaderText, sizeof kHeaderText - 1);
  std::memcpy(head.data() + kHeaderSize, &count, sizeof count);
  file.append(head.data(), head.size());

  constexpr std::size_t kBatch = 4096;
  std::vector<char> buffer(std::min(kBatch, triangles) * kTriangleSize);
  for (std::size_t t = 0; t < triangles;) {
    const std::size_t batch = std::min(kBatch, triangles - t);
    for (std::size_t i = 0; i < batch; ++i, ++t) {
      const Point* const corner = corners_.data() + 3 * t;
      const Point record[4] = {normalOf(corner[0], corner[1], corner[2]), corner[0], corner[1], corner[2]};
      std::memcpy(buffer.data() + i * kTriangleSize, record, sizeof record);
    }
    file.append(buffer.data(), batch * kTriangleSize);
  }
  return file.commit();
}

}  // namespace orvmesh::embedded
