#include "import/group_roles.h"

#include <algorithm>
#include <map>
#include <unordered_map>
#include <unordered_set>
#include <utility>

#include "base/failure.h"
#include "base/nearest_name.h"
#include "base/text_number.h"

namespace orvmesh::importing {
namespace {

constexpr const char* kDimensionNames[] = {"point", "line", "surface", "volume"};

std::string pairText(int dimension, std::int32_t tag) {
  return std::to_string(dimension) + ":" + std::to_string(tag);
}

std::vector<Group> listGroups(const MshMesh& mesh) {
  std::vector<std::uint64_t> elementsOfSet(mesh.sets.size());
  for (const auto& run : mesh.runs) elementsOfSet[run.set] += run.count;
  std::map<std::pair<int, std::int32_t>, std::uint64_t> elements;
  for (std::size_t k = 0; k < mesh.sets.size(); ++k)
    for (const auto tag : mesh.groupsOf(mesh.sets[k]))
      elements[{mesh.sets[k].dimension, tag}] += elementsOfSet[k];
  std::map<std::pair<int, std::int32_t>, const std::string*> names;
  for (const auto& name : mesh.names) names.emplace(std::pair(name.dimension, name.tag), &name.name);
  std::vector<Group> groups;
  for (const auto& [key, count] : elements) {
    const auto name = names.find(key);
    groups.push_back({key.first, key.second, name == names.end() ? "" : *name->second, count, {}, false});
  }
  return groups;
}

// Gives each group its role or says why it has none.
class Assignment {
 public:
  Assignment(const MshMesh& mesh, const RolesFile& roles)
      : mesh_(mesh), roles_(roles), carriers_(listCarriers(roles)) {
    for (const auto& mapping : roles.mappings) mappings_.emplace(mapping.group, &mapping);
  }

  std::vector<Group> assign() {
    checkMappings();
    auto groups = listGroups(mesh_);
    for (auto& group : groups) assign(group);
    const bool anyVolume = std::any_of(groups.begin(), groups.end(), [](const Group& group) {
      return group.dimension == 3 && isVolume(group.role.kind);
    });
    if (!anyVolume) failNoVolume(groups);
    if (!firstUnknown_.empty()) throw Failure(mesh_.path, firstUnknown_);
    return groups;
  }

 private:
  // A mapping that names no group of the mesh is a slip.
  void checkMappings() const {
    std::vector<std::string_view> known;
    for (const auto& name : mesh_.names) known.emplace_back(name.name);
    std::unordered_set<std::string> keys;
    for (const auto name : known) keys.emplace(name);
    for (const auto& group : listGroups(mesh_)) keys.emplace(pairText(group.dimension, group.tag));
    for (const auto& mapping : roles_.mappings) {
      const auto& key = mapping.group;
      if (keys.contains(key)) continue;
      throw Failure(
          roles_.path,
          "groups." + key + ": the mesh has no such group" +
              (known.empty() ? "" : "; the nearest name is '" + std::string(nearestName(key, known)) + "'"));
    }
  }

  void assign(Group& group) {
    group.carries =
        carriers_.contains(group.name) || carriers_.contains(pairText(group.dimension, group.tag));
    if (const auto* mapping = mappingOf(group); mapping != nullptr) {
      group.role = mapping->role;
    } else if (group.dimension != 1) {
      takeName(group);
    }
    const int expected = dimensionOf(group.role.kind);
    if (expected >= 0 && expected != group.dimension)
      throw Failure(mesh_.path, group.label() + ": the role " + textOf(group.role) + " is for " +
                                    kDimensionNames[expected] + " groups");
  }

  const RolesFile::Mapping* mappingOf(const Group& group) const {
    const auto find = [&](const std::string& key) {
      const auto found = mappings_.find(key);
      return found == mappings_.end() ? nullptr : found->second;
    };
    const auto* const byName = group.name.empty() ? nullptr : find(group.name);
    const auto* const byPair = find(pairText(group.dimension, group.tag));
    if (byName == nullptr || byPair == nullptr) return byName == nullptr ? byPair : byName;
    return std::min(byName, byPair);  // the earlier one
  }

  void takeName(Group& group) {
    const auto parsed = parseRole(group.name);
    if (parsed.problem.empty()) {
      group.role = parsed.role;
    } else if (!parsed.unknown) {
      throw Failure(mesh_.path, group.label() + ": " + parsed.problem);
    } else if (!roles_.ignoreUnlisted && !group.carries && firstUnknown_.empty()) {
      firstUnknown_ = group.label() + ": " + (group.name.empty() ? "no role" : parsed.problem) +
                      " (rename the group, or map it or ignore it with --roles)";
    }
  }

  static std::unordered_set<std::string> listCarriers(const RolesFile& roles) {
    std::unordered_set<std::string> keys;
    for (const auto& condition : roles.conditions) keys.insert(condition.group);
    for (const auto& name : roles.bcNames) keys.insert(name.groups.begin(), name.groups.end());
    keys.erase("");
    return keys;
  }

