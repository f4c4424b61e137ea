#include "import/volume_mesh.h"

#include <algorithm>

#include "base/ranges.h"

namespace orvmesh::importing {
namespace {

bool hasLowerRole(const Component& component, const Role& role) { return component.role < role; }

// Adds the names of the volume groups, as the report prints them.
void nameGroups(const GroupRoles& roles, std::vector<Component>& components) {
  for (const auto& group : roles.groups) {
    const auto at = std::lower_bound(components.begin(), components.end(), group.role, hasLowerRole);
    if (group.dimension != 3 || at == components.end() || at->role != group.role) continue;
    if (!at->groups.empty()) at->groups += ", ";
    at->groups += group.name.empty() ? "3:" + std::to_string(group.tag) : group.name;
  }
}

std::vector<Component> listComponents(const MshMesh& mesh, const GroupRoles& roles) {
  std::vector<Role> used;
  for (std::size_t k = 0; k < mesh.sets.size(); ++k)
    if (mesh.sets[k].dimension == 3 && isVolume(roles.ofSet[k].kind)) used.push_back(roles.ofSet[k]);
  std::sort(used.begin(), used.end());
  used.erase(std::unique(used.begin(), used.end()), used.end());
  std::vector<Component> components(used.size());
  for (std::size_t k = 0; k < used.size(); ++k) components[k].role = used[k];
  nameGroups(roles, components);
  return components;
}

// 0 part, 1 hot runner, 2 mold, 3 channel.
std::size_t regionOf(RoleKind kind) {
  return static_cast<std::size_t>(blockOf(kind)) + (kind == RoleKind::part ? 0 : 1);
}

}  // namespace

std::int32_t Component::fieldA() const {
  switch (role.kind) {
    case RoleKind::coolant:
      return kChannelKindCoolant;
    case RoleKind::heater:
      return kChannelKindHeater;
    case RoleKind::hotRunner:
      return 1;
    default:
      return role.number;
  }
}

std::int32_t Component::fieldB() const {
  const bool hasGroup = role.kind == RoleKind::hotRunner || blockOf(role.kind) == Block::channel;
  return hasGroup ? role.number : 1;
}

VolumeMesh::VolumeMesh(MshMesh& mesh, const GroupRoles& roles)
    : components(listComponents(mesh, roles)), mesh_(&mesh) {
  listRuns(roles);
  numberElements();
}

void VolumeMesh::listRuns(const GroupRoles& roles) {
  for (const auto& run : mesh_->runs) {
    const auto& role = roles.ofSet[run.set];
    if (dimensionOf(run.type->shape) != 3 || !isVolume(role.kind)) continue;
    const auto at = std::lower_bound(components.begin(), components.end(), role, hasLowerRole);
    const auto component = static_cast<std::uint32_t>(at - components.begin());
    runs_.push_back({run.type->shape, component, run.first, run.count, 0, run.firstTag, run.set});
  }
  std::stable_sort(runs_.begin(), runs_.end(),
                   [](const VolumeRun& a, const VolumeRun& b) { return a.component < b.component; });
}

void VolumeMesh::numberElements() {
  std::int32_t next = 0;
  std::int32_t ofRegion[4] = {};
  for (auto& run : runs_) {
    auto& component = components[run.component];
    const auto count = static_cast<std::int32_t>(run.count);
    run.firstElement = next;
    next += count;
    component.elements += count;
    ofRegion[regionOf(component.role.kind)] += count;
  }
  for (int region = 1; region < 4; ++region)
    regionFirst_[region] = regionFirst_[region - 1] + ofRegion[region - 1];
  blockFirst_[1] = regionFirst_[2];
  blockFirst_[2] = regionFirst_[3];
  blockFirst_[3] = next;
}

std::span<const VolumeRun> VolumeMesh::runsOf(Block block) const {
  const auto starts = [this](std::int32_t element) {
    return std::partition_point(runs_.begin(), runs_.end(),
                                [element](const VolumeRun& run) { return run.firstElement < element; });
  };
  return {starts(blockFirst(block)), starts(blockEnd(block))};
}

std::span<const VolumeRun> VolumeMesh::runsOf(std::uint32_t component) const {
  const auto starts = [this](std::uint32_t c) {
    return std::partition_point(runs_.begin(), runs_.end(),
                                [c](const VolumeRun& run) { return run.component < c; });
  };
  return {starts(component), starts(component + 1)};
}

const VolumeRun& VolumeMesh::runOf(std::int32_t element) const {
  return *(std::partition_point(runs_.begin(), runs_.end(),
                                [element](const VolumeRun& run) { return run.firstElement <= element; }) -
           1);
}

std::span<std::int32_t> VolumeMesh::corners(const VolumeRun& run) const {
  const auto perElement = static_cast<std::size_t>(cornersOf(run.shape));
  return std::span(mesh_->corners[static_cast<std::size_t>(run.shape)])
      .subspan(run.first * perElement, run.count * perElement);
}

std::uint64_t VolumeMesh::tagOf(std::int32_t element) const {
  const auto& run = runOf(element);
  return run.firstTag + static_cast<std::uint64_t>(element - run.firstElement);
}

std::span<const std::int32_t> VolumeMesh::nodesOf(std::int32_t element) const {
  const auto& run = runOf(element);
  const auto perElement = static_cast<std::size_t>(cornersOf(run.shape));
  return corners(run).subspan(static_cast<std::size_t>(element - run.firstElement) * perElement, perElement);
}

std::int32_t VolumeMesh::numberInBlock(std::int32_t element) const {
  return element - blockFirst(blockOf(componentOf(element).role.kind)) + 1;
}

std::string VolumeMesh::label(std::int32_t element) const {
  return "element " + std::to_string(tagOf(element)) + " (" + componentOf(element).groups + ")";
}

}  // namespace orvmesh::importing
