#include "transfer/prepass/diameter_index.h"

#include <algorithm>

namespace orvmesh::transfer {
namespace {

constexpr double kUnknownDiameter = 0.8;

}  // namespace

DiameterIndex::DiameterIndex(const std::vector<ChannelDiameter>& entries) {
  rows_.reserve(entries.size());
  for (const ChannelDiameter& entry : entries)
    if (entry.nodeCount >= 3)
      rows_.push_back({{entry.nodes[0], entry.nodes[1], entry.nodes[2]}, entry.diameter});
  std::stable_sort(rows_.begin(), rows_.end(), [](const Row& a, const Row& b) { return a.nodes < b.nodes; });
}

double DiameterIndex::find(const std::int32_t* nodes) const {
  const Triple wanted{nodes[0], nodes[1], nodes[2]};
  const auto after =
      std::upper_bound(rows_.begin(), rows_.end(), wanted,
                       [](const Triple& triple, const Row& row) { return triple < row.nodes; });
  if (after == rows_.begin() || std::prev(after)->nodes != wanted) return kUnknownDiameter;
  return std::prev(after)->diameter;
}

}  // namespace orvmesh::transfer
