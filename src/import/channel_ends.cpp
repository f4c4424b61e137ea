#include "import/channel_ends.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <tuple>

#include "base/failure.h"

namespace orvmesh::importing {
namespace {

struct FaceMeasure {
  double area;
  Vector center;
};

FaceMeasure measure(const float* xyz, const std::int32_t (&nodes)[4]) {
  const bool triangle = nodes[2] == nodes[3];
  std::array<Vector, 4> p;
  for (std::size_t k = 0; k < 4; ++k) p[k] = pointOf(xyz, nodes[k]);
  const auto normal = areaVector(p, triangle);
  const auto sum = triangle ? p[0] + p[1] + p[2] : p[0] + p[1] + p[2] + p[3];
  return {std::sqrt(dot(normal, normal)), (triangle ? 1.0 / 3 : 0.25) * sum};
}

// Sets of faces that share nodes, by the lowest face of each.
class FaceSets {
 public:
  explicit FaceSets(std::size_t faces) : parent_(faces) { std::iota(parent_.begin(), parent_.end(), 0U); }
  std::uint32_t find(std::uint32_t face) {
    while (parent_[face] != face) face = parent_[face] = parent_[parent_[face]];
    return face;
  }
  void join(std::uint32_t a, std::uint32_t b) {
    a = find(a);
    b = find(b);
    parent_[std::max(a, b)] = std::min(a, b);
  }

 private:
  std::vector<std::uint32_t> parent_;
};

class EndFinder {
 public:
  EndFinder(const VolumeMesh& volumes, std::span<Surface> endFaces)
      : volumes_(volumes), faces_(endFaces), sets_(endFaces.size()), endOfFace_(endFaces.size()) {}

  std::vector<ChannelEnd> find() {
    joinNeighbours();
    listEnds();
    sortEnds();
    for (std::size_t first = 0; first < ends_.size();) {
      std::size_t last = first;
      while (last < ends_.size() && ends_[last].component == ends_[first].component) ++last;
      chooseCodes({ends_.data() + first, last - first});
      first = last;
    }
    for (std::size_t k = 0; k < faces_.size(); ++k) faces_[k].contactCode = ends_[endOfFace_[k]].code;
    return std::move(ends_);
  }

 private:
  std::uint32_t componentOf(const Surface& face) const { return volumes_.runOf(face.element).component; }

  void joinNeighbours() {
    std::vector<std::tuple<std::uint32_t, RoleKind, std::int32_t, std::uint32_t>> corners;
    corners.reserve(4 * faces_.size());
    for (std::uint32_t k = 0; k < faces_.size(); ++k)
      for (const auto node : faces_[k].nodes)
        corners.emplace_back(componentOf(faces_[k]), faces_[k].named, node, k);
    std::sort(corners.begin(), corners.end());
    for (std::size_t k = 1; k < corners.size(); ++k) {
      const auto& [component, named, node, face] = corners[k];
      const auto& [component0, named0, node0, face0] = corners[k - 1];
      if (component == component0 && named == named0 && node == node0) sets_.join(face, face0);
    }
  }

  void listEnds() {
    const float* xyz = volumes_.mesh().xyz.data();
    for (std::uint32_t k = 0; k < faces_.size(); ++k) {
      const auto& face = faces_[k];
      const auto root = sets_.find(k);
      if (root == k) {
        endOfFace_[k] = ends_.size();
        const auto code =
            face.named == RoleKind::inlet ? kInlet : (face.named == RoleKind::outlet ? kOutlet : kHose);
        ends_.push_back({componentOf(face), code, face.named != RoleKind::ignore, 0, 0, {0, 0, 0}});
      }
      endOfFace_[k] = endOfFace_[root];
      auto& end = ends_[endOfFace_[k]];
      const auto [area, center] = measure(xyz, face.nodes);
      ++end.faces;
      end.area += area;
      end.center = end.center + area * center;
    }
    for (auto& end : ends_)
      if (end.area > 0) end.center = (1 / end.area) * end.center;
  }

  // Centers that differ by rounding count as equal in a coordinate.
  void sortEnds() {
    double largest = 0;
    for (const auto& end : ends_)
      for (const auto x : end.center) largest = std::max(largest, std::fabs(x));
    const double unit = largest > 0 ? 1e-6 * largest : 1;
    const auto key = [&](std::size_t k) {
      const auto& c = ends_[k].center;
      return std::tuple(ends_[k].component, std::round(c[0] / unit), std::round(c[1] / unit),
                        std::round(c[2] / unit), k);
    };
    std::vector<std::size_t> order(ends_.size()), place(ends_.size());
    std::iota(order.begin(), order.end(), 0U);
    std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) { return key(a) < key(b); });
    std::vector<ChannelEnd> sorted;
    for (std::size_t k = 0; k < order.size(); ++k) {
      sorted.push_back(ends_[order[k]]);
      place[order[k]] = k;
    }
    for (auto& end : endOfFace_) end = place[end];
    ends_ = std::move(sorted);
  }

