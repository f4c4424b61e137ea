#pragma once

#include <memory>

// Nearest points of a set that is fixed once Init has run.
class COrv3DOctreeMimic {
 public:
  COrv3DOctreeMimic();
  ~COrv3DOctreeMimic();
  COrv3DOctreeMimic(const COrv3DOctreeMimic&) = delete;
  COrv3DOctreeMimic& operator=(const COrv3DOctreeMimic&) = delete;

  void SetNodeDimension(int count);
  // i is 1-based. A point with a non-finite coordinate is never found.
  void SetNodeData(int i, double x, double y, double z);
  void Init();
  // The nearest `count` points: ids[1] is the nearest, ids[2] the second, dists likewise; of points equally
  // far the lowest index comes first. Returns how many were found; 0 leaves ids and dists untouched.
  int Search(double x, double y, double z, int count, int* ids, double* dists);

 private:
  struct Implementation;
  std::unique_ptr<Implementation> implementation_;
};
