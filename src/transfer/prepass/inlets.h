#pragma once

#include <vector>

#include "platform/ofeio.h"

namespace orvmesh::transfer {

// The coolant inlets of a file, from entry 1 on; empty when it has none.
std::vector<std::int32_t> numberInlets(const CoolantInletInfo& info);

}  // namespace orvmesh::transfer
