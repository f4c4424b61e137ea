#pragma once

#include <string>
#include <vector>

#include "heatsource/comsol_report.h"
#include "heatsource/heat_map.h"
#include "view/distance_summary.h"

namespace orvmesh::cli {

// What `orvmesh heat` has found and done.
struct HeatJob {
  std::string table, mesh, target, surfaceTarget;
  std::string meshUnit;  // as its header says
  double lengthFactor = 1;
  double start = 0, end = 0;
  bool hasTimes = false;
  heatsource::ComsolReport report;
  heatsource::HeatMap map;
  view::DistanceSummary distances;
};

std::string heatAsText(const HeatJob& job);
std::string heatAsJson(const HeatJob& job);
// What looks wrong, one line each.
std::vector<std::string> heatWarnings(const HeatJob& job);

}  // namespace orvmesh::cli
