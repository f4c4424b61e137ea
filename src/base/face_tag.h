#pragma once

#include <cstdint>

#include "base/ranges.h"

namespace orvmesh {

// The packed word of a surface element: flags in bits 0..7, a group number in bits 8..27, bits 28..31 free.
inline constexpr std::uint32_t kTagGroupMask = 0xFFFFF;
inline constexpr std::uint32_t kTagKeptMask = 0xF00000FF;
inline constexpr std::uint32_t kTagCoolantMark = 0x80000000;

constexpr std::int32_t tagGroup(std::uint32_t tag) {
  return static_cast<std::int32_t>((tag >> 8) & kTagGroupMask);
}
constexpr std::uint32_t packedGroup(std::int32_t group) {
  return (static_cast<std::uint32_t>(group) & kTagGroupMask) << 8;
}
// The tag with its group replaced and every other bit kept.
constexpr std::uint32_t withGroup(std::uint32_t tag, std::int32_t group) {
  return (tag & kTagKeptMask) | packedGroup(group);
}
// The tag that names a coolant channel group.
constexpr std::uint32_t coolantTag(std::int32_t group) { return kTagCoolantMark | packedGroup(group); }

// The channel group of a face at a channel's end: the tag's where it has one, else the boundary type.
constexpr std::int32_t channelGroupOf(std::uint32_t tag, std::int32_t boundaryType) {
  return kTaggedGroup.holds(tagGroup(tag)) ? tagGroup(tag) : boundaryType;
}

constexpr bool tagBit(std::uint32_t tag, int bit) { return ((tag >> bit) & 1U) != 0; }
// Bit 0 set and bit 1 or bit 2: a gate shared by part and hot runner.
constexpr bool isCommonGateTag(std::uint32_t tag) {
  return tagBit(tag, 0) && (tagBit(tag, 1) || tagBit(tag, 2));
}
// Bit 0 clear and bits 1 and 2 set: a gate of the hot or cold runner alone.
constexpr bool isHotColdGateTag(std::uint32_t tag) {
  return !tagBit(tag, 0) && tagBit(tag, 1) && tagBit(tag, 2);
}

}  // namespace orvmesh
