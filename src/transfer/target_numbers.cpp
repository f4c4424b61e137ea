#include "transfer/target_numbers.h"

#include <algorithm>
#include <numeric>

namespace orvmesh::transfer {
namespace {

constexpr std::int32_t kChannelEnd = 4;  // interface

using Numbers = OneBasedArray<std::int32_t>;

Numbers channelEndsOf(const SurfaceTable& surfaces) {
  const auto& interface = surfaces.interfaceId;
  Numbers ends(static_cast<std::int32_t>(std::count(interface.begin(), interface.end(), kChannelEnd)));
  std::int32_t k = 0;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s)
    if (interface[static_cast<std::size_t>(s) - 1] == kChannelEnd) ends[++k] = s;
  return ends;
}

}  // namespace

TargetNumbers::TargetNumbers(const MeshModel& source)
    : nodes_(source.nodes.count()),
      elements_{Numbers(source.elemP.count()), Numbers(source.elemM.count()), Numbers(source.elemC.count())},
      surfaces_(source.surfaces.count()),
      channelEnds_(channelEndsOf(source.surfaces)) {
  std::iota(nodes_.data() + 1, nodes_.data() + 1 + nodes_.count(), 1);
  for (int kind = 1; kind <= 6; ++kind) {
    const auto& sensors = source.sensors[static_cast<std::size_t>(kind) - 1];
    sensorsBefore_[kind] =
        sensorsBefore_[kind - 1] + (kind == kOnSurface ? 0 : static_cast<std::int32_t>(sensors.size()));
  }
  sensors_ = Numbers(sensorsBefore_[6]);
}

}  // namespace orvmesh::transfer
