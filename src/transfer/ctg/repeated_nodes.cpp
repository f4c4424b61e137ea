#include "transfer/ctg/repeated_nodes.h"

#include <algorithm>

#include "transfer/ctg/element_walk.h"

namespace orvmesh::transfer {
namespace {

template <class T>
void makeDistinct(std::vector<T>& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

struct DistinctNodes {
  std::int32_t nodes[kMostFaceNodes] = {};
  std::size_t count = 0;
  std::span<const std::int32_t> span() const { return {nodes, count}; }
};

DistinctNodes distinctNodes(std::span<const std::int32_t> face) {
  DistinctNodes distinct;
  auto& [nodes, count] = distinct;
  for (const std::int32_t node : face) {
    std::size_t k = 0;
    while (k < count && nodes[k] < node) ++k;
    if (k < count && nodes[k] == node) continue;
    for (std::size_t m = count++; m > k; --m) nodes[m] = nodes[m - 1];
    nodes[k] = node;
  }
  return distinct;
}

}  // namespace

RepeatedNodes::NodeSet RepeatedNodes::setOf(std::size_t nodeCount, std::span<const std::int32_t> distinct) {
  NodeSet set{static_cast<std::int32_t>(nodeCount)};
  std::copy(distinct.begin(), distinct.end(), set.begin() + 1);
  return set;
}

void RepeatedNodes::want(std::span<const std::int32_t> face) {
  const DistinctNodes distinct = distinctNodes(face);
  wanted_.push_back(setOf(face.size(), distinct.span()));
  nodes_.insert(nodes_.end(), distinct.nodes, distinct.nodes + distinct.count);
}

void RepeatedNodes::prepare() {
  makeDistinct(wanted_);
  makeDistinct(nodes_);
  numbers_.assign(wanted_.size(), 0);
}

std::size_t RepeatedNodes::place(const NodeSet& set) const {
  const auto at = std::lower_bound(wanted_.begin(), wanted_.end(), set);
  return at != wanted_.end() && *at == set ? static_cast<std::size_t>(at - wanted_.begin()) : wanted_.size();
}

std::int32_t RepeatedNodes::find(std::span<const std::int32_t> face) const {
  return numbers_[place(setOf(face.size(), distinctNodes(face).span()))];
}

void RepeatedNodes::note(std::span<const std::int32_t> face, std::int32_t number) {
  const DistinctNodes distinct = distinctNodes(face);
  DistinctNodes shared;
  for (const std::int32_t node : distinct.span())
    if (std::binary_search(nodes_.begin(), nodes_.end(), node)) shared.nodes[shared.count++] = node;
  for (unsigned subset = 1; subset < 1U << shared.count; ++subset) {
    std::int32_t part[kMostFaceNodes];
    std::size_t size = 0;
    for (std::size_t k = 0; k < shared.count; ++k)
      if ((subset >> k & 1U) != 0) part[size++] = shared.nodes[k];
    if (size == kMostFaceNodes) continue;
    const std::size_t at = place(setOf(face.size(), {part, size}));
    if (at < numbers_.size() && numbers_[at] == 0) numbers_[at] = number;
  }
}

}  // namespace orvmesh::transfer
