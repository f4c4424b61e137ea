#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "import/channel_ends.h"
#include "import/sensors.h"
#include "import/volume_mesh.h"

namespace orvmesh::importing {

// What an import read, derived, repaired and left out.
struct ImportReport {
  std::string mesh, format, target;
  std::int32_t nodes = 0;
  std::vector<Component> components;

  struct SurfaceCounts {
    std::uint64_t ofInterface[4] = {};
    std::uint64_t partOnMold = 0;
    std::uint64_t gates = 0;
    std::uint64_t meltInlets = 0;
  } surfaces;

  Channels channels;
  std::vector<PlacedSensor> sensors;
  std::uint64_t conditions = 0;
  std::uint64_t namedSurfaces = 0;  // that carry boundary-condition names
  std::uint64_t facesWithout = 0;   // of groups with such names: no surface lies there

  std::uint64_t turned = 0;
  std::uint64_t flat = 0;
  std::uint64_t bad[3] = {};  // by block, flat ones included
  double badQuality = 0;
  std::uint64_t secondOrder = 0;
  std::int64_t joinedNodes = 0;
  std::int64_t unusedNodes = 0;
  bool unusedDropped = false;
  std::uint64_t overlaps = 0;

  struct Ignored {
    std::string what;
    std::uint64_t elements;
  };
  std::vector<Ignored> ignored;
};

// As a few short tables for people.
std::string reportText(const ImportReport& report);
// The same as one JSON object.
std::string reportJson(const ImportReport& report);

}  // namespace orvmesh::importing
