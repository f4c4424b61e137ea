#pragma once

#include <cstdint>
#include <vector>

#include "platform/ofeio.h"

namespace orvmesh::channel {

// Points of the channel layout where coolant or a heater begins or ends. Arrays have an unused entry 0.
struct Markers {
  static constexpr int kCoolantInlet = 2;
  static constexpr int kCoolantOutlet = 3;
  static constexpr int kHeaterInlet = 4;

  std::vector<int> kind;
  std::vector<double> x, y, z, diameter;  // as in the file, without its scale factor

  std::int32_t count() const { return kind.empty() ? 0 : static_cast<std::int32_t>(kind.size()) - 1; }
  std::int32_t countOf(int which) const;
};

// Reads the layout block of an open file.
Markers readMarkers(OFEIO_Manipulator& file);

// Beams of these codes are heaters.
constexpr bool isHeaterBeam(int beamCode) { return beamCode == 6 || beamCode == 60000; }

}  // namespace orvmesh::channel
