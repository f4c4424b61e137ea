#pragma once

#include <cstdint>
#include <vector>

#include "base/one_based.h"
#include "platform/mesh_records.h"
#include "transfer/rules/element_rules.h"

namespace orvmesh::transfer {

// The numbers that entries of the source get in the target, by their number in the source; 0: not in it.
// Filled as the target is written.
class TargetNumbers {
 public:
  explicit TargetNumbers(const MeshModel& source);

  // Elements are numbered through the target's lists, which are written one after another.
  void elementWritten(ElementList list, std::int32_t e) {
    elements_[static_cast<std::size_t>(list)][e] = ++elementsWritten_;
  }
  void surfaceWritten(std::int32_t s) { surfaces_[s] = ++surfacesWritten_; }
  // `index` counts from 0 within the source's sensors of the kind. Sensors are numbered by kind, those on
  // surfaces (kind 3) have no number.
  void sensorWritten(int kind, std::size_t index) {
    if (kind != kOnSurface)
      sensors_[sensorsBefore(kind) + static_cast<std::int32_t>(index) + 1] = ++sensorsWritten_;
  }

  // Every variant writes every node in its place.
  const OneBasedArray<std::int32_t>& nodes() const { return nodes_; }
  const OneBasedArray<std::int32_t>& elements(ElementList list) const {
    return elements_[static_cast<std::size_t>(list)];
  }
  const OneBasedArray<std::int32_t>& surfaces() const { return surfaces_; }
  const OneBasedArray<std::int32_t>& sensors() const { return sensors_; }
  // The source's surfaces at channel ends, ascending.
  const OneBasedArray<std::int32_t>& channelEnds() const { return channelEnds_; }

 private:
  static constexpr int kOnSurface = 3;
  std::int32_t sensorsBefore(int kind) const { return sensorsBefore_[kind - 1]; }

  OneBasedArray<std::int32_t> nodes_, elements_[3], surfaces_, sensors_, channelEnds_;
  std::int32_t sensorsBefore_[7] = {};
  std::int32_t elementsWritten_ = 0, surfacesWritten_ = 0, sensorsWritten_ = 0;
};

}  // namespace orvmesh::transfer
