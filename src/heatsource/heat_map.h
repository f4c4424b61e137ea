#pragma once

#include <orvmesh/heat_source.h>

#include <array>
#include <cstdint>
#include <vector>

#include "heatsource/comsol_report.h"
#include "platform/mesh_records.h"

namespace orvmesh::heatsource {

struct Box {
  std::array<double, 3> low{}, high{};
  std::int64_t points = 0;

  void add(const std::array<double, 3>& point);
  double diagonal() const;
  bool touches(const Box& other) const;
};

// Of the values that are finite.
struct ValueSum {
  std::int64_t count = 0;
  double total = 0, smallest = 0, largest = 0;

  void add(double value);
  double mean() const { return count == 0 ? 0 : total / static_cast<double>(count); }
};

// A point table on the nodes of a mesh, as the analysis gets it, and what lets a wrong table be seen. Arrays
// go by node number, entry 0 is not used; lengths are in cm, model units are taken as cm.
struct HeatMap {
  std::vector<double> source;    // what COrvCool_Electromagnetic_HeatSource hands out
  std::vector<double> loss;      // W/cm2
  std::vector<double> distance;  // to the point; no number where there is none
  ValueSum points, nodes;        // W/cm2
  std::int64_t mapped = 0;       // nodes that have a point
  std::int64_t notFinite = 0;    // of these, nodes whose point has no finite value
  std::int64_t onEmptyRows = 0;  // of these, nodes whose point is a row that is missing, blank or incomplete
  Box pointBox, nodeBox;         // of whole, finite rows, and of all nodes
};

// Throws std::bad_alloc.
HeatMap mapHeat(const COrvTool_PointFileReader& table, const ComsolReport& report, const NodeTable& nodes);

// The factor by which the points are larger (or, below 1, smaller) than the mesh when it looks like a mix-up
// of units: 10, 100, 1000, 10^4, 10^6 or their inverses, give or take a fifth, or one of inches, give or take
// 3 %. 0 when it does not.
double unitMistake(const HeatMap& map);

}  // namespace orvmesh::heatsource
