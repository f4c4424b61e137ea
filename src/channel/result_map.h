#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh::channel {

// The nodes of a model that its volume elements use, ascending.
struct KeptNodes {
  std::vector<std::int32_t> numbers;  // in the model
  std::vector<double> xyz;            // 3 per node, model units

  std::int32_t count() const { return static_cast<std::int32_t>(numbers.size()); }
};

KeptNodes nodesInUse(const MeshModel& model);

// Points of another mesh, 1-based arrays of `count` + 1 values.
struct InputNodes {
  std::int32_t count = 0;
  const double* x = nullptr;
  const double* y = nullptr;
  const double* z = nullptr;
};

// Relates every kept node to the nearest input node. All arrays are 1-based; those without memory are passed
// over. An input node that several kept nodes share names the last of them.
struct ResultRelation {
  int* inputToKept = nullptr;  // input.count + 1 entries, zero before
  int* keptToInput = nullptr;  // kept.count() + 1 entries, zero before
  double* distance = nullptr;  // kept.count() + 1 entries
};
void relateNodes(const KeptNodes& kept, const InputNodes& input, const ResultRelation& relation);

}  // namespace orvmesh::channel
