#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <vector>

namespace orvmesh::transfer {

// Finds the first face that holds all nodes of a face with a repeated node. Such a face is the same as any
// with as many nodes that holds its two or three different ones, so that the buckets of whole faces cannot
// find it.
class RepeatedNodes {
 public:
  // First all faces with a repeated node, then prepare(), then the faces as they get their numbers.
  void want(std::span<const std::int32_t> face);
  void prepare();
  // Number of the first face noted that holds the nodes of this one; 0 when there is none.
  std::int32_t find(std::span<const std::int32_t> face) const;
  void note(std::span<const std::int32_t> face, std::int32_t number);

 private:
  // Node count of the face, then its different nodes, ascending; at most three are ever looked for.
  using NodeSet = std::array<std::int32_t, 4>;
  static NodeSet setOf(std::size_t nodeCount, std::span<const std::int32_t> distinct);
  std::size_t place(const NodeSet& set) const;  // in wanted_; its size when it is not there

  std::vector<NodeSet> wanted_;
  std::vector<std::int32_t> numbers_;
  std::vector<std::int32_t> nodes_;  // all nodes of wanted sets, ascending
};

}  // namespace orvmesh::transfer
