#pragma once

#include <array>
#include <cstdint>
#include <initializer_list>
#include <string>

#include "transfer/ofv/cavity_arrays.h"

namespace orvmesh::transfer {

// What is wrong with a request; nothing when it was done.
struct CavityFault {
  int result = 1;
  std::string text;
};

struct CavityCounts {
  std::int32_t nodes = 0, faces = 0, cells = 0, cavities = 0, inlets = 0;
  std::int64_t faceNodes = 0;
};

// The cavity mesh that the module keeps between calls, part by part. Arrays of the caller are 1-based. A part
// is proven against those given before and then copied; one that is refused leaves the record as it was. A
// part that is given again drops those that were proven against it.
class CavityRecord {
 public:
  CavityFault setPath(const char* path);
  CavityFault setCounts(const CavityCounts& counts);
  CavityFault setCavities(const int* number, const int* kind);
  CavityFault setCells(const int* cavity);
  CavityFault setNodes(const double* x, const double* y, const double* z);
  CavityFault setFaces(const int* nodeCount, const int* nodes, const int* owner, const int* neighbour);
  CavityFault setInlets(const int* inlet, const int* group);

  CavityFault write(bool onlyChannels) const;

 private:
  enum Part : std::size_t { kPath, kCounts, kCavities, kCells, kNodes, kFaces, kInlets, kParts };
  static const char* nameOf(Part part);

  CavityFault missing(std::initializer_list<Part> wanted) const;
  void drop(std::initializer_list<Part> parts);

  std::array<bool, kParts> given_{};
  std::string path_;
  CavityCounts counts_;
  CavityArrays arrays_;
};

// The module's record. Not for use by two threads at a time. What it holds is freed by freeCavityRecord and
// at exit.
CavityRecord& cavityRecord();
void freeCavityRecord();

}  // namespace orvmesh::transfer
