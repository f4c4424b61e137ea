#pragma once

#include <cstdint>
#include <vector>

#include "channel/channel_surface.h"
#include "channel/surface_pieces.h"
#include "platform/mesh_records.h"

namespace orvmesh::channel {

enum class LengthFrom : std::uint8_t { nothing, layout, lines, surface };
enum class VolumeFrom : std::uint8_t { nothing, elements, surface };

// One channel group: coolant or heater, they are numbered apart. Lengths are in model units, 0 where unknown.
struct ChannelGroup {
  std::int32_t group = 0;
  bool isHeater = false;

  std::int64_t elements = 0;
  std::int64_t walls = 0, ends = 0, hoses = 0;  // faces
  SurfacePieces pieces;

  double wettedArea = 0;  // of the walls
  double endArea = 0;     // of inlets, outlets and hoses
  double volume = 0;
  VolumeFrom volumeFrom = VolumeFrom::nothing;
  double length = 0;  // of all its beams (lines)
  LengthFrom lengthFrom = LengthFrom::nothing;
  // Volume by mean area of an end; without ends that of the round channel with this wetted area and volume.
  double surfaceLength = 0;
  double diameter = 0;  // 4 volume / wetted area
};

// All groups that faces, channel elements, beams or lines name, coolant first, ascending. The surface and the
// model are of one file.
std::vector<ChannelGroup> listGroups(const ChannelSurface& surface, const MeshModel& model);

}  // namespace orvmesh::channel
