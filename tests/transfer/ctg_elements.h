#pragma once

#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh::test {

// A table of elements given by their node lists.
class Elements {
 public:
  explicit Elements(const std::vector<std::vector<std::int32_t>>& lists)
      : fieldA_(lists.size()), offsets_{0} {
    for (const auto& nodes : lists) {
      nodes_.insert(nodes_.end(), nodes.begin(), nodes.end());
      offsets_.push_back(static_cast<std::int64_t>(nodes_.size()));
      sameCount_ = sameCount_ && nodes.size() == lists.front().size();
    }
    if (sameCount_ && !lists.empty()) common_ = static_cast<std::int32_t>(lists.front().size());
  }
  ElementTable table() const {
    ElementTable table;
    table.connectivity = nodes_;
    table.fieldA = fieldA_;
    if (sameCount_)
      table.nodesPerElement = common_;
    else
      table.offsets = offsets_;
    return table;
  }

 private:
  std::vector<std::int32_t> nodes_, fieldA_;
  std::vector<std::int64_t> offsets_;
  bool sameCount_ = true;
  std::int32_t common_ = 0;
};

}  // namespace orvmesh::test
