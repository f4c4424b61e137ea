#include "platform/octree.h"

#include <algorithm>
#include <cmath>
#include <nanoflann.hpp>
#include <numeric>
#include <tuple>
#include <utility>
#include <vector>

#include "embedded/octree_nearest.h"
#include "embedded/octree_points.h"

using orvmesh::embedded::NearestPoints;
using orvmesh::embedded::NearestTwo;
using orvmesh::embedded::OctreePoints;

namespace {

using Tree =
    nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, OctreePoints>, OctreePoints, 3>;
constexpr std::size_t kLeafSize = 10;

// A set of points with its tree.
struct SearchTree {
  OctreePoints points;
  std::unique_ptr<Tree> tree;

  void build();
  int search(const double (&query)[3], int count, int* numbers, double* dists) const;
};

void SearchTree::build() {
  if (points.places() == 0) return;
  tree = std::make_unique<Tree>(3, points, kLeafSize);
  if (!points.reorder(tree->vAcc)) {
    points.gatherEqualPoints();
    tree = std::make_unique<Tree>(3, points, kLeafSize);
    points.reorder(tree->vAcc);
  }
  std::iota(tree->vAcc.begin(), tree->vAcc.end(), 0U);
}

int SearchTree::search(const double (&query)[3], int count, int* numbers, double* dists) const {
  if (!tree) return 0;
  count = std::min(count, points.found());
  constexpr double kFar = OctreePoints::kFarQuery;
  const double unscale = 1 / points.scale();
  double at[3];
  for (int axis = 0; axis < 3; ++axis) at[axis] = std::clamp(query[axis] * points.scale(), -kFar, kFar);
  if (count <= 2) {
    NearestTwo nearest(points);
    tree->findNeighbors(nearest, at, {});
    nearest.copyTo(count, numbers, dists);
  } else {
    NearestPoints nearest(points, count, numbers, dists);
    tree->findNeighbors(nearest, at, {});
  }
  for (int i = 0; i < count; ++i) {
    const double distance = std::sqrt(dists[i]);
    dists[i] = distance < kFar ? distance * unscale : std::hypot(query[0], query[1], query[2]);
  }
  return count;
}

}  // namespace

struct COrv3DOctreeMimic::Implementation {
  SearchTree near, far;

  int search(const double (&query)[3], int count, int* numbers, double* dists) const;
};

// Both sets know their nearest points; the nearest of all are among them.
int COrv3DOctreeMimic::Implementation::search(const double (&query)[3], int count, int* numbers,
                                              double* dists) const {
  const int fromNear = near.search(query, count, numbers, dists);
  if (!far.tree) return fromNear;
  std::vector<int> farNumbers(static_cast<std::size_t>(std::min(count, far.points.found())));
  std::vector<double> farDists(farNumbers.size());
  const int fromFar = far.search(query, count, farNumbers.data(), farDists.data());
  std::vector<std::pair<double, int>> all;
  all.reserve(static_cast<std::size_t>(fromNear) + farNumbers.size());
  for (int i = 0; i < fromNear; ++i) all.emplace_back(dists[i], numbers[i]);
  for (std::size_t i = 0; i < static_cast<std::size_t>(fromFar); ++i)
    all.emplace_back(farDists[i], farNumbers[i]);
  std::sort(all.begin(), all.end());
  const int found = std::min(count, fromNear + fromFar);
  for (int i = 0; i < found; ++i) std::tie(dists[i], numbers[i]) = all[static_cast<std::size_t>(i)];
  return found;
}

COrv3DOctreeMimic::COrv3DOctreeMimic() : implementation_(std::make_unique<Implementation>()) {}
COrv3DOctreeMimic::~COrv3DOctreeMimic() = default;

void COrv3DOctreeMimic::SetNodeDimension(int count) {
  *implementation_ = {};
  implementation_->near.points.reset(count);
}

void COrv3DOctreeMimic::SetNodeData(int i, double x, double y, double z) {
  implementation_->near.points.set(i, x, y, z);
}

void COrv3DOctreeMimic::Init() {
  SearchTree &near = implementation_->near, &far = implementation_->far;
  if (near.points.isClosed()) return;
  far.points = near.points.close();
  near.build();
  far.build();
}

int COrv3DOctreeMimic::Search(double x, double y, double z, int count, int* ids, double* dists) {
  if (count < 1 || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z)) return 0;
  return implementation_->search({x, y, z}, count, ids + 1, dists + 1);
}
