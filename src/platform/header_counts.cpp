#include "platform/header_counts.h"

#include <algorithm>

#include "base/ranges.h"

namespace orvmesh {
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
  const auto& sensors = content.sensors;
  return {
      {m_HEADER_NElemP, entries[kElementsPlastic], "plastic elements"},
      {m_HEADER_NElemM, entries[kElementsMoldBase], "mold elements"},
      {m_HEADER_NElemC, entries[kElementsCoolChannel], "channel elements"},
      {m_HEADER_NElemS, entries[kElementSurfaces], "surface elements"},
      {m_HEADER_NNode, entries[kNodes], "nodes"},
      {m_HEADER_NMatP, content.plastic.count(), "plastic materials"},
      {m_HEADER_NMatM, content.mold.count(), "mold materials"},
      {m_HEADER_NMatC, content.channel.count(), "kinds of channels"},
      {m_HEADER_NMatI, content.inserts.count(), "part-insert materials"},
      {m_HEADER_NSensor1, sensors[0], "part element sensors"},
      {m_HEADER_NSensor2, sensors[1], "part node sensors"},
      {m_HEADER_NSensor3, sensors[2], "surface sensors"},
      {m_HEADER_NSensor4, sensors[3], "mold element sensors"},
      {m_HEADER_NSensor5, sensors[4], "mold node sensors"},
      {m_HEADER_NSensor6, sensors[5], "sensors of kind 6"},
      {m_HEADER_NCCDiameter, entries[kChannelDiameters], "channel diameters"},
      {m_HEADER_NCCLine, entries[kChannelLines] / 2, "channel lines"},
      {m_HEADER_NLayoutPoint, content.layoutPoints, "layout points"},
      {m_HEADER_NLayoutSegment, entries[kChannelLayout] - content.layoutPoints, "layout beams"},
      {m_HEADER_NLayoutEntry, entries[kChannelLayout], "layout entries"},
      {m_HEADER_NMIPoint, content.moldPoints, "mold-insert points"},
      {m_HEADER_NMIFace, entries[kMoldMetal] - content.moldPoints, "mold-insert faces"},
      {m_HEADER_NMIEntry, entries[kMoldMetal], "mold-insert entries"},
      {m_HEADER_NCCSurfacePoint, content.channelSurfacePoints, "channel-surface points"},
      {m_HEADER_NCCSurfaceFace, entries[kChannelSurface] - content.channelSurfacePoints,
       "channel-surface faces"},
      {m_HEADER_NCCSurfaceEntry, entries[kChannelSurface], "channel-surface entries"},
      {m_HEADER_NBoundaryCondition, entries[kBoundaryConditions], "boundary conditions"},
      {m_HEADER_NSurfaceBC, entries[kSurfaceConditions], "boundary-condition lists"},
      {m_HEADER_NSurfaceBCName, entries[kSurfaceConditionNames], "boundary-condition names"},
      {m_HEADER_NBadP, entries[kBadElementsPlastic], "bad plastic elements"},
      {m_HEADER_NBadM, entries[kBadElementsMoldBase], "bad mold elements"},
      {m_HEADER_NBadC, entries[kBadElementsCoolChannel], "bad channel elements"},
  };
}

}  // namespace orvmesh
