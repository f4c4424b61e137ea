#pragma once

#include <vector>

#include "base/ranges.h"
#include "platform/mesh_records.h"
#include "platform/ofeio.h"
#include "transfer/prepass/results.h"

namespace orvmesh::transfer {

// True when the face belongs to a plastic element whose group lies in the range.
bool ownerGroupIn(const MeshModel& model, const SurfaceElement& face, const NumberRange& range);

// Node entries of the boundary-condition lists of hot-runner surfaces, and the distinct nodes among them.
HotRunnerNodes countHotRunnerNodes(const MeshModel& model);

// New numbers of the gates, and the number of gate faces that they give.
GateNumbers numberGates(const MeshModel& model, const GateInfo& gates);

// New number of each plastic element in a hot-runner mesh, 0 for those that are not part of it.
OneBasedArray<std::int32_t> numberHotRunnerElements(const ElementTable& plastic);

}  // namespace orvmesh::transfer
