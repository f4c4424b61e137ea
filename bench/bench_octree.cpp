// Nearest points: the platform's search against plain nanoflann with the same leaf size, building included,
// queries in file order, the two nearest of each.
#include <cmath>
#include <nanoflann.hpp>
#include <random>
#include <vector>

#include "peer.h"
#include "platform/octree.h"

namespace {

using namespace orvmesh::bench;

struct Cloud {
  std::vector<double> xyz;
  std::size_t kdtree_get_point_count() const { return xyz.size() / 3; }
  double kdtree_get_pt(std::size_t i, std::size_t axis) const { return xyz[3 * i + axis]; }
  template <class Box>
  bool kdtree_get_bbox(Box&) const {
    return false;
  }
};

// Anywhere in a cube, in no order.
Cloud randomCloud(std::size_t count, unsigned seed) {
  std::mt19937 random(seed);
  std::uniform_real_distribution<double> anywhere(0, 100);
  Cloud cloud;
  for (std::size_t i = 0; i < 3 * count; ++i) cloud.xyz.push_back(anywhere(random));
  return cloud;
}

// A grid along its rows, as meshers number nodes; `offset` in cells.
Cloud gridCloud(std::size_t count, double offset) {
  const auto side = static_cast<std::size_t>(std::ceil(std::cbrt(static_cast<double>(count))));
  Cloud cloud;
  for (std::size_t i = 0; i < count; ++i)
    for (const std::size_t index : {i % side, i / side % side, i / side / side})
      cloud.xyz.push_back(0.1 * (static_cast<double>(index) + offset));
  return cloud;
}

using Tree = nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, Cloud>, Cloud, 3>;

double searchPlainly(const Cloud& points, const Cloud& queries) {
  const Tree tree(3, points, 10);
  double sum = 0;
  for (std::size_t q = 0; q < queries.xyz.size(); q += 3) {
    std::uint32_t ids[2];
    double squares[2];
    tree.knnSearch(&queries.xyz[q], 2, ids, squares);
    sum += std::sqrt(squares[0]);
  }
  return sum;
}

double search(const Cloud& points, const Cloud& queries) {
  COrv3DOctreeMimic tree;
  const auto count = static_cast<int>(points.xyz.size() / 3);
  tree.SetNodeDimension(count);
  const double* p = points.xyz.data();
  for (int i = 1; i <= count; ++i, p += 3) tree.SetNodeData(i, p[0], p[1], p[2]);
  tree.Init();
  double sum = 0;
  for (std::size_t q = 0; q < queries.xyz.size(); q += 3) {
    int ids[10];
    double dists[10];
    tree.Search(queries.xyz[q], queries.xyz[q + 1], queries.xyz[q + 2], 2, ids, dists);
    sum += dists[1];
  }
  return sum;
}

void run(benchmark::State& state, const Cloud& points, const Cloud& queries) {
  double found = 0, wanted = 0;
  compare(
      state, [&] { found = search(points, queries); }, [&] { wanted = searchPlainly(points, queries); });
  if (std::abs(found - wanted) > 1e-9 * wanted) state.SkipWithError("other distances than nanoflann's");
}

void randomPoints(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  run(state, randomCloud(count, 1), randomCloud(count, 2));
}
BENCHMARK(randomPoints)->Arg(100000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

void nodesOntoNodes(benchmark::State& state) {
  const auto count = static_cast<std::size_t>(state.range(0));
  run(state, gridCloud(count, 0), gridCloud(count, 0.3));
}
BENCHMARK(nodesOntoNodes)->Arg(100000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
