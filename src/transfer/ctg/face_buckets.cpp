#include "transfer/ctg/face_buckets.h"

namespace orvmesh::transfer {

FaceBuckets::FaceBuckets(const ElementTable& elements, std::int32_t nodeCount)
    : ends_(static_cast<std::size_t>(nodeCount) + 2) {
  // One place further than its bucket each, so that filling moves the starts of the buckets to their ends.
  eachElement(elements, [&]<int N>(const std::int32_t* nodes) {
    eachFaceOf<N>(nodes, [&](const auto& face) {
      const SortedFace sorted = sortedFace(face);
      ends_[sorted.smallest + 1] += sorted.repeatsNode ? 0U : 1U;
    });
  });
  for (std::size_t k = 1; k < ends_.size(); ++k) ends_[k] += ends_[k - 1];
  faces_ = std::make_unique_for_overwrite<PlacedFace[]>(ends_.back());
  std::uint32_t place = 0;
  eachElement(elements, [&]<int N>(const std::int32_t* nodes) {
    eachFaceOf<N>(nodes, [&](const auto& face) {
      const SortedFace sorted = sortedFace(face);
      if (sorted.repeatsNode) [[unlikely]]
        repeating_.push_back(place);
      else
        faces_[ends_[sorted.smallest]++] = {sorted.key, sorted.fourth, place};
      ++place;
    });
  });
}

}  // namespace orvmesh::transfer
