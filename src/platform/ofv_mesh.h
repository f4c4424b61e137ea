#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvmesh {

// Kinds of cavities.
inline constexpr std::int32_t kCavityOther = 0;
inline constexpr std::int32_t kCavityChannel = 1;

// A finite-volume mesh as arrays of someone else. Points, faces, cells and cavities are numbered from 1;
// entry i of an array belongs to the thing number i + 1.
struct OFVMesh {
  std::span<const double> xyz;                 // 3 per point
  std::span<const std::int64_t> faceOffsets;   // faces + 1, into faceNodes; the first is 0
  std::span<const std::int32_t> faceNodes;     // points of the faces, as seen from outside the owner
  std::span<const std::int32_t> owner;         // cell that a face's area vector points out of
  std::span<const std::int32_t> neighbour;     // cell that it points into, 0 on the boundary
  std::span<const std::int32_t> cellCavity;    // cavity of each cell, its place in the list of cavities
  std::span<const std::int32_t> cavityNumber;  // what the model calls it, each number once
  std::span<const std::int32_t> cavityKind;    // kCavityOther or kCavityChannel
  std::span<const std::int32_t> inletID;       // each once
  std::span<const std::int32_t> inletGroup;    // channel group of each inlet

  std::int32_t pointCount() const { return static_cast<std::int32_t>(xyz.size() / 3); }
  std::int32_t faceCount() const { return static_cast<std::int32_t>(owner.size()); }
  std::int32_t cellCount() const { return static_cast<std::int32_t>(cellCavity.size()); }
  std::int32_t cavityCount() const { return static_cast<std::int32_t>(cavityNumber.size()); }
  // Points of a face; f counts from 0.
  std::span<const std::int32_t> nodes(std::size_t f) const {
    return faceNodes.subspan(static_cast<std::size_t>(faceOffsets[f]),
                             static_cast<std::size_t>(faceOffsets[f + 1] - faceOffsets[f]));
  }
};

// What is wrong with a part of a mesh in one line, empty when nothing is. Each looks at its own arrays and at
// the counts of what they name, and trusts neither sizes nor values; the parts named must have been proven.
std::string faultOfPoints(const OFVMesh& mesh);    // whole triples, finite, at most 2^31 - 1 points
std::string faultOfCavities(const OFVMesh& mesh);  // numbers once each, kinds known
std::string faultOfCells(const OFVMesh& mesh);     // cavities in range
std::string faultOfFaces(const OFVMesh& mesh);     // offsets tile, 3 or more points in range, cells in range
std::string faultOfInlets(const OFVMesh& mesh);    // inlets once each, groups 0 to 1000

// The same about how faces and cells fit together, once all parts have been proven: no point twice in a face,
// no two faces with the same points, at least four faces to a cell, every cell closed, no cavity inside out.
std::string faultOfRelations(const OFVMesh& mesh);

// Volume of the cells of each cavity. For a mesh whose parts have been proven.
std::vector<double> cavityVolumes(const OFVMesh& mesh);

// The faces of every cell: cell c (from 0) has faces[offsets[c]] to faces[offsets[c + 1] - 1], ascending;
// numbers from 1, negative where the cell is the neighbour. For a mesh whose parts have been proven.
struct CellFaces {
  std::vector<std::int64_t> offsets;
  std::vector<std::int32_t> faces;

  std::span<const std::int32_t> of(std::size_t c) const {
    return std::span(faces).subspan(static_cast<std::size_t>(offsets[c]),
                                    static_cast<std::size_t>(offsets[c + 1] - offsets[c]));
  }
};
CellFaces facesOfCells(const OFVMesh& mesh);

}  // namespace orvmesh
