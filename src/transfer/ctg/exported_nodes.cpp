#include "transfer/ctg/exported_nodes.h"

namespace orvmesh::transfer {

ExportedNodes numberExportedNodes(const ElementTable& elements, std::int32_t nodeCount) {
  ExportedNodes nodes;
  nodes.newNumber = OneBasedArray<std::int32_t>(nodeCount);
  for (const std::int32_t node : elements.connectivity) nodes.newNumber[node] = 1;
  for (std::int32_t n = 1; n <= nodeCount; ++n)
    if (nodes.newNumber[n] != 0) nodes.newNumber[n] = ++nodes.count;
  return nodes;
}

}  // namespace orvmesh::transfer
