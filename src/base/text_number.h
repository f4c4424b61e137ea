#pragma once

#include <charconv>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvmesh {

// Numbers to and from text without any locale. Every text reader and writer of the project goes through here.

// Appends a decimal integer.
template <class Int>
void appendInt(std::string& out, Int value) {
  char digits[24];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end);
}

// Appends a double as a default-formatted stream does: six significant digits, the shorter of fixed and
// scientific.
inline void appendDefault(std::string& out, double value) {
  char digits[32];
  const auto end = std::to_chars(digits, digits + sizeof digits, value, std::chars_format::general, 6).ptr;
  out.append(digits, end);
}

// Appends the shortest text that reads back as the same number.
template <class Float>
void appendExact(std::string& out, Float value) {
  char digits[40];
  const auto end = std::to_chars(digits, digits + sizeof digits, value).ptr;
  out.append(digits, end);
}

// The whole text as one number; nothing when anything is left over or the number does not fit.
template <class N>
std::optional<N> parseNumber(std::string_view text) {
  N value{};
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
  if (error != std::errc{} || end != text.data() + text.size() || text.empty()) return std::nullopt;
  return value;
}

}  // namespace orvmesh