  [[noreturn]] void failNoVolume(const std::vector<Group>& groups) const {
    constexpr std::size_t kShown = 12;
    std::string text = "no volume has a role; physical groups found:";
    for (std::size_t k = 0; k < groups.size() && k < kShown; ++k)
      text += (k == 0 ? " " : ", ") + groups[k].label();
    if (groups.size() > kShown) text += ", ...";
    if (groups.empty()) text += " none";
    throw Failure(mesh_.path, text +
                                  " (a volume needs part, hotrunner:GROUP, insert:MATERIAL, moldbase, "
                                  "channel:GROUP or heater:GROUP)");
  }

  const MshMesh& mesh_;
  const RolesFile& roles_;
  std::unordered_map<std::string, const RolesFile::Mapping*> mappings_;  // the first one of each key
  const std::unordered_set<std::string> carriers_;                       // groups that conditions stand on
  std::string firstUnknown_;
};

std::string setLabel(const ElementSet& set) {
  return std::string(kDimensionNames[set.dimension]) + " entity " + std::to_string(set.entity);
}

Role roleOf(const MshMesh& mesh, const ElementSet& set, const GroupRoles& roles) {
  const Group* owner = nullptr;
  for (const auto tag : mesh.groupsOf(set)) {
    const auto& group = roles.find(set.dimension, tag);
    if (group.role.kind == RoleKind::ignore) continue;
    if (owner != nullptr && owner->role != group.role)
      throw Failure(mesh.path, setLabel(set) + " is in two roles, " + owner->label() + " and " +
                                   group.label() + "; two components cannot share elements");
    owner = &group;
  }
  return owner == nullptr ? Role{} : owner->role;
}

// Volume elements without any group are more likely forgotten than meant.
void checkGroups(const MshMesh& mesh, const ElementRun& run) {
  const auto& set = mesh.sets[run.set];
  if (set.dimension != 3 || set.groupCount > 0) return;
  throw Failure(mesh.path, setLabel(set) + " (element " + std::to_string(run.firstTag) +
                               " and others) belongs to no physical group; give it one with a role, or one "
                               "that --roles ignores");
}

void checkType(const MshMesh& mesh, const ElementRun& run, const GroupRoles& roles) {
  const auto& set = mesh.sets[run.set];
  if (run.type->taken()) return;
  for (const auto tag : mesh.groupsOf(set)) {
    const auto& group = roles.find(set.dimension, tag);
    if (group.role.kind == RoleKind::ignore) continue;
    throw Failure(mesh.path, group.label() + ", element " + std::to_string(run.firstTag) + ": a " +
                                 nameOf(run.type->shape) + " of order " + std::to_string(run.type->order) +
                                 " (type " + std::to_string(run.type->code) +
                                 "); elements of first and second order are taken");
  }
}

}  // namespace

std::string Group::label() const {
  return std::string(kDimensionNames[dimension]) + " group " +
         (name.empty() ? pairText(dimension, tag) + " (no name)" : "'" + name + "'");
}

const Group& GroupRoles::find(int dimension, std::int32_t tag) const {
  return *std::lower_bound(groups.begin(), groups.end(), std::pair(dimension, tag),
                           [](const Group& group, const std::pair<int, std::int32_t>& key) {
                             return std::pair(group.dimension, group.tag) < key;
                           });
}

const Group* GroupRoles::find(const std::string& nameOrPair) const {
  const auto all = findAll(nameOrPair);
  return all.empty() ? nullptr : all.front();
}

std::vector<const Group*> GroupRoles::findAll(const std::string& nameOrPair) const {
  std::vector<const Group*> found;
  if (const auto at = byKey.find(nameOrPair); at != byKey.end())
    for (const auto k : at->second) found.push_back(&groups[k]);
  return found;
}

void GroupRoles::failUnknown(const RolesFile& roles, const std::string& where,
                             const std::string& nameOrPair) const {
  std::vector<std::string_view> names;
  for (const auto& group : groups) names.emplace_back(group.name);
  throw Failure(roles.path, where + ": the mesh has no elements of group '" + nameOrPair +
                                "'; the nearest name is '" + std::string(nearestName(nameOrPair, names)) +
                                "'");
}

GroupRoles assignRoles(const MshMesh& mesh, const RolesFile& roles) {
  GroupRoles result;
  result.groups = Assignment(mesh, roles).assign();
  for (std::size_t k = 0; k < result.groups.size(); ++k) {
    const auto& group = result.groups[k];
    const auto pair = pairText(group.dimension, group.tag);
    result.byKey[pair].push_back(k);
    if (!group.name.empty() && group.name != pair) result.byKey[group.name].push_back(k);
  }
  for (const auto& set : mesh.sets)
    result.ofSet.push_back(set.dimension >= 2 ? roleOf(mesh, set, result) : Role{});
  for (const auto& run : mesh.runs) {
    checkGroups(mesh, run);
    checkType(mesh, run, result);
  }
  return result;
}

}  // namespace orvmesh::importing
