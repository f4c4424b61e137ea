#pragma once

#include <cstdint>
#include <limits>
#include <optional>

namespace orvmesh {

// Sums and products of counts and sizes that come from a file: nothing instead of a wrapped value.
inline std::optional<std::uint64_t> checkedProduct(std::uint64_t a, std::uint64_t b) {
  std::uint64_t result = 0;
  if (__builtin_mul_overflow(a, b, &result)) return std::nullopt;
  return result;
}
inline std::optional<std::uint64_t> checkedSum(std::uint64_t a, std::uint64_t b) {
  std::uint64_t result = 0;
  if (__builtin_add_overflow(a, b, &result)) return std::nullopt;
  return result;
}
// For 32-bit words of a file, where any value may stand: wraps where the sum does not fit.
constexpr std::int32_t wrappingSum(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) + static_cast<std::uint32_t>(b));
}
constexpr std::int32_t wrappingDifference(std::int32_t a, std::int32_t b) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(a) - static_cast<std::uint32_t>(b));
}

// Entities are numbered with 32-bit signed integers.
inline constexpr std::uint64_t kMaxEntities = std::numeric_limits<std::int32_t>::max();

}  // namespace orvmesh
