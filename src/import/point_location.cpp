#include "import/point_location.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <numeric>

namespace orvmesh::importing {
namespace {

constexpr double kFar = std::numeric_limits<double>::infinity();

double squaredLength(const Vector& v) { return dot(v, v); }

// Calls use(element, shape, nodes) for every element of a block.
template <class Use>
void eachElement(const VolumeMesh& volumes, Block block, Use&& use) {
  for (const auto& run : volumes.runsOf(block)) {
    const auto corners = static_cast<std::size_t>(cornersOf(run.shape));
    const std::span<const std::int32_t> all = volumes.corners(run);
    for (std::uint32_t k = 0; k < run.count; ++k)
      use(run.firstElement + static_cast<std::int32_t>(k), all.subspan(k * corners, corners));
  }
}

struct Box {
  Vector low{kFar, kFar, kFar}, high{-kFar, -kFar, -kFar};
  Box(const float* xyz, std::span<const std::int32_t> nodes) {
    for (const auto node : nodes) {
      const auto p = pointOf(xyz, node);
      for (std::size_t axis = 0; axis < 3; ++axis) {
        low[axis] = std::min(low[axis], p[axis]);
        high[axis] = std::max(high[axis], p[axis]);
      }
    }
  }
  bool holds(const Vector& p) const {
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (p[axis] < low[axis] || p[axis] > high[axis]) return false;
    return true;
  }
};

// Whether the point lies behind all faces, or on one up to rounding. Nothing lies in an element without
// volume.
bool isInside(const float* xyz, std::span<const std::int32_t> nodes, const Vector& point) {
  if (!(signedVolume(xyz, nodes) > 0)) return false;
  constexpr double kRounding = 1e-6;
  for (const auto& face : facesOf(static_cast<int>(nodes.size()))) {
    const bool triangle = face.nodeCount == 3;
    std::array<Vector, 4> p;
    for (int k = 0; k < 4; ++k)
      p[static_cast<std::size_t>(k)] =
          pointOf(xyz, nodes[static_cast<std::size_t>(face.nodes[std::min(k, face.nodeCount - 1)])]) - point;
    const auto normal = areaVector(p, triangle);
    const auto center = triangle ? (1.0 / 3) * (p[0] + p[1] + p[2]) : 0.25 * (p[0] + p[1] + p[2] + p[3]);
    const double area = std::sqrt(squaredLength(normal));
    if (dot(center, normal) < -kRounding * area * std::sqrt(area)) return false;
  }
  return true;
}

// Points by their first coordinate, to find those in a box.
class SortedPoints {
 public:
  explicit SortedPoints(std::span<const Vector> points) : points_(points), byX_(points.size()) {
    std::iota(byX_.begin(), byX_.end(), 0U);
    std::sort(byX_.begin(), byX_.end(),
              [points](std::size_t a, std::size_t b) { return points[a][0] < points[b][0]; });
  }
  template <class Use>
  void eachIn(const Box& box, Use&& use) const {
    auto at = std::partition_point(byX_.begin(), byX_.end(),
                                   [&](std::size_t k) { return points_[k][0] < box.low[0]; });
    for (; at != byX_.end() && points_[*at][0] <= box.high[0]; ++at)
      if (box.holds(points_[*at])) use(*at);
  }

