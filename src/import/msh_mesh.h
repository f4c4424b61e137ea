#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <vector>

#include "import/column.h"
#include "import/element_types.h"
#include "import/node_tags.h"

namespace orvmesh::importing {

struct PhysicalName {
  int dimension;
  int tag;
  std::string name;
};

// The elements of one entity; in MSH 2.2 of one entity within one physical group.
struct ElementSet {
  int dimension;
  std::int32_t entity;
  std::uint32_t firstGroup;  // into MshMesh::groupTags
  std::uint32_t groupCount;
};

// Elements of one type and one set that follow one another in the file with consecutive tags.
struct ElementRun {
  const ElementType* type;
  std::uint64_t firstTag;
  std::uint32_t first;  // position of the first element among those of its shape; unused when not taken
  std::uint32_t count;
  std::int32_t entity;
  std::int32_t group;  // 0 when the group comes with the entity
  std::uint32_t set;   // into MshMesh::sets
};

// A mesh file as it stands. Second-order elements have lost all but their corner nodes; elements of a type
// that is not taken have no connectivity.
struct MshMesh {
  std::string path;
  std::string format;  // "MSH 4.1 binary"

  std::vector<PhysicalName> names;
  NodeTags tags;
  Column<float> xyz;             // 3 per node
  std::vector<ElementRun> runs;  // in the order of the file
  std::vector<ElementSet> sets;
  std::vector<std::int32_t> groupTags;
  std::array<Column<std::int32_t>, kShapes> corners;  // node numbers by shape, cornersOf(shape) per element

  // Tags of the physical groups of a set, all of its dimension, ascending.
  std::span<const std::int32_t> groupsOf(const ElementSet& set) const {
    return std::span(groupTags).subspan(set.firstGroup, set.groupCount);
  }
  std::int32_t nodeCount() const { return static_cast<std::int32_t>(xyz.size() / 3); }
  const std::int32_t* cornersOfElement(const ElementRun& run, std::uint32_t k) const {
    const auto shape = static_cast<std::size_t>(run.type->shape);
    return corners[shape].data() +
           (std::size_t{run.first} + k) * static_cast<std::size_t>(cornersOf(run.type->shape));
  }
};

}  // namespace orvmesh::importing
