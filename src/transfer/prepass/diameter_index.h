#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh::transfer {

// Channel diameters by the first three nodes of a face, in their order.
class DiameterIndex {
 public:
  explicit DiameterIndex(const std::vector<ChannelDiameter>& entries);
  // In model units; of several matching entries the last one counts, 0.8 when there is none.
  double find(const std::int32_t* nodes) const;

 private:
  using Triple = std::array<std::int32_t, 3>;
  struct Row {
    Triple nodes;
    double diameter;
  };
  std::vector<Row> rows_;  // ascending; equal triples in the order of the entries
};

}  // namespace orvmesh::transfer
