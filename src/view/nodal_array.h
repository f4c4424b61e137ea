#pragma once

#include <span>
#include <string>

namespace orvmesh::view {

// One value per node of a model, by node number: node count + 1 values, the first of which is not used.
struct NodalArray {
  std::string name;  // letters, digits and _
  std::span<const double> values;
};

}  // namespace orvmesh::view
