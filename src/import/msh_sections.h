#pragma once

#include <compare>
#include <cstdint>
#include <vector>

#include "import/msh_mesh.h"
#include "import/msh_source.h"

namespace orvmesh::importing {

enum class MshVersion { v22, v41 };

// One physical group of one entity.
struct EntityGroup {
  int dimension;
  std::int32_t entity;
  std::int32_t group;
  auto operator<=>(const EntityGroup&) const = default;
};

// The reader's state between sections; each function below reads the body of one section.
struct MshReading {
  MshMesh mesh;
  MshVersion version = MshVersion::v41;
  std::vector<EntityGroup> entityGroups;
};

// In MSH 2.2 counts are lines of text in binary files too.
template <class Source>
std::uint64_t readCount22(Source& in, const char* what) {
  TextSource text(in);
  const auto count = text.size(what);
  if (Source::kBinary) text.takeLine();
  in.advance(static_cast<std::size_t>(text.at() - in.at()));
  return count;
}

void readPhysicalNames(TextSource& in, MshReading& reading);
template <class Source>
void readEntities(Source& in, MshReading& reading);
template <class Source>
void readPartitionedEntities(Source& in, MshReading& reading);
template <class Source>
void readNodes(Source& in, MshReading& reading);
template <class Source>
void readElements(Source& in, MshReading& reading);

// Gives each run its set, once every section is read.
void formSets(MshReading& reading);

}  // namespace orvmesh::importing
