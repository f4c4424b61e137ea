#include "view/distance_summary.h"

#include <algorithm>
#include <cmath>
#include <nlohmann/json.hpp>

#include "base/text_number.h"
#include "view/text_table.h"

namespace orvmesh::view {
namespace {

using Json = nlohmann::ordered_json;

std::string numberText(double value) {
  std::string text;
  appendDefault(text, value);
  return text;
}

// Place of the value that the given part of `count` sorted values does not exceed.
std::size_t rankOf(std::size_t count, std::size_t percent) {
  return (count / 100 * percent + (count % 100 * percent + 99) / 100) - 1;
}

double valueAt(std::vector<double>& values, std::size_t rank) {
  const auto place = values.begin() + static_cast<std::ptrdiff_t>(rank);
  std::nth_element(values.begin(), place, values.end());
  return *place;
}

std::vector<std::size_t> farthest(std::span<const double> distances, std::vector<std::size_t> places,
                                  std::size_t most) {
  const auto isFarther = [distances](std::size_t a, std::size_t b) {
    return distances[a] != distances[b] ? distances[a] > distances[b] : a < b;
  };
  most = std::min(most, places.size());
  std::partial_sort(places.begin(), places.begin() + static_cast<std::ptrdiff_t>(most), places.end(),
                    isFarther);
  places.resize(most);
  return places;
}

}  // namespace

DistanceSummary summarizeDistances(std::span<const double> distances,
                                   const std::function<FarNode(std::size_t)>& nodeAt, std::size_t worst) {
  std::vector<double> values;
  std::vector<std::size_t> places;
  values.reserve(distances.size());
  places.reserve(distances.size());
  for (std::size_t i = 0; i < distances.size(); ++i) {
    if (std::isnan(distances[i])) continue;
    values.push_back(distances[i]);
    places.push_back(i);
  }
  DistanceSummary summary;
  summary.count = static_cast<std::int64_t>(values.size());
  if (values.empty()) return summary;
  for (const std::size_t place : farthest(distances, std::move(places), worst)) {
    summary.worst.push_back(nodeAt(place));
    summary.worst.back().distance = distances[place];
  }
  summary.median = valueAt(values, rankOf(values.size(), 50));
  summary.p99 = valueAt(values, rankOf(values.size(), 99));
  const auto [least, most] = std::minmax_element(values.begin(), values.end());
  summary.minimum = *least;
  summary.maximum = *most;
  return summary;
}

std::string distancesAsText(const DistanceSummary& summary, const std::string& unit) {
  if (summary.count == 0) return "distances  none\n";
  std::string text =
      "distances  of " + std::to_string(summary.count) + " nodes" + (unit.empty() ? "" : ", in " + unit) +
      "\n           minimum " + numberText(summary.minimum) + ", median " + numberText(summary.median) +
      ", 99th percentile " + numberText(summary.p99) + ", maximum " + numberText(summary.maximum) + "\n";
  TextTable table({"farthest", "node", "x", "y", "z", "distance"});
  for (std::size_t i = 0; i < summary.worst.size(); ++i) {
    const FarNode& far = summary.worst[i];
    table.add({std::to_string(i + 1), std::to_string(far.node), numberText(far.position[0]),
               numberText(far.position[1]), numberText(far.position[2]), numberText(far.distance)});
  }
  return text + table.text();
}

Json distancesAsJson(const DistanceSummary& summary) {
  const auto length = [&summary](double value) { return summary.count == 0 ? Json() : Json(value); };
  Json json{
      {"count", summary.count},     {"minimum", length(summary.minimum)}, {"median", length(summary.median)},
      {"p99", length(summary.p99)}, {"maximum", length(summary.maximum)}, {"worst", Json::array()}};
  for (const FarNode& far : summary.worst)
    json["worst"].push_back({{"node", far.node}, {"position", far.position}, {"distance", far.distance}});
  return json;
}

}  // namespace orvmesh::view
