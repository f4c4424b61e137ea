#include "view/file_info.h"

#include <algorithm>

#include "base/failure.h"
#include "base/ranges.h"
#include "platform/cofedata.h"
#include "platform/header_counts.h"
#include "platform/ofeio.h"

namespace orvmesh::view {
namespace {

// Position in kElementTypes.
std::size_t typeOf(std::size_t nodeCount) {
  constexpr std::size_t kTypes[] = {4, 4, 4, 4, 0, 1, 2, 4, 3};
  return nodeCount < std::size(kTypes) ? kTypes[nodeCount] : 4;
}

ComponentInfo componentInfo(std::string_view name, const ElementTable& table, const BadElementTable& bad) {
  ComponentInfo info;
  info.name = name;
  info.elements = table.count();
  info.bad = bad.count();
  TypeCounts* part = nullptr;
  std::pair<std::int32_t, std::int32_t> last;
  for (std::int32_t e = 1; e <= table.count(); ++e) {
    const std::pair key{table.material(e), table.group(e)};
    if (part == nullptr || key != last) part = &info.parts[last = key];
    const auto type = typeOf(table.nodes(e).size());
    ++(*part)[type];
    ++info.types[type];
  }
  return info;
}

void addSurfaces(FileInfo& info, const SurfaceTable& table) {
  info.surfaces = table.count();
  for (std::int32_t s = 1; s <= table.count(); ++s) {
    const SurfaceElement surface = table[s];
    SurfaceInfo& counts = info.interfaces[{surface.interfaceId, surface.boundaryType}];
    ++(surface.nodeCount == 3 ? counts.triangles : counts.quadrangles);
    counts.withList += table.hasList(s) ? 1 : 0;
  }
}

void addConditions(FileInfo& info, const BoundaryConditionTable& table) {
  for (std::int32_t i = 1; i <= table.count(); ++i) ++info.conditions[table[i].code];
}

void addBox(FileInfo& info, const NodeTable& nodes) {
  info.nodes = nodes.count();
  if (info.nodes == 0) return;
  float least[3], most[3];
  for (std::size_t d = 0; d < 3; ++d) least[d] = most[d] = nodes.xyz[d];
  for (std::size_t i = 0; i < nodes.xyz.size(); i += 3) {
    for (std::size_t d = 0; d < 3; ++d) {
      least[d] = std::min(least[d], nodes.xyz[i + d]);
      most[d] = std::max(most[d], nodes.xyz[i + d]);
    }
  }
  for (std::size_t d = 0; d < 3; ++d) {
    info.boxMin[d] = std::min(least[d] * nodes.factor, most[d] * nodes.factor);
    info.boxMax[d] = std::max(least[d] * nodes.factor, most[d] * nodes.factor);
  }
}

void addOthers(FileInfo& info, const MeshModel& model, const FileContent& content) {
  const auto row = [&](const char* name, std::int64_t count) { info.others.push_back({name, count}); };
  const auto size = [](const auto& list) { return static_cast<std::int64_t>(list.size()); };
  row("channel diameters", size(model.diameters));
  row("channel lines", size(model.lines));
  row("layout points", size(model.beamPoints));
  row("layout segments", size(model.beamSegments));
  row("mold insert points", size(model.moldInsert.points));
  row("mold insert faces", size(model.moldInsert.faces));
  row("channel surface points", size(model.channelSurface.points));
  row("channel surface faces", size(model.channelSurface.faces));
  row("surfaces with boundary-condition list", content.entries[kSurfaceConditions]);
  row("boundary-condition names", size(model.bcNames));
  row("mold metal layers", size(model.moldMetalLayers));
  row("part insert layers", size(model.partInsertLayers));
  row("coolant channel layers", size(model.channelLayers));
  row("parting directions", model.hasPartingDirection ? 1 : 0);
}

void addNotes(FileInfo& info, const FileContent& content) {
  for (const auto& [field, count, what] : headerCounts(content)) {
    // Some count kinds as the materials of channels, some kinds and groups.
    if (info.header[field] == count || field == m_HEADER_NMatC) continue;
    info.notes.push_back("header field " + std::to_string(field) + " (" + std::string(nameOfField(field)) +
                         ") is " + std::to_string(info.header[field]) + ", the file holds " +
                         std::to_string(count));
  }
}

int writtenVersion(const std::string& path) {
  OFEIO_Manipulator file;
  if (file.beginReading(path.c_str(), nullptr, 0) != 1) throw Failure(path, file.errorText());
  const int version = file.fileVersion();
  file.endReading();
  return version;
}

}  // namespace

FileInfo readFileInfo(const std::string& ofePath) {
  COFEData data;
  if (data.ReadDataBin(ofePath.c_str(), nullptr, 0, false) != 1) throw Failure(ofePath, data.errorText());
  const MeshModel& model = data.model();
  const FileContent content = contentOf(model);
  FileInfo info;
  info.path = ofePath;
  info.header = model.header;
  info.writtenVersion = writtenVersion(ofePath);
  info.lengthFactor = model.lengthFactor;
  addBox(info, model.nodes);
  info.components = {componentInfo("plastic", model.elemP, model.badP),
                     componentInfo("mold", model.elemM, model.badM),
                     componentInfo("channel", model.elemC, model.badC)};
  addSurfaces(info, model.surfaces);
  addConditions(info, model.conditions);
  info.sensors = content.sensors;
  addOthers(info, model, content);
  addNotes(info, content);
  info.warnings = data.warnings();
  return info;
}

std::string_view roleOf(std::size_t component, std::int32_t a, std::int32_t b) {
  if (component == 0) return kHotRunnerGroup.holds(b) ? "hot runner" : "part";
  if (component == 2) return a == kChannelKindCoolant ? "coolant" : a == kChannelKindHeater ? "heater" : "";
  if (kInsertTyped.holds(a)) return "part insert";
  return a > kHeaterMaterial ? "heater" : "mold base";
}

}  // namespace orvmesh::view
