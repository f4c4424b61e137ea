#include <cstdlib>

#include "import/msh_sections.h"

namespace orvmesh::importing {
namespace {

// The sign of a group's tag tells its orientation here.
template <class Source>
void readGroups(Source& in, int dimension, std::int32_t entity, std::vector<EntityGroup>& groups) {
  const auto count = in.size("a number of physical groups");
  in.require(count, 1, 0, 0, "physical groups");
  for (std::uint64_t k = 0; k < count; ++k) {
    const auto tag = in.int32("a physical group");
    if (tag == std::numeric_limits<std::int32_t>::min())
      in.fail("physical group -2147483648 is out of range");
    if (tag != 0) groups.push_back({dimension, entity, std::abs(tag)});
  }
}

template <class Source>
void skipInts(Source& in, const char* what) {
  const auto count = in.size(what);
  in.require(count, 1, 0, 0, what);
  for (std::uint64_t k = 0; k < count; ++k) in.int32(what);
}

template <class Source>
void readEntity(Source& in, int dimension, bool partitioned, std::vector<EntityGroup>& groups) {
  const auto tag = in.int32("an entity tag");
  if (partitioned) {
    in.int32("a parent dimension");
    in.int32("a parent tag");
    skipInts(in, "a number of partitions");
  }
  in.skipReals(dimension == 0 ? 3 : 6, "a coordinate");
  readGroups(in, dimension, tag, groups);
  if (dimension > 0) skipInts(in, "a number of bounding entities");
}

template <class Source>
void readAllDimensions(Source& in, bool partitioned, std::vector<EntityGroup>& groups) {
  std::uint64_t counts[4];
  for (auto& count : counts) count = in.size("a number of entities");
  for (int dimension = 0; dimension < 4; ++dimension)
    for (std::uint64_t k = 0; k < counts[dimension]; ++k) readEntity(in, dimension, partitioned, groups);
}

}  // namespace

template <class Source>
void readEntities(Source& in, MshReading& reading) {
  readAllDimensions(in, false, reading.entityGroups);
}

// A partitioned mesh hangs its elements on these entities instead of the model's own.
template <class Source>
void readPartitionedEntities(Source& in, MshReading& reading) {
  in.size("a number of partitions");
  const auto ghosts = in.size("a number of ghost entities");
  in.require(ghosts, 2, 0, 0, "ghost entities");
  for (std::uint64_t k = 0; k < 2 * ghosts; ++k) in.int32("a ghost entity");
  readAllDimensions(in, true, reading.entityGroups);
}

void readPhysicalNames(TextSource& in, MshReading& reading) {
  const auto count = in.size("a number of physical names");
  in.require(count, 2, 0, 0, "physical names");
  for (std::uint64_t k = 0; k < count; ++k) {
    const auto dimension = in.int32("a dimension");
    if (dimension < 0 || dimension > 3)
      in.fail("a physical name of dimension " + std::to_string(dimension) + "; expected 0 to 3");
    const auto tag = in.int32("a physical tag");
    const auto line = in.takeLine();
    const auto open = line.find('"');
    const auto close = line.rfind('"');
    if (open == line.npos || close <= open) in.fail("a physical name needs quotes");
    reading.mesh.names.push_back({dimension, tag, std::string(line.substr(open + 1, close - open - 1))});
  }
}

template void readEntities(TextSource&, MshReading&);
template void readEntities(BinarySource&, MshReading&);
template void readPartitionedEntities(TextSource&, MshReading&);
template void readPartitionedEntities(BinarySource&, MshReading&);

}  // namespace orvmesh::importing
