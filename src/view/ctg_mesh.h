#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

namespace orvmesh::view {

// Counts of the header, in its order.
enum CtgCount : std::size_t {
  kCtgElements,
  kCtgNodes,
  kCtgFaces,
  kCtgPlasticNodes,
  kCtgCoolNodes,
  kCtgAirNodes,
  kCtgPlasticFaces,
  kCtgCoolFaces,
  kCtgAirFaces,
  kCtgOfePlasticFaces,
  kCtgInsertNodes,
  kCtgBoundaryElements,
  kCtgSensors,
  kCtgInletFaces,
  kCtgOutletFaces,
  kCtgCounts
};

// A node or face of a boundary; number is that of the coolant boundary, 0 for the others.
struct CtgBoundaryEntry {
  std::int32_t entity;
  std::int32_t number;
};

// A CTG file as it stands. All lists are in file order, so that entry 0 is number 1.
struct CtgMesh {
  std::string path;
  std::array<std::int32_t, kCtgCounts> counts{};
  std::vector<double> xyz;                         // 3 per node
  std::vector<std::size_t> nodeOffsets{0};         // elements + 1 entries into elementNodes
  std::vector<std::int32_t> elementNodes;          // as [Node] numbers them
  std::vector<std::int32_t> property;              // of elements
  std::vector<std::size_t> faceOffsets{0};         // elements + 1 entries into elementFaces
  std::vector<std::int32_t> elementFaces;          // negative where an earlier element made the face
  std::vector<std::array<std::int32_t, 4>> faces;  // nodes by the numbers of the source mesh; 0: triangle
  std::vector<CtgBoundaryEntry> plasticNodes, coolNodes, airNodes;
  std::vector<CtgBoundaryEntry> plasticFaces, coolFaces, airFaces, ofePlasticFaces;
};

// Reads the file; throws Failure at the first line that is not as docs/formats/ctg.md has it. Numbers of
// elements, nodes and faces are within their counts, section sizes are those of the header.
CtgMesh readCtg(const std::string& path);

// What the check of relations finds out.
struct CtgSummary {
  std::int64_t boundaryFaces = 0;         // of one element
  std::int64_t untypedBoundaryFaces = 0;  // of these, on no boundary
  std::int64_t interiorFaces = 0;         // of two elements
};

// Throws Failure unless every face is made by one element and belongs to at most one other, has the nodes of
// the element's face on both sides, and every element is closed.
CtgSummary checkCtg(const CtgMesh& mesh);

// Is this file a CTG file by its first bytes or, where they say nothing, by its name?
bool looksLikeCtg(const std::string& path);

// What `info` tells about it; throws Failure as the two above do.
std::string ctgInfoAsText(const std::string& path);
std::string ctgInfoAsJson(const std::string& path);

}  // namespace orvmesh::view
