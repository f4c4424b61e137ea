#pragma once

#include <vector>

#include "platform/mesh_records.h"
#include "transfer/prepass/results.h"

namespace orvmesh::transfer {

ContactCounts countContacts(const std::vector<ContactFaceRecord>& contacts);

// Numbers the surface elements that no contact record names, heater walls left out.
SurfaceNumbering numberSurfaces(const SurfaceTable& surfaces, const std::vector<ContactFaceRecord>& contacts);

// The bad elements under the numbers that they get in the joined mesh. With heatersMove, heater elements go
// to the mold block behind the mold elements; without it they stay among the channel elements.
BadElements renumberBadElements(const MeshModel& model, bool heatersMove);

}  // namespace orvmesh::transfer
