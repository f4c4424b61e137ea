#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "base/element_volume.h"
#include "import/surfaces.h"

namespace orvmesh::importing {

// End codes as surface elements of interface 4 carry them.
inline constexpr std::int32_t kHose = 0, kInlet = 1, kOutlet = 2;

// One end of a channel: end faces of one component and name that hang together by nodes.
struct ChannelEnd {
  std::uint32_t component;
  std::int32_t code;
  bool named;  // by a surface group; else the code was chosen by the end's place
  std::uint64_t faces;
  double area;
  Vector center;
};

// A channel group's ends and measures. The line runs from its inlet to its outlet.
struct Channel {
  std::uint32_t component;
  double wallArea;
  double diameter;  // 4 V / A
  bool hasLine;     // false where there is no end at all
  Vector line[2];
};

struct Channels {
  std::vector<ChannelEnd> ends;   // by component, then in coordinate order
  std::vector<Channel> channels;  // all channel components, in their order
};

// Finds the ends and sets the end codes of the surfaces. Of the ends without a name, in coordinate order, the
// first is the inlet if the group has none, the last the outlet if it has none, any other one a hose. Fails
// for a channel that touches no mold element.
Channels measureChannels(const VolumeMesh& volumes, Surfaces& surfaces);

}  // namespace orvmesh::importing