 private:
  std::span<const Vector> points_;
  std::vector<std::size_t> byX_;
};

// Sets found[i], where it is still open, to the first element that holds point i, of those with a marked
// node.
void findHolders(const VolumeMesh& volumes, Block block, std::span<const Vector> points,
                 const std::vector<std::uint8_t>& marked, std::vector<std::int32_t>& found) {
  const float* xyz = volumes.mesh().xyz.data();
  const SortedPoints sorted(points);
  eachElement(volumes, block, [&](std::int32_t element, std::span<const std::int32_t> nodes) {
    std::uint8_t any = 0;
    for (const auto node : nodes) any |= marked[static_cast<std::size_t>(node)];
    if (any == 0) return;
    sorted.eachIn(Box(xyz, nodes), [&](std::size_t k) {
      if (found[k] < 0 && isInside(xyz, nodes, points[k])) found[k] = element;
    });
  });
}

// Marks the nodes that are at most three times as far from a point as the nearest one: nearly always the
// element that holds the point has one of them.
std::vector<std::uint8_t> nodesAround(const VolumeMesh& volumes, Block block,
                                      std::span<const Vector> points) {
  const float* xyz = volumes.mesh().xyz.data();
  const auto nearest = nearestNodes(volumes, block, points);
  std::vector<std::uint8_t> marked(volumes.blocksOfNode.size());
  for (std::size_t k = 0; k < points.size(); ++k) {
    const auto reach = 9 * squaredLength(pointOf(xyz, nearest[k]) - points[k]);
    for (std::int32_t node = 1; node <= volumes.mesh().nodeCount(); ++node)
      if (squaredLength(pointOf(xyz, node) - points[k]) <= reach) marked[static_cast<std::size_t>(node)] = 1;
  }
  return marked;
}

// Sets found[i], where it is still open, to the element with the nearest middle at the point's nearest node.
void findNeighbours(const VolumeMesh& volumes, Block block, std::span<const Vector> points,
                    std::vector<std::int32_t>& found) {
  const float* xyz = volumes.mesh().xyz.data();
  const auto nodes = nearestNodes(volumes, block, points);
  std::vector<std::pair<std::int32_t, std::size_t>> wanted;  // node, point
  std::vector<std::uint8_t> marked(volumes.blocksOfNode.size());
  for (std::size_t k = 0; k < points.size(); ++k) {
    if (found[k] >= 0) continue;
    wanted.emplace_back(nodes[k], k);
    marked[static_cast<std::size_t>(nodes[k])] = 1;
  }
  std::sort(wanted.begin(), wanted.end());
  std::vector<double> distance(points.size(), kFar);
  eachElement(volumes, block, [&](std::int32_t element, std::span<const std::int32_t> corners) {
    for (const auto node : corners) {
      if (marked[static_cast<std::size_t>(node)] == 0) continue;
      const auto middle = middleOf(xyz, corners);
      auto at = std::lower_bound(wanted.begin(), wanted.end(), std::pair(node, std::size_t{0}));
      for (; at != wanted.end() && at->first == node; ++at) {
        const auto apart = squaredLength(middle - points[at->second]);
        if (apart >= distance[at->second]) continue;
        distance[at->second] = apart;
        found[at->second] = element;
      }
    }
  });
}

// Squared distance of the origin from a triangle: from its plane above the triangle, else from the nearest
// edge.
double squaredDistance(const Vector& a, const Vector& b, const Vector& c) {
  const auto normal = cross(b - a, c - a);
  const auto edge = [](const Vector& p, const Vector& q) {
    const auto along = q - p;
    const auto length = squaredLength(along);
    const auto t = length > 0 ? std::clamp(-dot(p, along) / length, 0.0, 1.0) : 0.0;
    return squaredLength(p + t * along);
  };
  const bool above = determinant(normal, a, b) >= 0 && determinant(normal, b, c) >= 0 &&
                     determinant(normal, c, a) >= 0 && squaredLength(normal) > 0;
  if (above) return dot(a, normal) * dot(a, normal) / squaredLength(normal);
  return std::min({edge(a, b), edge(b, c), edge(c, a)});
}

}  // namespace

std::vector<std::int32_t> nearestNodes(const VolumeMesh& volumes, Block block,
                                       std::span<const Vector> points) {
  const auto nodeCount = volumes.mesh().nodeCount();
  const float* xyz = volumes.mesh().xyz.data();
  std::vector<std::int32_t> nearest(points.size());
  std::vector<double> distance(points.size(), kFar);
  for (std::int32_t node = 1; node <= nodeCount; ++node) {
    if ((volumes.blocksOfNode[static_cast<std::size_t>(node)] & bitOf(block)) == 0) continue;
    const auto place = pointOf(xyz, node);
    for (std::size_t k = 0; k < points.size(); ++k) {
      const auto apart = squaredLength(place - points[k]);
      if (apart >= distance[k]) continue;
      distance[k] = apart;
      nearest[k] = node;
    }
  }
  return nearest;
}

std::vector<std::int32_t> elementsAt(const VolumeMesh& volumes, Block block, std::span<const Vector> points) {
  std::vector<std::int32_t> found(points.size(), -1);
  const auto isOpen = [&found] { return std::find(found.begin(), found.end(), -1) != found.end(); };
  findHolders(volumes, block, points, nodesAround(volumes, block, points), found);
  if (isOpen())
    findHolders(volumes, block, points, std::vector<std::uint8_t>(volumes.blocksOfNode.size(), 1), found);
  if (isOpen()) findNeighbours(volumes, block, points, found);
  return found;
}

std::int64_t nearestPartFace(const VolumeMesh& volumes, const Surfaces& surfaces, const Vector& point) {
  const float* xyz = volumes.mesh().xyz.data();
  double least = kFar;
  std::int64_t nearest = -1;
  for (std::size_t k = surfaces.begin(1); k < surfaces.end(1); ++k) {
    const auto& n = surfaces.faces[k].nodes;
    const Vector p[4] = {pointOf(xyz, n[0]) - point, pointOf(xyz, n[1]) - point, pointOf(xyz, n[2]) - point,
                         pointOf(xyz, n[3]) - point};
    auto distance = squaredDistance(p[0], p[1], p[2]);
    if (n[2] != n[3]) distance = std::min(distance, squaredDistance(p[0], p[2], p[3]));
    if (distance >= least) continue;
    least = distance;
    nearest = static_cast<std::int64_t>(k);
  }
  return nearest;
}

}  // namespace orvmesh::importing
