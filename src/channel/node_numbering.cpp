#include "channel/node_numbering.h"

#include <algorithm>
#include <iterator>

namespace orvmesh::channel {

NodeNumbering::NodeNumbering(std::span<const std::int32_t> nodes) {
  constexpr std::size_t kPlacesPerNode = 16;
  const auto last = std::max_element(nodes.begin(), nodes.end());
  if (last == nodes.end() || *last < 1) return;
  if (static_cast<std::size_t>(*last) / kPlacesPerNode <= nodes.size()) {
    numbers_.resize(static_cast<std::size_t>(*last) + 1);
    numberByPlace(nodes);
  } else {
    sort(nodes);
  }
}

void NodeNumbering::numberByPlace(std::span<const std::int32_t> nodes) {
  for (const std::int32_t node : nodes)
    if (node > 0) numbers_[static_cast<std::size_t>(node)] = 1;
  std::int32_t count = 0;
  for (const std::int32_t mark : numbers_) count += mark;
  ascending_.reserve(static_cast<std::size_t>(count));
  for (std::size_t node = 1; node < numbers_.size(); ++node) {
    if (numbers_[node] == 0) continue;
    ascending_.push_back(static_cast<std::int32_t>(node));
    numbers_[node] = static_cast<std::int32_t>(ascending_.size());
  }
}

void NodeNumbering::sort(std::span<const std::int32_t> nodes) {
  std::copy_if(nodes.begin(), nodes.end(), std::back_inserter(ascending_),
               [](std::int32_t node) { return node > 0; });
  std::sort(ascending_.begin(), ascending_.end());
  ascending_.erase(std::unique(ascending_.begin(), ascending_.end()), ascending_.end());
}

std::int32_t NodeNumbering::numberOf(std::int32_t node) const {
  if (node < 1) return 0;
  if (!numbers_.empty()) return numbers_[static_cast<std::size_t>(node)];
  return static_cast<std::int32_t>(std::lower_bound(ascending_.begin(), ascending_.end(), node) -
                                   ascending_.begin()) +
         1;
}

}  // namespace orvmesh::channel
