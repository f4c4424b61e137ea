#include <algorithm>
#include <array>
#include <cmath>
#include <map>
#include <optional>
#include <vector>

#include "base/face_tag.h"
#include "base/ranges.h"
#include "embedded/ofe_reader.h"
#include "platform/ofeio.h"

// Questions about a file that are answered without loading it whole.
namespace {

using orvmesh::embedded::Block;
using orvmesh::embedded::BlockView;
using orvmesh::embedded::OfeReader;
namespace column = orvmesh::embedded::column;

struct Point {
  double x = 0, y = 0, z = 0;
};
double distance(const Point& a, const Point& b) { return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z); }

// The inlet faces of one channel group.
struct SurfaceInlet {
  std::int32_t group;
  Point centroid;
  double radius;  // the largest distance from the centroid to a node
};

// The distinct nodes of the coolant inlet faces by group; nothing when a face names a node that is not there.
std::optional<std::map<std::int32_t, std::vector<std::int32_t>>> inletNodes(const BlockView& surfaces,
                                                                            std::int32_t nodeCount) {
  std::map<std::int32_t, std::vector<std::int32_t>> groups;
  for (std::int32_t i = 0; i < surfaces.count(); ++i) {
    const auto value = [&](std::size_t c) { return *surfaces.at<std::int32_t>(c, i, 1); };
    if (value(column::kInterfaceId) != 4 || value(column::kContactCode) != 1) continue;
    auto& nodes = groups[orvmesh::channelGroupOf(static_cast<std::uint32_t>(value(column::kTag)),
                                                 value(column::kBoundaryType))];
    const std::int32_t* const face = surfaces.at<std::int32_t>(column::kSurfaceNodes, i, 4);
    for (int k = 0; k < 4; ++k) {
      if (face[k] < (k == 3 ? 0 : 1) || face[k] > nodeCount) return std::nullopt;
      if (face[k] != 0) nodes.push_back(face[k]);
    }
  }
  for (auto& [group, nodes] : groups) {
    std::sort(nodes.begin(), nodes.end());
    nodes.erase(std::unique(nodes.begin(), nodes.end()), nodes.end());
  }
  return groups;
}

SurfaceInlet inletOf(std::int32_t group, const std::vector<std::int32_t>& numbers, const BlockView& nodes) {
  const auto point = [&nodes](std::int32_t n) {
    const float* const p = nodes.at<float>(0, n - 1, 3);
    return Point{p[0], p[1], p[2]};
  };
  SurfaceInlet inlet{group, {}, 0};
  for (const std::int32_t n : numbers) {
    const auto share = static_cast<double>(numbers.size());
    const Point p = point(n);
    inlet.centroid.x += p.x / share;
    inlet.centroid.y += p.y / share;
    inlet.centroid.z += p.z / share;
  }
  for (const std::int32_t n : numbers)
    inlet.radius = std::max(inlet.radius, distance(point(n), inlet.centroid));
  return inlet;
}

// The layout's inlets that belong to no heater; nothing when a beam names a point that is not there.
std::optional<std::vector<Point>> layoutInlets(const BlockView& layout) {
  struct LayoutPoint {
    Point at;
    std::int32_t type;
    std::int32_t beamCode;
  };
  std::vector<LayoutPoint> points;
  for (std::int32_t i = 0; i < layout.count(); ++i) {
    const std::int32_t* const codes = layout.at<std::int32_t>(1, i, 7);
    const float* const values = layout.at<float>(0, i, 13);
    if (codes[0] != 0) points.push_back({{values[0], values[1], values[2]}, codes[1], 0});
  }
  if (points.empty()) return std::vector<Point>{};
  for (std::int32_t i = 0; i < layout.count(); ++i) {
    const std::int32_t* const codes = layout.at<std::int32_t>(1, i, 7);
    if (codes[0] != 0) continue;
    for (const std::int32_t end : {codes[2], codes[3]}) {
      if (end < 1 || static_cast<std::size_t>(end) > points.size()) return std::nullopt;
      points[static_cast<std::size_t>(end) - 1].beamCode = codes[5];
    }
  }
  constexpr std::array<std::int32_t, 2> kHeaterCodes{6, 60000};
  std::vector<Point> inlets;
  for (const LayoutPoint& point : points)
    if (point.type == 1 &&
        std::find(kHeaterCodes.begin(), kHeaterCodes.end(), point.beamCode) == kHeaterCodes.end())
      inlets.push_back(point.at);
  return inlets;
}

