#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

#include "base/text_number.h"

namespace orvmesh::embedded {

inline constexpr std::size_t kNoneFound = static_cast<std::size_t>(-1);

// Position of the first value for which isWrong holds, else kNoneFound. Whole pieces are tested without a
// branch per value, so that a sound column costs little more than its memory traffic.
template <class T, class IsWrong>
std::size_t findWrong(std::span<const T> values, IsWrong isWrong) {
  constexpr std::size_t kPiece = 4096;
  for (std::size_t begin = 0; begin < values.size(); begin += kPiece) {
    const auto piece = values.subspan(begin, std::min(kPiece, values.size() - begin));
    unsigned wrong = 0;
    for (const T value : piece) wrong |= static_cast<unsigned>(isWrong(value));
    if (wrong == 0) continue;
    for (std::size_t i = 0; i < piece.size(); ++i)
      if (isWrong(piece[i])) return begin + i;
  }
  return kNoneFound;
}

// first - 1 == last is the empty range.
inline std::size_t findOutside(std::span<const std::int32_t> values, std::int32_t first, std::int32_t last) {
  const auto low = static_cast<std::uint32_t>(first);
  const std::uint32_t width = static_cast<std::uint32_t>(last) - low + 1;
  return findWrong(values,
                   [low, width](std::int32_t v) { return static_cast<std::uint32_t>(v) - low >= width; });
}

inline bool isNotFinite(float value) {
  constexpr std::uint32_t kExponent = 0x7f800000;
  return (std::bit_cast<std::uint32_t>(value) & kExponent) == kExponent;
}
inline std::size_t findNotFinite(std::span<const float> values) { return findWrong(values, isNotFinite); }

template <class Float>
std::string exactText(Float value) {
  std::string text;
  appendExact(text, value);
  return text;
}
inline std::string rangeText(std::int64_t first, std::int64_t last) {
  return std::to_string(first) + " to " + std::to_string(last);
}

}  // namespace orvmesh::embedded
