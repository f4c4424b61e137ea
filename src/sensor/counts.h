#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <numeric>

namespace orvmesh::sensor {

// The types that are numbered, in the order of their numbers. Surface sensors (type 3) have no number.
inline constexpr std::array<int, 5> kNumberedTypes{1, 2, 4, 5, 6};

// How many sensors of each numbered type a mesh has.
struct SensorCounts {
  std::array<std::int32_t, kNumberedTypes.size()> counts{};

  // Place of the type among the counts; their number for any other type.
  static std::size_t placeOf(int type) {
    return static_cast<std::size_t>(std::find(kNumberedTypes.begin(), kNumberedTypes.end(), type) -
                                    kNumberedTypes.begin());
  }
  static bool isNumbered(int type) { return placeOf(type) < kNumberedTypes.size(); }

  std::int32_t& operator[](int type) { return counts[placeOf(type)]; }
  std::int32_t ofType(int type) const { return isNumbered(type) ? counts[placeOf(type)] : 0; }
  // Sensors of the types before a numbered one.
  std::int32_t before(int type) const {
    return std::accumulate(counts.begin(), counts.begin() + static_cast<std::ptrdiff_t>(placeOf(type)), 0);
  }
  std::int32_t total() const { return std::accumulate(counts.begin(), counts.end(), 0); }

  bool operator==(const SensorCounts&) const = default;
};

}  // namespace orvmesh::sensor
