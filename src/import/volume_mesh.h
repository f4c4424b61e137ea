#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "import/group_roles.h"
#include "import/msh_mesh.h"

namespace orvmesh::importing {

// All volume elements of one role.
struct Component {
  Role role;
  std::string groups;  // names of the physical groups it comes from
  std::int32_t elements = 0;
  double volumeIn = 0;   // sum over its elements as they came
  double volumeOut = 0;  // and as they are written

  // Fields A and B of its elements.
  std::int32_t fieldA() const;
  std::int32_t fieldB() const;
};

// Consecutive elements of one shape and component, in writing order.
struct VolumeRun {
  Shape shape;
  std::uint32_t component;
  std::uint32_t first;  // position among the elements of its shape
  std::uint32_t count;
  std::int32_t firstElement;  // counted from 0 over all volume elements
  std::uint64_t firstTag;
  std::uint32_t set;  // into MshMesh::sets
};

constexpr std::uint8_t bitOf(Block block) {
  return static_cast<std::uint8_t>(1U << static_cast<unsigned>(block));
}

// The volume elements in the order in which they are written: plastic, mold, channel blocks, within a block
// by component, within a component as in the mesh file. Elements are counted from 0 over all of them.
class VolumeMesh {
 public:
  VolumeMesh(MshMesh& mesh, const GroupRoles& roles);

  std::vector<Component> components;  // in writing order
  // By node number: bit of each block that has an element on the node (see bitOf).
  std::vector<std::uint8_t> blocksOfNode;
  std::span<const VolumeRun> runs() const { return runs_; }
  std::int32_t elementCount() const { return blockFirst_[3]; }
  std::int32_t blockFirst(Block block) const { return blockFirst_[static_cast<std::size_t>(block)]; }
  std::int32_t blockEnd(Block block) const { return blockFirst_[static_cast<std::size_t>(block) + 1]; }
  std::span<const VolumeRun> runsOf(Block block) const;
  std::span<const VolumeRun> runsOf(std::uint32_t component) const;
  // First elements of part, hot runner, mold and channel.
  std::span<const std::int32_t> regionFirst() const { return regionFirst_; }

  const VolumeRun& runOf(std::int32_t element) const;
  const Component& componentOf(std::int32_t element) const { return components[runOf(element).component]; }
  std::uint64_t tagOf(std::int32_t element) const;
  std::span<const std::int32_t> nodesOf(std::int32_t element) const;
  // 1-based number of an element in its block.
  std::int32_t numberInBlock(std::int32_t element) const;
  // "element 17 ('part')", by tag and group names.
  std::string label(std::int32_t element) const;

  // Node numbers of a run, cornersOf(run.shape) per element.
  std::span<std::int32_t> corners(const VolumeRun& run) const;
  MshMesh& mesh() const { return *mesh_; }

 private:
  void listRuns(const GroupRoles& roles);
  void numberElements();

  MshMesh* mesh_;
  std::vector<VolumeRun> runs_;
  std::int32_t blockFirst_[4] = {};
  std::int32_t regionFirst_[4] = {};
};

}  // namespace orvmesh::importing
