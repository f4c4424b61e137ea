#include "transfer/prepass/groups.h"

#include <algorithm>
#include <array>

#include "base/face_tag.h"
#include "base/ranges.h"
#include "orvmesh/mesh_format_transfer.h"

namespace orvmesh::transfer {
namespace {

using GroupFlags = std::array<std::uint8_t, kLastGroup + 1>;

HeaterGroups emptyGroups(const MeshModel& model, const ElementTable& elements) {
  HeaterGroups groups;
  groups.elementFlags = OneBasedArray<std::uint8_t>(elements.count());
  groups.nodeFlags = OneBasedArray<std::uint8_t>(model.nodes.count());
  return groups;
}

void markHeater(HeaterGroups& groups, GroupFlags& flags, const ElementTable& elements, std::int32_t e,
                std::int32_t group) {
  ++groups.heaterElements;
  groups.elementFlags[e] = 1;
  flags[static_cast<std::size_t>(group)] = 1;
  for (const std::int32_t n : elements.nodes(e)) groups.nodeFlags[n] = 1;
}

// Group 0 is never counted.
std::int32_t countSet(const GroupFlags& flags) {
  return static_cast<std::int32_t>(std::count(flags.begin() + 1, flags.end(), 1));
}

}  // namespace

std::int32_t highestChannelGroup(const SurfaceTable& surfaces) {
  std::int32_t highest = 0;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    const auto face = surfaces[s];
    if (face.interfaceId != 4 || face.contactCode != 1) continue;
    highest = std::max(highest, channelGroupOf(face.tag, face.boundaryType));
  }
  return highest;
}

HeaterGroups groupsOfChannels(const MeshModel& model) {
  const ElementTable& channels = model.elemC;
  HeaterGroups groups = emptyGroups(model, channels);
  GroupFlags coolant{};
  GroupFlags heater{};
  for (std::int32_t e = 1; e <= channels.count(); ++e) {
    const std::int32_t kind = channels.material(e);
    if (kind == kChannelKindCoolant) coolant[static_cast<std::size_t>(channels.group(e))] = 1;
    // Kinds above 2 count here and stay channel elements when written (quirk 11).
    if (kind >= kChannelKindHeater) markHeater(groups, heater, channels, e, channels.group(e));
  }
  groups.coolantGroups = countSet(coolant);
  groups.heaterGroups = countSet(heater);
  return groups;
}

HeaterGroups groupsOfMold(const MeshModel& model) {
  const ElementTable& mold = model.elemM;
  HeaterGroups groups = emptyGroups(model, mold);
  GroupFlags heater{};
  for (std::int32_t e = 1; e <= mold.count(); ++e)
    if (mold.material(e) >= kHeaterMaterial)
      markHeater(groups, heater, mold, e, mold.material(e) - kHeaterMaterial);
  groups.heaterGroups = countSet(heater);
  std::int32_t highest = kLastGroup;
  while (highest > 0 && heater[static_cast<std::size_t>(highest)] == 0) --highest;
  groups.coolantGroups = highest - groups.heaterGroups;
  return groups;
}

HeaterFaces markHeaterFaces(const SurfaceTable& surfaces, const HeaterGroups& heaters, NodeTyping& typing) {
  HeaterFaces faces;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    const auto face = surfaces[s];
    if (face.interfaceId == 3 && face.ownerCode == 2) ++faces.wall;
    if (face.interfaceId != 4 || !heaters.isHeaterElement(face.elementNo)) continue;
    ++faces.other;
    for (const std::int32_t n : face.nodes)
      if (n != 0) typing.type[n] = NodeType_HeaterFace;
  }
  return faces;
}

}  // namespace orvmesh::transfer
