#pragma once

#include <array>
#include <memory>
#include <string>
#include <vector>

#include "platform/draw_stl.h"
#include "platform/mesh_records.h"

namespace orvmesh::transfer {

// The STL diagnostics of the mold-base mesh: one drawing per class of faces.
class FaceDrawings {
 public:
  enum Group : int {
    TouchesPart = 0,
    OnChannel = 1,
    PartWritten = 2,
    PartUnmatched = 3,
    Air = 5,
    ChannelEnd = 7,
    PartOtherType = 8,
    UnknownInterface = 9,
    AllFaces = 10,
  };
  static constexpr int kGroups = 11;

  // factor: what the model's coordinates are multiplied with.
  FaceDrawings(const NodeTable& nodes, float factor);
  // Four nodes, a triangle repeating its third. Groups beyond the last are ignored.
  void draw(int group, const std::int32_t* nodes);
  // A file for every group with faces, named after the source.
  void write(const std::string& sourcePath) const;

  static std::string suffix(int group);

 private:
  std::vector<float> x_, y_, z_;
  std::array<std::unique_ptr<COrvDrawSTLTool>, kGroups> tools_;
};

}  // namespace orvmesh::transfer
