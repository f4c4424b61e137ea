#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <nlohmann/json_fwd.hpp>
#include <span>
#include <string>
#include <vector>

namespace orvmesh::view {

// A node that was mapped, and how far away it found its partner.
struct FarNode {
  std::int32_t node = 0;
  std::array<double, 3> position{};
  double distance = 0;
};

// How far apart the two sides of a nearest-point map lie, so that a map onto another geometry is seen.
// Lengths are those of the distances given.
struct DistanceSummary {
  std::int64_t count = 0;           // of the distances that are numbers; without any, the rest is 0
  double minimum = 0, maximum = 0;  // ends of the range
  double median = 0, p99 = 0;       // the least distance that 50 (99) in a hundred do not exceed
  std::vector<FarNode> worst;       // the farthest first; equally far ones in the order given
};

// The distances' statistics; what is no number (found nothing) is left out. nodeAt(i) tells number and
// position of the node that distances[i] belongs to; it is asked for the `worst` farthest only, and leaves
// the distance to this function.
DistanceSummary summarizeDistances(std::span<const double> distances,
                                   const std::function<FarNode(std::size_t)>& nodeAt, std::size_t worst = 5);

// Two lines of statistics and a table of the farthest nodes; `unit` may be empty.
std::string distancesAsText(const DistanceSummary& summary, const std::string& unit);
// {"count", "minimum", "median", "p99", "maximum", "worst": [{"node", "position", "distance"}]}; the four
// lengths are null when there is no distance.
nlohmann::ordered_json distancesAsJson(const DistanceSummary& summary);

}  // namespace orvmesh::view
