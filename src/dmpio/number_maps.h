#pragma once

#include <cstdint>
#include <span>
#include <string>

namespace orvmesh::dmpio {

// The numbers that a transfer gave to the entries of its source: value i - 1 belongs to number i of the
// source, 0 means that the target does not hold it. docs/formats/dmp.md tells where they stand in a dump.
struct NumberMaps {
  std::span<const std::int32_t> nodes, plastic, moldBase, coolChannel, surfaces, sensors;
  std::span<const std::int32_t> channelEnds;  // surface numbers in the source
};

// False for a version whose readers do not find a sensor map.
bool keepsSensorMap(int version);
// Writes them as a dump, which appears complete or not at all. Throws Failure.
void writeNumberMaps(const NumberMaps& maps, const std::string& path, int version);

}  // namespace orvmesh::dmpio
