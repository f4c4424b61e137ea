#pragma once

#include "platform/mesh_records.h"
#include "transfer/prepass/results.h"

namespace orvmesh::transfer {

// Types every node by the components that use it, and lists the nodes that part and part inserts share.
NodeTyping typeNodes(const MeshModel& model);

// Material of every element of the joined part: 1 for each plastic element, then the material of each typed
// part-insert element. Entries 1..plastic count + insertElements.
OneBasedArray<std::int32_t> joinedElementMaterials(const MeshModel& model, std::int32_t insertElements);

// The nodes of types 9, 10, 11 and 12.
ChannelNodeLists listChannelNodes(const NodeTyping& typing);

}  // namespace orvmesh::transfer
