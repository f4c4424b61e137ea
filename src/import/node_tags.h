#pragma once

#include <cstdint>
#include <vector>

#include "import/column.h"

namespace orvmesh::importing {

// The node tags of a mesh file. Node numbers are 1..count in ascending order of tags, so that a mesh whose
// tags are 1..count keeps them.
class NodeTags {
 public:
  // Tags in the order of the file.
  void add(std::uint64_t tag) {
    if (tags_.empty() && (count_ == 0 || tag == first_ + count_)) {
      if (count_ == 0) first_ = tag;
      ++count_;
      return;
    }
    addUnlikeTheLast(tag);
  }
  std::uint64_t count() const { return count_; }

  // Called once, when all tags are known: sorts them, and the three coordinates of each node with them. False
  // when a tag stands twice; repeatedTag() names it.
  bool finish(Column<float>& xyz);
  std::uint64_t repeatedTag() const { return repeated_; }

  // 0 for a tag that no node has.
  std::int32_t numberOf(std::uint64_t tag) const {
    const std::uint64_t k = tag - first_;
    if (tags_.empty()) return k < count_ ? static_cast<std::int32_t>(k + 1) : 0;
    if (!table_.empty()) return k < table_.size() ? table_[k] : 0;
    return search(tag);
  }
  std::uint64_t tagOf(std::int32_t number) const {
    const auto k = static_cast<std::uint64_t>(number) - 1;
    return tags_.empty() ? first_ + k : tags_[k];
  }

 private:
  void addUnlikeTheLast(std::uint64_t tag);
  std::int32_t search(std::uint64_t tag) const;
  void sortWith(Column<float>& xyz);

  std::uint64_t first_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t repeated_ = 0;
  bool ascending_ = true;
  std::vector<std::uint64_t> tags_;  // empty while they are first_, first_ + 1, ...
  std::vector<std::int32_t> table_;  // number by tag - first_, when the tags are dense enough
};

}  // namespace orvmesh::importing
