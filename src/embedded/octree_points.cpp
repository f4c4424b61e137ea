#include "embedded/octree_points.h"

#include <algorithm>
#include <bit>
#include <iterator>
#include <limits>

namespace orvmesh::embedded {
namespace {

std::uint64_t hashOf(const double* p) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15U;
  std::uint64_t hash = 0;
  for (int axis = 0; axis < 3; ++axis) {
    hash = (hash ^ std::bit_cast<std::uint64_t>(p[axis])) * kFactor;
    hash ^= hash >> 32;
  }
  return hash * kFactor;
}

}  // namespace

void OctreePoints::reset(int count) {
  *this = {};
  constexpr double kUnset = std::numeric_limits<double>::quiet_NaN();
  places_.assign(static_cast<std::size_t>(std::max(count, 0)), {{kUnset, kUnset, kUnset}, 0});
}

void OctreePoints::set(int number, double x, double y, double z) {
  const auto at = static_cast<std::size_t>(number) - 1;
  if (closed_ || number < 1 || at >= places_.size()) return;
  places_[at] = {{x + 0.0, y + 0.0, z + 0.0}, number};  // -0 becomes 0: equal points have equal bits
}

OctreePoints OctreePoints::close() {
  const auto isOrdinary = [](const Place& place) {
    return std::abs(place.xyz[0]) <= kFarPoint && std::abs(place.xyz[1]) <= kFarPoint &&
           std::abs(place.xyz[2]) <= kFarPoint;
  };
  OctreePoints far;
  if (!std::all_of(places_.begin(), places_.end(), isOrdinary)) {
    std::copy_if(places_.begin(), places_.end(), std::back_inserter(far.places_),
                 [&](const Place& place) { return place.isFinite() && !isOrdinary(place); });
    far.shrink();
    std::erase_if(places_, [&](const Place& place) { return !isOrdinary(place); });
  }
  for (OctreePoints* set : {this, &far}) {
    set->closed_ = true;
    set->found_ = static_cast<int>(set->places_.size());
  }
  return far;
}

void OctreePoints::shrink() {
  scale_ = 0x1p-575;
  for (Place& place : places_)
    for (double& value : place.xyz) value *= scale_;
}

bool OctreePoints::reorder(const std::vector<std::uint32_t>& placeAt) {
  std::vector<Place> places;
  places.reserve(places_.size());
  for (const std::uint32_t from : placeAt) {
    places.push_back(places_[from]);
    const Place* const last = &places.back();
    if (places.size() > 2 && last->isSameAs(last[-1]) && last->isSameAs(last[-2])) return false;
  }
  places_ = std::move(places);
  return true;
}

// Otherwise a search at a place with a million points would have to look at every one of them.
void OctreePoints::gatherEqualPoints() {
  if (places_.empty()) return;
  const std::int32_t highest = places_.back().number;
  std::vector<std::uint32_t> slots(std::bit_ceil(2 * places_.size()));  // 1 + place
  const int shift = std::countl_zero(slots.size()) + 1;
  std::vector<Copy> copies;
  std::uint32_t used = 0;
  for (const Place& place : places_) {
    std::size_t slot = hashOf(place.xyz) >> shift;
    while (slots[slot] != 0 && !place.isSameAs(places_[slots[slot] - 1])) slot = (slot + 1) % slots.size();
    if (slots[slot] != 0) {
      copies.push_back({places_[slots[slot] - 1].number, place.number});
    } else {
      places_[used] = place;
      slots[slot] = ++used;
    }
  }
  places_.resize(used);
  chain(copies, highest);
}

// Backwards, so that every chain ascends.
void OctreePoints::chain(const std::vector<Copy>& copies, std::int32_t highestNumber) {
  next_.assign(static_cast<std::size_t>(highestNumber) + 1, 0);
  for (auto copy = copies.rbegin(); copy != copies.rend(); ++copy) {
    auto& next = next_[static_cast<std::size_t>(copy->original)];
    next_[static_cast<std::size_t>(copy->number)] = next;
    next = copy->number;
  }
}

}  // namespace orvmesh::embedded
