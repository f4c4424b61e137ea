#pragma once

#include <cstddef>
#include <string_view>

namespace orvmesh::view {

// Bytes of the well-formed UTF-8 character at the start of the text; 0 when there is none.
inline std::size_t utf8Length(std::string_view text) {
  if (text.empty()) return 0;
  const auto byte = [&](std::size_t i) { return static_cast<unsigned char>(text[i]); };
  const unsigned lead = byte(0);
  if (lead < 0x80) return 1;
  const std::size_t length = lead < 0xC2 ? 0 : lead < 0xE0 ? 2 : lead < 0xF0 ? 3 : lead < 0xF5 ? 4 : 0;
  if (length == 0 || text.size() < length) return 0;
  for (std::size_t i = 1; i < length; ++i)
    if ((byte(i) & 0xC0U) != 0x80) return 0;
  // Overlong forms, surrogates and what lies beyond U+10FFFF.
  const unsigned second = byte(1);
  const bool legal = !(lead == 0xE0 && second < 0xA0) && !(lead == 0xED && second > 0x9F) &&
                     !(lead == 0xF0 && second < 0x90) && !(lead == 0xF4 && second > 0x8F);
  return legal ? length : 0;
}

}  // namespace orvmesh::view
