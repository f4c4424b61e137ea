#pragma once

#include <cstdint>

namespace orvmesh {

// A closed range of material or group numbers.
struct NumberRange {
  std::int32_t first;
  std::int32_t last;
  constexpr bool holds(std::int32_t n) const { return first <= n && n <= last; }
};

// Part inserts, twice, and not alike: the analysis types nodes, materials and bad elements by the narrow
// range, elements are written and sensors sorted by the shifted one (quirk 1).
inline constexpr NumberRange kInsertTyped{5001, 9999};
inline constexpr NumberRange kInsertWritten{5002, 10001};

// Hot-runner elements among the plastic ones; boundary faces of kind 5 stop one short of it (quirk 2).
inline constexpr NumberRange kHotRunnerGroup{201, 300};
inline constexpr NumberRange kHotRunnerFaceGroup{201, 299};

// Mold materials from here on are heaters: material = kHeaterMaterial + heater group.
inline constexpr std::int32_t kHeaterMaterial = 10900;

// Coolant and heater groups are 0..kLastGroup; tags name channel groups 1..kLastTaggedGroup.
inline constexpr std::int32_t kLastGroup = 1000;
inline constexpr NumberRange kTaggedGroup{1, 999};

inline constexpr std::int32_t kChannelKindCoolant = 1;
inline constexpr std::int32_t kChannelKindHeater = 2;

}  // namespace orvmesh
