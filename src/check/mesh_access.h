#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "base/element_volume.h"
#include "check/findings.h"
#include "platform/mesh_records.h"

namespace orvmesh::check {

// The three element lists of a mesh, and its elements counted from 0 over all of them.
enum Block : std::size_t { kPlastic, kMold, kChannel };
inline constexpr std::size_t kBlocks = 3;
inline constexpr const char* kElementKinds[kBlocks] = {"plastic element", "mold element", "channel element"};
inline constexpr const char* kBlockNames[kBlocks] = {"plastic", "mold", "channel"};

inline const ElementTable& tableOf(const MeshModel& model, std::size_t block) {
  const ElementTable* const tables[kBlocks] = {&model.elemP, &model.elemM, &model.elemC};
  return *tables[block];
}

// The list that owns the faces of an interface; kBlocks for an interface outside 1..4.
inline std::size_t ownerBlock(std::int32_t interfaceId) {
  constexpr std::size_t kOwners[] = {kBlocks, kPlastic, kMold, kChannel, kChannel};
  return 1 <= interfaceId && interfaceId <= 4 ? kOwners[interfaceId] : kBlocks;
}

struct ElementRef {
  std::size_t block;
  std::int32_t number;
};
inline std::int64_t elementCount(const MeshModel& model) {
  return std::int64_t{model.elemP.count()} + model.elemM.count() + model.elemC.count();
}
inline ElementRef elementAt(const MeshModel& model, std::uint32_t item) {
  std::size_t block = 0;
  while (block + 1 < kBlocks && item >= static_cast<std::uint32_t>(tableOf(model, block).count()))
    item -= static_cast<std::uint32_t>(tableOf(model, block++).count());
  return {block, static_cast<std::int32_t>(item) + 1};
}

// Calls use(item, nodes) for every volume element.
template <class Use>
void eachElement(const MeshModel& model, Use&& use) {
  std::uint32_t item = 0;
  for (std::size_t block = 0; block < kBlocks; ++block) {
    const ElementTable& table = tableOf(model, block);
    for (std::int32_t e = 1; e <= table.count(); ++e) use(item++, table.nodes(e));
  }
}

inline Vector positionOf(const MeshModel& model, std::int32_t node) {
  const COFE_Node p = model.nodes[node];
  return {p.x, p.y, p.z};
}
// The mean of the nodes, in model units.
Vector middleOf(const MeshModel& model, std::span<const std::int32_t> nodes);

Entity nodeEntity(const MeshModel& model, std::int32_t node, std::string detail = {});
Entity elementEntity(const MeshModel& model, ElementRef element, std::string detail = {});
Entity surfaceEntity(const MeshModel& model, std::int32_t surface, std::string detail = {});
// "mold element 17"
std::string textOf(ElementRef element);

// What has each node: bits 0 to 2 the element lists, bit 31 a surface element, the bits between a body each:
// a material and group of plastic, a material of the mold, the channels. Bodies beyond the last bit share it.
using NodeUses = std::vector<std::uint32_t>;  // by node number
inline constexpr std::uint32_t kBlockBits = 0b111, kSurfaceBit = 0x80000000;
inline constexpr std::uint32_t kBodyBits = ~(kBlockBits | kSurfaceBit);
NodeUses usesOfNodes(const MeshModel& model);

}  // namespace orvmesh::check
