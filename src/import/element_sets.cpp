#include <algorithm>

#include "import/msh_sections.h"

namespace orvmesh::importing {
namespace {

EntityGroup keyOf(const ElementRun& run) { return {dimensionOf(run.type->shape), run.entity, run.group}; }

template <class T>
void sortUnique(std::vector<T>& values) {
  std::sort(values.begin(), values.end());
  values.erase(std::unique(values.begin(), values.end()), values.end());
}

}  // namespace

void formSets(MshReading& reading) {
  auto& mesh = reading.mesh;
  std::vector<EntityGroup> keys;
  for (const auto& run : mesh.runs)
    if (keys.empty() || keys.back() != keyOf(run)) keys.push_back(keyOf(run));
  sortUnique(keys);
  sortUnique(reading.entityGroups);
  for (const auto& key : keys) {
    const auto first = static_cast<std::uint32_t>(mesh.groupTags.size());
    if (key.group != 0) mesh.groupTags.push_back(key.group);
    if (reading.version == MshVersion::v41) {
      auto at = std::lower_bound(reading.entityGroups.begin(), reading.entityGroups.end(),
                                 EntityGroup{key.dimension, key.entity, 0});
      for (; at != reading.entityGroups.end() && at->dimension == key.dimension && at->entity == key.entity;
           ++at)
        mesh.groupTags.push_back(at->group);
    }
    mesh.sets.push_back(
        {key.dimension, key.entity, first, static_cast<std::uint32_t>(mesh.groupTags.size()) - first});
  }
  for (auto& run : mesh.runs)
    run.set =
        static_cast<std::uint32_t>(std::lower_bound(keys.begin(), keys.end(), keyOf(run)) - keys.begin());
}

}  // namespace orvmesh::importing
