#pragma once

#include <charconv>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace orvmesh {

// Numbers to and from text without any locale. Every text reader and writer of the project goes through here.

// Bytes that any one number takes at most in writeInt and writeDefault.
inline constexpr std::size_t kNumberRoom = 24;

// Writes a decimal integer at a place with kNumberRoom bytes; the place behind it.
template <class Int>
char* writeInt(char* at, Int value) {
  return std::to_chars(at, at + kNumberRoom, value).ptr;
}
// The same for a double as a default-formatted stream writes it: six significant digits, the shorter of fixed
// and scientific.
char* writeDefault(char* at, double value);

template <class Int>
void appendInt(std::string& out, Int value) {
  char digits[kNumberRoom];
  out.append(digits, writeInt(digits, value));
}
inline void appendDefault(std::string& out, double value) {
  char digits[kNumberRoom];
  out.append(digits, writeDefault(digits, value));
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
