#include "platform/octree.h"

#include <algorithm>
#include <cmath>
#include <nanoflann.hpp>
#include <numeric>

#include "embedded/octree_nearest.h"
#include "embedded/octree_points.h"

using orvmesh::embedded::NearestPoints;
using orvmesh::embedded::NearestTwo;
using orvmesh::embedded::OctreePoints;

namespace {

using Tree =
    nanoflann::KDTreeSingleIndexAdaptor<nanoflann::L2_Simple_Adaptor<double, OctreePoints>, OctreePoints, 3>;
constexpr std::size_t kLeafSize = 10;

}  // namespace

struct COrv3DOctreeMimic::Implementation {
  OctreePoints points;
  std::unique_ptr<Tree> tree;

  void build();
  int search(const double (&query)[3], int count, int* numbers, double* dists) const;
};

void COrv3DOctreeMimic::Implementation::build() {
  points.close();
  if (points.places() == 0) return;
  tree = std::make_unique<Tree>(3, points, kLeafSize);
  if (!points.reorder(tree->vAcc)) {
    points.gatherEqualPoints();
    tree = std::make_unique<Tree>(3, points, kLeafSize);
    points.reorder(tree->vAcc);
  }
  std::iota(tree->vAcc.begin(), tree->vAcc.end(), 0U);
}

int COrv3DOctreeMimic::Implementation::search(const double (&query)[3], int count, int* numbers,
                                              double* dists) const {
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

COrv3DOctreeMimic::COrv3DOctreeMimic() : implementation_(std::make_unique<Implementation>()) {}
COrv3DOctreeMimic::~COrv3DOctreeMimic() = default;

void COrv3DOctreeMimic::SetNodeDimension(int count) {
  implementation_->tree.reset();
  implementation_->points.reset(count);
}

void COrv3DOctreeMimic::SetNodeData(int i, double x, double y, double z) {
  implementation_->points.set(i, x, y, z);
}

void COrv3DOctreeMimic::Init() {
  if (!implementation_->points.isClosed()) implementation_->build();
}

int COrv3DOctreeMimic::Search(double x, double y, double z, int count, int* ids, double* dists) {
  if (!implementation_->tree || count < 1 || !std::isfinite(x) || !std::isfinite(y) || !std::isfinite(z))
    return 0;
  return implementation_->search({x, y, z}, std::min(count, implementation_->points.found()), ids + 1,
                                 dists + 1);
}
