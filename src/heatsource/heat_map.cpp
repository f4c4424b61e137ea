#include "heatsource/heat_map.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>

namespace orvmesh::heatsource {
namespace {

using Position = std::array<double, 3>;
constexpr double kLossOfSource = -1e-7;

// Between m, cm, mm, micrometres and inches. A table that covers a part of the mesh has a smaller box, too:
// small and odd factors must fit closely.
struct UnitFactor {
  double factor, tolerance;
};
constexpr UnitFactor kUnitFactors[] = {{10, 0.2},    {100, 0.2},   {1000, 0.2},  {1e4, 0.2},
                                       {1e6, 0.2},   {2.54, 0.03}, {25.4, 0.03}, {39.37, 0.03},
                                       {2540, 0.03}, {25400, 0.03}};

struct NodeArrays {
  std::vector<double> x, y, z;

  explicit NodeArrays(const NodeTable& nodes) : x(sizeOf(nodes)), y(x.size()), z(x.size()) {
    for (std::int32_t n = 1; n <= nodes.count(); ++n) {
      const COFE_Node at = nodes[n];
      const auto i = static_cast<std::size_t>(n);
      x[i] = at.x;
      y[i] = at.y;
      z[i] = at.z;
    }
  }
  static std::size_t sizeOf(const NodeTable& nodes) { return static_cast<std::size_t>(nodes.count()) + 1; }
  Position operator[](std::size_t n) const { return {x[n], y[n], z[n]}; }
};

class PointRows {
 public:
  PointRows(const COrvTool_PointFileReader& table, const ComsolReport& report)
      : table_(table), report_(report) {}

  Position operator[](int i) const {
    return {table_.GetX_Link()[i], table_.GetY_Link()[i], table_.GetZ_Link()[i]};
  }
  double loss(int i) const { return table_.GetValue_Link()[i] * kLossOfSource; }
  bool isEmpty(int i) const {
    return i > report_.rows || std::binary_search(report_.empty.begin(), report_.empty.end(), i);
  }

 private:
  const COrvTool_PointFileReader& table_;
  const ComsolReport& report_;
};

bool isFinite(const Position& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

void addPoints(const PointRows& points, int count, HeatMap& map) {
  for (int i = 1; i <= count; ++i) {
    if (points.isEmpty(i) || !isFinite(points[i])) continue;
    map.pointBox.add(points[i]);
    map.points.add(points.loss(i));
  }
}

void addNode(const PointRows& points, int point, const Position& at, std::size_t n, HeatMap& map) {
  if (point == 0) return;
  ++map.mapped;
  const Position from = points[point];
  map.distance[n] = std::hypot(at[0] - from[0], at[1] - from[1], at[2] - from[2]);
  map.loss[n] = points.loss(point);
  map.nodes.add(map.loss[n]);
  if (!std::isfinite(map.loss[n])) ++map.notFinite;
  if (points.isEmpty(point)) ++map.onEmptyRows;
}

}  // namespace

void Box::add(const Position& point) {
  for (std::size_t axis = 0; axis < 3; ++axis) {
    low[axis] = points == 0 ? point[axis] : std::min(low[axis], point[axis]);
    high[axis] = points == 0 ? point[axis] : std::max(high[axis], point[axis]);
  }
  ++points;
}

double Box::diagonal() const { return std::hypot(high[0] - low[0], high[1] - low[1], high[2] - low[2]); }

bool Box::touches(const Box& other) const {
  for (std::size_t axis = 0; axis < 3; ++axis)
    if (low[axis] > other.high[axis] || other.low[axis] > high[axis]) return false;
  return true;
}

void ValueSum::add(double value) {
  if (!std::isfinite(value)) return;
  smallest = count == 0 ? value : std::min(smallest, value);
  largest = count == 0 ? value : std::max(largest, value);
  total += value;
  ++count;
}

HeatMap mapHeat(const COrvTool_PointFileReader& table, const ComsolReport& report, const NodeTable& nodes) {
  HeatMap map;
  NodeArrays at(nodes);
  map.source.assign(at.x.size(), 0);
  map.loss.assign(at.x.size(), 0);
  map.distance.assign(at.x.size(), std::numeric_limits<double>::quiet_NaN());
  const PointRows points(table, report);
  addPoints(points, table.GetPointNumber(), map);
  for (std::size_t n = 1; n < at.x.size(); ++n) map.nodeBox.add(at[n]);

  COrvTool_Point2PointMapping mapping;
  mapping.SetMeshA(table.GetPointNumber(), table.GetX_Link(), table.GetY_Link(), table.GetZ_Link());
  mapping.SetMeshB(nodes.count(), at.x.data(), at.y.data(), at.z.data());
  if (table.GetPointNumber() < 1 || nodes.count() < 1) return map;
  if (!mapping.CreateRelation()) throw std::bad_alloc();
  mapping.MapValue(table.GetValue_Link(), map.source.data());
  for (std::size_t n = 1; n < at.x.size(); ++n) addNode(points, mapping.GetRelation_Link()[n], at[n], n, map);
  return map;
}

double unitMistake(const HeatMap& map) {
  const double points = map.pointBox.diagonal(), mesh = map.nodeBox.diagonal();
  if (!(points > 0) || !(mesh > 0)) return 0;
  for (const auto& [factor, tolerance] : kUnitFactors)
    for (const double wanted : {factor, 1 / factor})
      if (std::abs(points / mesh / wanted - 1) <= tolerance) return wanted;
  return 0;
}

}  // namespace orvmesh::heatsource