  static void chooseCodes(std::span<ChannelEnd> ends) {
    const auto isMissing = [ends](std::int32_t code) {
      return std::none_of(ends.begin(), ends.end(),
                          [code](const ChannelEnd& end) { return end.named && end.code == code; });
    };
    const auto unnamed = [](const ChannelEnd& end) { return !end.named; };
    const auto first = std::find_if(ends.begin(), ends.end(), unnamed);
    if (first == ends.end()) return;
    const bool inletIsMissing = isMissing(kInlet);
    if (inletIsMissing) first->code = kInlet;
    if (!isMissing(kOutlet)) return;
    const auto last = std::find_if(ends.rbegin(), ends.rend(), unnamed);
    if (!inletIsMissing || &*last != &*first) last->code = kOutlet;
  }

  const VolumeMesh& volumes_;
  std::span<Surface> faces_;
  FaceSets sets_;
  std::vector<std::size_t> endOfFace_;
  std::vector<ChannelEnd> ends_;
};

// Wall areas by component.
std::vector<double> wallAreas(const VolumeMesh& volumes, std::span<const Surface> walls) {
  std::vector<double> areas(volumes.components.size());
  for (const auto& wall : walls)
    areas[volumes.runOf(wall.element).component] += measure(volumes.mesh().xyz.data(), wall.nodes).area;
  return areas;
}

// Corner means of the elements, weighted by their volumes.
Vector middle(const VolumeMesh& volumes, std::uint32_t component) {
  const float* xyz = volumes.mesh().xyz.data();
  Vector sum{0, 0, 0};
  for (const auto& run : volumes.runsOf(component)) {
    const auto perElement = static_cast<std::size_t>(cornersOf(run.shape));
    const auto corners = volumes.corners(run);
    for (std::size_t k = 0; k < corners.size(); k += perElement) {
      const auto nodes = corners.subspan(k, perElement);
      sum = sum + signedVolume(xyz, nodes) * middleOf(xyz, nodes);
    }
  }
  const double volume = volumes.components[component].volumeOut;
  return volume > 0 ? (1 / volume) * sum : sum;
}

// From the first inlet to the first outlet. A blind rod has one end: its other one lies as far beyond its
// middle.
void setLine(const VolumeMesh& volumes, std::span<const ChannelEnd> allEnds, Channel& channel) {
  const auto ofThis =
      std::equal_range(allEnds.begin(), allEnds.end(), ChannelEnd{channel.component, 0, false, 0, 0, {}},
                       [](const ChannelEnd& a, const ChannelEnd& b) { return a.component < b.component; });
  const std::span<const ChannelEnd> ends{ofThis.first, ofThis.second};
  channel.hasLine = !ends.empty();
  if (!channel.hasLine) return;
  const auto first = [ends](std::int32_t code) {
    const auto at =
        std::find_if(ends.begin(), ends.end(), [code](const auto& end) { return end.code == code; });
    return at == ends.end() ? nullptr : &*at;
  };
  const auto mirrored = [&](const ChannelEnd& end) {
    return 2.0 * middle(volumes, channel.component) - end.center;
  };
  const auto* outlet = first(kOutlet);
  const auto* inlet = first(kInlet);
  if (inlet == nullptr && outlet == nullptr) inlet = &ends.front();
  channel.line[0] = inlet != nullptr ? inlet->center : mirrored(*outlet);
  channel.line[1] = outlet != nullptr ? outlet->center : mirrored(*inlet);
}

}  // namespace

Channels measureChannels(const VolumeMesh& volumes, Surfaces& surfaces) {
  const auto begin = surfaces.begin(4);
  Channels result;
  result.ends = EndFinder(volumes, std::span(surfaces.faces).subspan(begin)).find();
  const auto areas = wallAreas(
      volumes, std::span(surfaces.faces).subspan(surfaces.begin(3), surfaces.end(3) - surfaces.begin(3)));
  for (std::uint32_t k = 0; k < volumes.components.size(); ++k) {
    const auto& component = volumes.components[k];
    if (blockOf(component.role.kind) != Block::channel) continue;
    if (!(areas[k] > 0))
      throw Failure(volumes.mesh().path,
                    "volume group '" + component.groups +
                        "' touches no mold element; its mesh must share nodes with the mold's "
                        "(--merge TOL joins coincident nodes)");
    Channel channel{k, areas[k], 4 * component.volumeOut / areas[k], false, {}};
    setLine(volumes, result.ends, channel);
    result.channels.push_back(channel);
  }
  return result;
}

}  // namespace orvmesh::importing
