#pragma once

#include <cstdint>
#include <span>
#include <vector>

namespace orvmesh::channel {

// Numbers the nodes of a list from 1 in the order of their own numbers, whichever these are. Memory stays
// within a small multiple of the list.
class NodeNumbering {
 public:
  explicit NodeNumbering(std::span<const std::int32_t> nodes);

  // The nodes, each once; those below 1 are left out.
  std::span<const std::int32_t> ascending() const { return ascending_; }
  // The new number; 0 for a node below 1. Only for nodes of the list.
  std::int32_t numberOf(std::int32_t node) const;

 private:
  void numberByPlace(std::span<const std::int32_t> nodes);
  void sort(std::span<const std::int32_t> nodes);

  std::vector<std::int32_t> ascending_;
  std::vector<std::int32_t> numbers_;  // by node; empty when the nodes are too thinly spread for that
};

}  // namespace orvmesh::channel