std::vector<GateInfo::Gate> listOf(const std::map<std::int32_t, bool>& groups) {
  std::vector<GateInfo::Gate> gates;
  gates.reserve(groups.size());
  for (const auto& [group, flag] : groups) gates.push_back({group, static_cast<std::uint8_t>(flag ? 1 : 0)});
  return gates;
}

}  // namespace

int OFEIO_Manipulator::getFileSecondBlockExsistency(const char* path) {
  OfeReader file;
  if (path == nullptr || !file.open(path, false)) return -1;
  for (const auto& layout : orvmesh::embedded::allLayouts())
    if (layout.secondPart && file.entryCount(layout.block) > 0) return 1;
  return 0;
}

int OFEIO_Manipulator::getFileFormat(const char* path, int& format) {
  OfeReader file;
  format = path != nullptr && file.open(path, false) ? 1 : 0;
  return format;
}

int OFEIO_Manipulator::extractCoolantInletInfo(const char* path, int, CoolantInletInfo& info) {
  info = {};
  OfeReader file;
  if (path == nullptr || !file.open(path, false)) return -1;
  const auto nodes = file.block(Block::Nodes);
  const auto surfaces = file.block(Block::ElementSurfaces);
  const auto layout = file.block(Block::CoolantChannelLayout);
  if (!nodes || !surfaces || !layout) return -1;
  const auto groups = inletNodes(*surfaces, nodes->count());
  const auto layoutPoints = layoutInlets(*layout);
  if (!groups || !layoutPoints) return -1;

  std::vector<SurfaceInlet> inlets;
  for (const auto& [group, numbers] : *groups) inlets.push_back(inletOf(group, numbers, *nodes));
  for (const SurfaceInlet& inlet : inlets) {
    info.surfaceInletGroups.push_back(inlet.group);
    info.surfaceInletFlags.push_back(1);
  }
  // Circuits have groups up to the last one; whatever else a face may name has no layout.
  std::erase_if(
      inlets, [](const SurfaceInlet& inlet) { return inlet.group < 0 || inlet.group > orvmesh::kLastGroup; });
  for (const Point& point : *layoutPoints) {
    const auto isHere = [&point](const SurfaceInlet& inlet) {
      return distance(point, inlet.centroid) <= inlet.radius;
    };
    info.layoutInletFlags.push_back(std::any_of(inlets.begin(), inlets.end(), isHere) ? 1 : 0);
  }
  return static_cast<int>(info.layoutInletFlags.size() + info.surfaceInletFlags.size());
}

int OFEIO_Manipulator::extractGateInfo(const char* path, bool blockFormat, std::nullptr_t, GateInfo& info,
                                       std::nullptr_t) {
  info = {};
  OfeReader file;
  if (path == nullptr || !blockFormat || !file.open(path, false)) return 0;
  const auto surfaces = file.block(Block::ElementSurfaces);
  const auto plastic = file.blockForColumn(Block::ElementsPlastic, column::kFieldB);
  if (!surfaces || !plastic) return 0;

  std::map<std::int32_t, bool> common;
  std::map<std::int32_t, bool> hotCold;
  for (std::int32_t i = 0; i < surfaces->count(); ++i) {
    const auto value = [&](std::size_t c) { return *surfaces->at<std::int32_t>(c, i, 1); };
    if (value(column::kInterfaceId) != 1) continue;
    const auto tag = static_cast<std::uint32_t>(value(column::kTag));
    const std::int32_t owner = value(column::kElementNo);
    const bool ownedByHotRunner =
        1 <= owner && owner <= plastic->count() &&
        orvmesh::kHotRunnerGroup.holds(*plastic->at<std::int32_t>(column::kFieldB, owner - 1, 1));
    if (orvmesh::isCommonGateTag(tag)) common[orvmesh::tagGroup(tag)] |= ownedByHotRunner;
    if (orvmesh::isHotColdGateTag(tag)) hotCold[orvmesh::tagGroup(tag)] |= ownedByHotRunner;
  }
  info.commonGates = listOf(common);
  info.hotColdGates = listOf(hotCold);
  return 1;
}
