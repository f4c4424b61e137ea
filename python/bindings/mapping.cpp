#include <limits>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "channel/result_map.h"
#include "platform/cofedata.h"
#include "platform/octree.h"

namespace orvmesh::python {
namespace {

constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

struct Nearest {
  std::vector<std::int64_t> index;
  std::vector<double> distance;
};

double distanceOf(const double* a, const double* b) {
  return std::hypot(a[0] - b[0], a[1] - b[1], a[2] - b[2]);
}

Nearest search(std::span<const double> points, std::span<const double> queries) {
  const std::size_t count = queries.size() / 3;
  Nearest found{std::vector<std::int64_t>(count, -1), std::vector<double>(count, kNone)};
  COrv3DOctreeMimic tree;
  tree.SetNodeDimension(static_cast<int>(points.size() / 3));
  for (std::size_t i = 0; i < points.size() / 3; ++i)
    tree.SetNodeData(static_cast<int>(i) + 1, points[3 * i], points[3 * i + 1], points[3 * i + 2]);
  tree.Init();
  for (std::size_t q = 0; q < count; ++q) {
    const double* const at = queries.data() + 3 * q;
    int ids[2] = {};
    double distances[2] = {};
    if (tree.Search(at[0], at[1], at[2], 1, ids, distances) < 1) continue;
    found.index[q] = ids[1] - 1;
    found.distance[q] = distanceOf(at, points.data() + 3 * (static_cast<std::size_t>(ids[1]) - 1));
  }
  return found;
}

py::tuple nearest(const Input<double>& points, const Input<double>& queries) {
  const auto from = pointsOf(points, "points"), to = pointsOf(queries, "queries");
  Nearest found = unlocked({}, [&] { return search(from, to); });
  return py::make_tuple(adopt(std::move(found.index)), adopt(std::move(found.distance)));
}

// One coordinate of all points, entry 0 unused.
std::vector<double> axisOf(std::span<const double> points, std::size_t axis) {
  std::vector<double> values{0};
  values.reserve(points.size() / 3 + 1);
  for (std::size_t i = axis; i < points.size(); i += 3) values.push_back(points[i]);
  return values;
}

Nearest relate(const std::string& path, std::span<const double> points) {
  COFEData data;
  if (data.ReadDataBin(path.c_str(), nullptr, 0, false) != 1) throw Fault(kSource, path, data.errorText());
  const channel::KeptNodes kept = channel::nodesInUse(data.model());
  const auto x = axisOf(points, 0), y = axisOf(points, 1), z = axisOf(points, 2);
  std::vector<int> toInput(static_cast<std::size_t>(kept.count()) + 1);
  std::vector<double> distance(toInput.size());
  channel::relateNodes(kept, {static_cast<int>(points.size() / 3), x.data(), y.data(), z.data()},
                       {nullptr, toInput.data(), distance.data()});
  const auto nodes = static_cast<std::size_t>(data.model().nodes.count());
  Nearest found{std::vector<std::int64_t>(nodes, -1), std::vector<double>(nodes, kNone)};
  for (std::size_t k = 0; k + 1 < toInput.size(); ++k) {
    if (toInput[k + 1] == 0) continue;
    const auto node = static_cast<std::size_t>(kept.numbers[k]) - 1;
    found.index[node] = toInput[k + 1] - 1;
    found.distance[node] = distance[k + 1];
  }
  return found;
}

py::tuple nearestToNodes(const Path& path, const Input<double>& points) {
  const std::string name = path.string();
  const auto from = pointsOf(points, "points");
  Nearest found = unlocked({name, ""}, [&] { return relate(name, from); });
  return py::make_tuple(adopt(std::move(found.index)), adopt(std::move(found.distance)));
}

}  // namespace

void addMapping(py::module_& module) {
  module.def(
      "nearest", &nearest, py::arg("points").noconvert(), py::arg("queries").noconvert(),
      "Index (int64, from 0, -1 for none) and distance of the nearest of points (N, 3) for each of queries "
      "(M, 3), two\narrays of shape (M,). Raises Error.");
  module.def("nearest_to_nodes", &nearestToNodes, py::arg("path"), py::arg("points").noconvert(),
             "The same for the nodes of a file that its elements use, -1 for the others: two arrays of shape "
             "(nodes,). Raises "
             "Error.");
}

}  // namespace orvmesh::python
