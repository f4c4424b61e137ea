#pragma once

#include <cstdint>

#include "base/one_based.h"
#include "platform/mesh_records.h"

namespace orvmesh::transfer {

// The nodes that mold elements use, numbered in their order.
struct ExportedNodes {
  OneBasedArray<std::int32_t> newNumber;  // 0: used by no mold element
  std::int32_t count = 0;
};

ExportedNodes numberExportedNodes(const ElementTable& elements, std::int32_t nodeCount);

}  // namespace orvmesh::transfer
