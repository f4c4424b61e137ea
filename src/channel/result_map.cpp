#include "channel/result_map.h"

#include "platform/octree.h"

namespace orvmesh::channel {

KeptNodes nodesInUse(const MeshModel& model) {
  std::vector<bool> isUsed(static_cast<std::size_t>(model.nodes.count()) + 1);
  for (const ElementTable* table : {&model.elemP, &model.elemM, &model.elemC})
    for (const std::int32_t node : table->connectivity) isUsed[static_cast<std::size_t>(node)] = true;
  KeptNodes kept;
  for (std::int32_t node = 1; node <= model.nodes.count(); ++node) {
    if (!isUsed[static_cast<std::size_t>(node)]) continue;
    const COFE_Node at = model.nodes[node];
    kept.numbers.push_back(node);
    kept.xyz.insert(kept.xyz.end(), {at.x, at.y, at.z});
  }
  return kept;
}

void relateNodes(const KeptNodes& kept, const InputNodes& input, const ResultRelation& relation) {
  COrv3DOctreeMimic tree;
  tree.SetNodeDimension(input.count);
  for (std::int32_t i = 1; i <= input.count; ++i) tree.SetNodeData(i, input.x[i], input.y[i], input.z[i]);
  tree.Init();
  int ids[10] = {};
  double distances[10] = {};
  const double* at = kept.xyz.data();
  for (std::int32_t k = 1; k <= kept.count(); ++k, at += 3) {
    // Kept nodes are finite: one that finds nothing means that no node does.
    if (tree.Search(at[0], at[1], at[2], 2, ids, distances) <= 0) return;
    if (relation.inputToKept != nullptr) relation.inputToKept[ids[1]] = k;
    if (relation.keptToInput != nullptr) relation.keptToInput[k] = ids[1];
    if (relation.distance != nullptr) relation.distance[k] = distances[1];
  }
}

}  // namespace orvmesh::channel
