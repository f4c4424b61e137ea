#include "view/header_counts.h"

#include <algorithm>

#include "base/ranges.h"

namespace orvmesh::view {
namespace {

#define ORVMESH_FIELD(name) \
  { #name, name }
constexpr NamedField kNamedFields[] = {ORVMESH_FIELD(m_HEADER_Version),
                                       ORVMESH_FIELD(m_HEADER_NElemP),
                                       ORVMESH_FIELD(m_HEADER_NElemM),
                                       ORVMESH_FIELD(m_HEADER_NElemC),
                                       ORVMESH_FIELD(m_HEADER_NElemS),
                                       ORVMESH_FIELD(m_HEADER_NElemSC),
                                       ORVMESH_FIELD(m_HEADER_NNode),
                                       ORVMESH_FIELD(m_HEADER_NMatP),
                                       ORVMESH_FIELD(m_HEADER_NMatM),
                                       ORVMESH_FIELD(m_HEADER_NMatC),
                                       ORVMESH_FIELD(m_HEADER_NMatI),
                                       ORVMESH_FIELD(m_HEADER_ScaleFactor),
                                       ORVMESH_FIELD(m_HEADER_NLayerMM),
                                       ORVMESH_FIELD(m_HEADER_NLayerPI),
                                       ORVMESH_FIELD(m_HEADER_NLayerCC),
                                       ORVMESH_FIELD(m_HEADER_NCCGroup),
                                       ORVMESH_FIELD(m_HEADER_NSensor1),
                                       ORVMESH_FIELD(m_HEADER_NSensor2),
                                       ORVMESH_FIELD(m_HEADER_NSensor3),
                                       ORVMESH_FIELD(m_HEADER_NSensor4),
                                       ORVMESH_FIELD(m_HEADER_NSensor5),
                                       ORVMESH_FIELD(m_HEADER_NSensor6),
                                       ORVMESH_FIELD(m_HEADER_NCCDiameter),
                                       ORVMESH_FIELD(m_HEADER_NCCLine),
                                       ORVMESH_FIELD(m_HEADER_NLayoutPoint),
                                       ORVMESH_FIELD(m_HEADER_NLayoutSegment),
                                       ORVMESH_FIELD(m_HEADER_NLayoutEntry),
                                       ORVMESH_FIELD(m_HEADER_NMIPoint),
                                       ORVMESH_FIELD(m_HEADER_NMIFace),
                                       ORVMESH_FIELD(m_HEADER_NMIEntry),
                                       ORVMESH_FIELD(m_HEADER_NCCSurfacePoint),
                                       ORVMESH_FIELD(m_HEADER_NCCSurfaceFace),
                                       ORVMESH_FIELD(m_HEADER_NCCSurfaceEntry),
                                       ORVMESH_FIELD(m_HEADER_NBoundaryCondition),
                                       ORVMESH_FIELD(m_HEADER_NSurfaceBC),
                                       ORVMESH_FIELD(m_HEADER_NSurfaceBCName),
                                       ORVMESH_FIELD(m_HEADER_NBadP),
                                       ORVMESH_FIELD(m_HEADER_NBadM),
                                       ORVMESH_FIELD(m_HEADER_NBadC)};
#undef ORVMESH_FIELD

std::int64_t sizeOf(const auto& container) { return static_cast<std::int64_t>(container.size()); }

}  // namespace

std::span<const NamedField> namedFields() { return kNamedFields; }

std::string_view nameOfField(int field) {
  const auto* const named = std::ranges::find(kNamedFields, field, &NamedField::field);
  return named == std::end(kNamedFields) ? "" : named->name;
}

void FileContent::addMoldMaterial(std::int32_t material) {
  mold.add(material);
  if (kInsertTyped.holds(material)) inserts.add(material);
}

void FileContent::addSensor(std::int32_t kind) {
  if (1 <= kind && kind <= 6) ++sensors[static_cast<std::size_t>(kind) - 1];
}

FileContent contentOf(const MeshModel& model) {
  FileContent content;
  for (const auto material : model.elemP.fieldA) content.plastic.add(material);
  for (const auto material : model.elemM.fieldA) content.addMoldMaterial(material);
  for (const auto kind : model.elemC.fieldA) content.channel.add(kind);
  for (std::size_t i = 0; i < 6; ++i) content.sensors[i] = sizeOf(model.sensors[i]);
  content.layoutPoints = sizeOf(model.beamPoints);
  content.moldPoints = sizeOf(model.moldInsert.points);
  content.channelSurfacePoints = sizeOf(model.channelSurface.points);

  auto& entries = content.entries;
  entries[kNodes] = model.nodes.count();
  entries[kElementsPlastic] = model.elemP.count();
  entries[kElementsMoldBase] = model.elemM.count();
  entries[kElementsCoolChannel] = model.elemC.count();
  entries[kElementSurfaces] = model.surfaces.count();
  entries[kBoundaryConditions] = model.conditions.count();
  entries[kBadElementsPlastic] = model.badP.count();
  entries[kBadElementsMoldBase] = model.badM.count();
  entries[kBadElementsCoolChannel] = model.badC.count();
  entries[kChannelDiameters] = sizeOf(model.diameters);
  entries[kChannelLines] = 2 * sizeOf(model.lines);
  entries[kChannelLayout] = sizeOf(model.beamPoints) + sizeOf(model.beamSegments);
  entries[kMoldMetal] = sizeOf(model.moldInsert.points) + sizeOf(model.moldInsert.faces);
  entries[kChannelSurface] = sizeOf(model.channelSurface.points) + sizeOf(model.channelSurface.faces);
  entries[kSurfaceConditions] = sizeOf(model.surfaces.lists);
  entries[kSurfaceConditionNames] = sizeOf(model.bcNames);
  return content;
}

std::vector<FieldCount> headerCounts(const FileContent& content) {
  const auto& entries = content.entries;
  std::vector<FieldCount> counts;
  const auto row = [&](int field, std::int64_t count) {
    counts.push_back({field, static_cast<std::int32_t>(count)});
  };
  row(m_HEADER_NElemP, entries[kElementsPlastic]);
  row(m_HEADER_NElemM, entries[kElementsMoldBase]);
  row(m_HEADER_NElemC, entries[kElementsCoolChannel]);
  row(m_HEADER_NElemS, entries[kElementSurfaces]);
  row(m_HEADER_NNode, entries[kNodes]);
  row(m_HEADER_NMatP, content.plastic.count());
  row(m_HEADER_NMatM, content.mold.count());
  row(m_HEADER_NMatC, content.channel.count());
  row(m_HEADER_NMatI, content.inserts.count());
  for (int kind = 0; kind < 6; ++kind)
    row(m_HEADER_NSensor1 + kind, content.sensors[static_cast<std::size_t>(kind)]);
  row(m_HEADER_NCCDiameter, entries[kChannelDiameters]);
  row(m_HEADER_NCCLine, entries[kChannelLines] / 2);
  row(m_HEADER_NLayoutPoint, content.layoutPoints);
  row(m_HEADER_NLayoutSegment, entries[kChannelLayout] - content.layoutPoints);
  row(m_HEADER_NLayoutEntry, entries[kChannelLayout]);
  row(m_HEADER_NMIPoint, content.moldPoints);
  row(m_HEADER_NMIFace, entries[kMoldMetal] - content.moldPoints);
  row(m_HEADER_NMIEntry, entries[kMoldMetal]);
  row(m_HEADER_NCCSurfacePoint, content.channelSurfacePoints);
  row(m_HEADER_NCCSurfaceFace, entries[kChannelSurface] - content.channelSurfacePoints);
  row(m_HEADER_NCCSurfaceEntry, entries[kChannelSurface]);
  row(m_HEADER_NBoundaryCondition, entries[kBoundaryConditions]);
  row(m_HEADER_NSurfaceBC, entries[kSurfaceConditions]);
  row(m_HEADER_NSurfaceBCName, entries[kSurfaceConditionNames]);
  row(m_HEADER_NBadP, entries[kBadElementsPlastic]);
  row(m_HEADER_NBadM, entries[kBadElementsMoldBase]);
  row(m_HEADER_NBadC, entries[kBadElementsCoolChannel]);
  return counts;
}

}  // namespace orvmesh::view
