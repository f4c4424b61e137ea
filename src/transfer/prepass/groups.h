#pragma once

#include "platform/mesh_records.h"
#include "transfer/prepass/results.h"

namespace orvmesh::transfer {

// The highest group number among the channel ends, 0 when there are none.
std::int32_t highestChannelGroup(const SurfaceTable& surfaces);

// Heater elements, flags and groups among the channel elements (kind 2 and above are heaters here).
HeaterGroups groupsOfChannels(const MeshModel& model);

// Heater elements, flags and groups among the mold elements (material 10900 + group). The coolant groups are
// the group numbers below the highest heater group that no heater uses (quirk 13).
HeaterGroups groupsOfMold(const MeshModel& model);

// Counts the heater faces and gives the nodes of heater ends the type of heater faces.
HeaterFaces markHeaterFaces(const SurfaceTable& surfaces, const HeaterGroups& heaters, NodeTyping& typing);

}  // namespace orvmesh::transfer
