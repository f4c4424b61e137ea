#include "import/node_tags.h"

#include <algorithm>
#include <numeric>

namespace orvmesh::importing {
namespace {

// A table may have this many places per node before a search is the better lookup.
constexpr std::uint64_t kPlacesPerNode = 4;

}  // namespace

void NodeTags::addUnlikeTheLast(std::uint64_t tag) {
  if (tags_.empty()) {
    tags_.resize(count_);
    std::iota(tags_.begin(), tags_.end(), first_);
  }
  if (tag <= tags_.back()) ascending_ = false;
  tags_.push_back(tag);
  ++count_;
}

void NodeTags::sortWith(Column<float>& xyz) {
  std::vector<std::uint32_t> order(tags_.size());
  std::iota(order.begin(), order.end(), 0U);
  std::stable_sort(order.begin(), order.end(),
                   [this](std::uint32_t a, std::uint32_t b) { return tags_[a] < tags_[b]; });
  Column<float> sorted(xyz.size());
  for (std::size_t k = 0; k < order.size(); ++k)
    std::copy_n(xyz.data() + 3 * std::size_t{order[k]}, 3, sorted.data() + 3 * k);
  xyz.swap(sorted);
  std::sort(tags_.begin(), tags_.end());
}

bool NodeTags::finish(Column<float>& xyz) {
  if (tags_.empty()) return true;
  if (!ascending_) sortWith(xyz);
  const auto twin = std::adjacent_find(tags_.begin(), tags_.end());
  if (twin != tags_.end()) {
    repeated_ = *twin;
    return false;
  }
  first_ = tags_.front();
  const std::uint64_t places = tags_.back() - first_ + 1;
  if (places == count_) {
    tags_ = {};
  } else if (places != 0 && places / kPlacesPerNode <= count_) {
    table_.resize(places);
    for (std::size_t k = 0; k < tags_.size(); ++k)
      table_[tags_[k] - first_] = static_cast<std::int32_t>(k + 1);
  }
  return true;
}

std::int32_t NodeTags::search(std::uint64_t tag) const {
  const auto found = std::lower_bound(tags_.begin(), tags_.end(), tag);
  return found == tags_.end() || *found != tag ? 0 : static_cast<std::int32_t>(found - tags_.begin() + 1);
}

}  // namespace orvmesh::importing
