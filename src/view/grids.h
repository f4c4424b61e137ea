#pragma once

#include <vector>

#include "platform/mesh_records.h"
#include "view/nodal_array.h"
#include "view/vtu_writer.h"

namespace orvmesh::view {

// The volume elements of a model as a grid: plastic, mold and channel elements one after another. The grid's
// arrays are made from the model and this object while they are written, and those of the nodes from memory
// that must live as long.
class VolumeGrid {
 public:
  explicit VolumeGrid(const MeshModel& model);
  VtuGrid grid(std::span<const NodalArray> nodal) const;

 private:
  void writeConnectivity(VtuSink& sink) const;
  template <class T>
  void writeOffsets(VtuSink& sink) const;
  void writeTypes(VtuSink& sink) const;

  const MeshModel& model_;
  std::array<const ElementTable*, 3> tables_;
  std::array<std::vector<std::uint8_t>, 3> bad_;
};

// The surface elements of a model as a grid of the nodes that they use.
class SurfaceGrid {
 public:
  explicit SurfaceGrid(const MeshModel& model);
  VtuGrid grid(std::span<const NodalArray> nodal) const;

 private:
  void numberNodes();
  void writePoints(VtuSink& sink) const;
  void writeNodeNumbers(VtuSink& sink) const;
  void writeNodal(VtuSink& sink, std::span<const double> values) const;
  void writeConnectivity(VtuSink& sink) const;
  void writeOffsets(VtuSink& sink) const;

  const MeshModel& model_;
  std::vector<std::int32_t> point_;  // of each node: 1 + its point, or 0
  std::uint64_t points_ = 0, corners_ = 0;
};

}  // namespace orvmesh::view
