#include <algorithm>
#include <unordered_set>

#include "base/ranges.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

using Count = std::int64_t;
using NumberSet = std::unordered_set<std::int32_t>;

NumberSet distinct(std::span<const std::int32_t> numbers) {
  NumberSet set;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (i == 0 || numbers[i] != numbers[i - 1]) set.insert(numbers[i]);
  return set;
}
Count sizeOf(const auto& list) { return static_cast<Count>(list.size()); }
Count inserts(const MeshModel& model) {
  return std::count_if(model.blockToMaterial.begin(), model.blockToMaterial.end(),
                       [](std::int32_t material) { return kInsertTyped.holds(material); });
}

struct CountedField {
  int field;
  const char* what;
  Count (*count)(const MeshModel& model);
};

constexpr CountedField kFields[] = {
    {m_HEADER_NElemP, "plastic elements", [](const MeshModel& m) -> Count { return m.elemP.count(); }},
    {m_HEADER_NElemM, "mold elements", [](const MeshModel& m) -> Count { return m.elemM.count(); }},
    {m_HEADER_NElemC, "channel elements", [](const MeshModel& m) -> Count { return m.elemC.count(); }},
    {m_HEADER_NElemS, "surface elements", [](const MeshModel& m) -> Count { return m.surfaces.count(); }},
    {m_HEADER_NNode, "nodes", [](const MeshModel& m) -> Count { return m.nodes.count(); }},
    {m_HEADER_NMatP, "plastic materials",
     [](const MeshModel& m) { return sizeOf(distinct(m.elemP.fieldA)); }},
    {m_HEADER_NMatM, "mold materials", [](const MeshModel& m) { return sizeOf(m.blockToMaterial); }},
    {m_HEADER_NMatI, "part-insert materials", inserts},
    {m_HEADER_NSensor1, "part element sensors", [](const MeshModel& m) { return sizeOf(m.sensors[0]); }},
    {m_HEADER_NSensor2, "part node sensors", [](const MeshModel& m) { return sizeOf(m.sensors[1]); }},
    {m_HEADER_NSensor3, "surface sensors", [](const MeshModel& m) { return sizeOf(m.sensors[2]); }},
    {m_HEADER_NSensor4, "mold element sensors", [](const MeshModel& m) { return sizeOf(m.sensors[3]); }},
    {m_HEADER_NSensor5, "mold node sensors", [](const MeshModel& m) { return sizeOf(m.sensors[4]); }},
    {m_HEADER_NSensor6, "sensors of kind 6", [](const MeshModel& m) { return sizeOf(m.sensors[5]); }},
    {m_HEADER_NCCDiameter, "channel diameters", [](const MeshModel& m) { return sizeOf(m.diameters); }},
    {m_HEADER_NCCLine, "channel lines", [](const MeshModel& m) { return sizeOf(m.lines); }},
    {m_HEADER_NLayoutPoint, "layout points", [](const MeshModel& m) { return sizeOf(m.beamPoints); }},
    {m_HEADER_NLayoutSegment, "layout beams", [](const MeshModel& m) { return sizeOf(m.beamSegments); }},
    {m_HEADER_NLayoutEntry, "layout entries",
     [](const MeshModel& m) { return sizeOf(m.beamPoints) + sizeOf(m.beamSegments); }},
    {m_HEADER_NMIPoint, "mold-insert points", [](const MeshModel& m) { return sizeOf(m.moldInsert.points); }},
    {m_HEADER_NMIFace, "mold-insert faces", [](const MeshModel& m) { return sizeOf(m.moldInsert.faces); }},
    {m_HEADER_NMIEntry, "mold-insert entries",
     [](const MeshModel& m) { return sizeOf(m.moldInsert.points) + sizeOf(m.moldInsert.faces); }},
    {m_HEADER_NCCSurfacePoint, "channel-surface points",
     [](const MeshModel& m) { return sizeOf(m.channelSurface.points); }},
    {m_HEADER_NCCSurfaceFace, "channel-surface faces",
     [](const MeshModel& m) { return sizeOf(m.channelSurface.faces); }},
    {m_HEADER_NCCSurfaceEntry, "channel-surface entries",
     [](const MeshModel& m) { return sizeOf(m.channelSurface.points) + sizeOf(m.channelSurface.faces); }},
    {m_HEADER_NBoundaryCondition, "boundary conditions",
     [](const MeshModel& m) -> Count { return m.conditions.count(); }},
    {m_HEADER_NSurfaceBC, "boundary-condition lists",
     [](const MeshModel& m) { return sizeOf(m.surfaces.lists); }},
    {m_HEADER_NSurfaceBCName, "boundary-condition names",
     [](const MeshModel& m) { return sizeOf(m.bcNames); }},
    {m_HEADER_NBadP, "bad plastic elements", [](const MeshModel& m) -> Count { return m.badP.count(); }},
    {m_HEADER_NBadM, "bad mold elements", [](const MeshModel& m) -> Count { return m.badM.count(); }},
    {m_HEADER_NBadC, "bad channel elements", [](const MeshModel& m) -> Count { return m.badC.count(); }},
};

void tell(int field, std::int32_t value, const std::string& holds, Collector& found) {
  found.add(Code::headerCount, field, [&] {
    return Entity{"header field", field, "is " + std::to_string(value) + ", the file holds " + holds, {}};
  });
}

// Some programs count the kinds of channels here, some their groups: either will do, as will both together.
void checkChannelMaterials(const MeshModel& model, Collector& found) {
  NumberSet groups[3];  // of coolant, of heaters, of both
  for (std::int32_t e = 1; e <= model.elemC.count(); ++e) {
    groups[model.elemC.material(e) == kChannelKindCoolant ? 0 : 1].insert(model.elemC.group(e));
    groups[2].insert(model.elemC.group(e));
  }
  const Count kinds = sizeOf(distinct(model.elemC.fieldA));
  const Count each = sizeOf(groups[0]) + sizeOf(groups[1]);
  const std::int32_t value = model.header[m_HEADER_NMatC];
  if (value == kinds || value == each || value == sizeOf(groups[2])) return;
  tell(m_HEADER_NMatC, value,
       std::to_string(kinds) + " kinds and " + std::to_string(each) + " channel groups", found);
}

}  // namespace

void checkHeaderCounts(const MeshModel& model, Collector& found) {
  for (const CountedField& row : kFields)
    if (const Count count = row.count(model); model.header[row.field] != count)
      tell(row.field, model.header[row.field], std::to_string(count) + ' ' + row.what, found);
  checkChannelMaterials(model, found);
}

void checkReferences(const MeshModel& model, Collector& found) {
  const auto check = [&](std::span<const std::int32_t> numbers, const char* kind, const char* what,
                         std::int32_t last) {
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      if (1 <= numbers[k] && numbers[k] <= last) continue;
      found.add(Code::indexOutOfRange, 0, [&] {
        return Entity{kind,
                      static_cast<std::int64_t>(k) + 1,
                      std::string(what) + " is " + std::to_string(numbers[k]) + " (legal: 1 to " +
                          std::to_string(last) + ")",
                      {}};
      });
    }
  };
  check(model.conditions.entityNo, "boundary condition", "its node", model.nodes.count());
  const BadElementTable* const bad[] = {&model.badP, &model.badM, &model.badC};
  constexpr const char* kKinds[] = {"bad plastic element", "bad mold element", "bad channel element"};
  for (std::size_t block = 0; block < kBlocks; ++block)
    check(bad[block]->elementNo, kKinds[block], "its number", tableOf(model, block).count());
}

}  // namespace orvmesh::check
