#include "import/ofe_output.h"

#include <sys/stat.h>

#include <algorithm>
#include <ctime>
#include <limits>
#include <set>

#include "base/failure.h"
#include "import/layers.h"
#include "platform/ofeio.h"

namespace orvmesh::importing {
namespace {

constexpr int kVersion = 14001;
constexpr int kHeaterBeam = 6, kCoolantBeam = 1;
// Header words without a name: the channel group count stands in both.
constexpr int kChannelGroupField = 20;
// Surfaces that carry boundary-condition names, and how many different names they carry.
constexpr int kNamedSurfaceField = 27, kNamesInUseField = 28;

// When the mesh file was last changed, in UTC: the same mesh gives the same file.
std::string timeOf(const std::string& path) {
  struct stat status {};
  struct tm utc {};
  if (::stat(path.c_str(), &status) != 0 || ::gmtime_r(&status.st_mtime, &utc) == nullptr) return {};
  char text[32];
  return {text, std::strftime(text, sizeof text, "%Y-%m-%dT%H:%M:%SZ", &utc)};
}

std::string fileName(const std::string& path) { return path.substr(path.rfind('/') + 1); }

template <class Container>
std::int32_t countOf(const Container& entries) {
  return static_cast<std::int32_t>(entries.size());
}

class OfeOutput {
 public:
  OfeOutput(const ComponentMesh& mesh, const std::string& target)
      : mesh_(mesh), volumes_(mesh.volumes), target_(target), layers_(listLayers(mesh.volumes, mesh.roles)) {}

  void write() {
    setHeader();
    setBlockCounts();
    if (out_.beginWriting(target_.c_str(), kVersion, 0) != 1) fail();
    writeNodes();
    writeElements(Block::plastic, &OFEIO_Manipulator::writeElementPlasticBlockEntry);
    writeElements(Block::mold, &OFEIO_Manipulator::writeElementMoldBaseBlockEntry);
    writeElements(Block::channel, &OFEIO_Manipulator::writeElementCoolChannelBlockEntry);
    writeSurfaces();
    for (const auto& c : mesh_.conditions)
      check(out_.writeBoundaryConditionBlockEntry(c.node, c.type, c.value));
    writeBad(Block::plastic, &OFEIO_Manipulator::writeBadElementPlasticBlockEntry);
    writeBad(Block::mold, &OFEIO_Manipulator::writeBadElementMoldBaseBlockEntry);
    writeBad(Block::channel, &OFEIO_Manipulator::writeBadElementCoolChannelBlockEntry);
    writeDiameters();
    writeLines();
    writeLayout();
    for (const auto& s : mesh_.sensors)
      check(
          out_.writeSensorInfoBlockEntry(s.type, s.ids.data(), s.position[0], s.position[1], s.position[2]));
    writeOutline(mesh_.roles.moldInsert, &OFEIO_Manipulator::writeMoldMetalBlockEntry);
    if (mesh_.roles.channelSurface)
      writeOutline(*mesh_.roles.channelSurface, &OFEIO_Manipulator::writeCoolingChannelSurfaceEntry);
    writeSurfaceNames();
    writeBcNames();
    writeLayers();
    const auto& d = mesh_.roles.partingDirection;
    check(out_.writePartingDirectionBlockEntry(d[0], d[1], d[2]));
    if (out_.endWriting() != 1) fail();
  }

 private:
  [[noreturn]] void fail() const {
    throw Failure(target_, out_.errorText().empty() ? "cannot be written" : out_.errorText());
  }
  void check(int entry) const {
    if (entry < 0) [[unlikely]]
      fail();
  }

  // Distinct values of field A among the components of these blocks.
  std::int32_t materialsOf(Block block) const {
    std::set<std::int32_t> materials;
    for (const auto& component : volumes_.components)
      if (blockOf(component.role.kind) == block) materials.insert(component.fieldA());
    return countOf(materials);
  }
  std::int32_t elementsOf(Block block) const { return volumes_.blockEnd(block) - volumes_.blockFirst(block); }

  void setHeader() {
    const auto& surfaces = mesh_.surfaces;
    const auto channelGroups = countOf(mesh_.channels.channels);
    out_.setHeaderSourceString(fileName(volumes_.mesh().path));
    out_.setHeaderDateTimeString(timeOf(volumes_.mesh().path));
    out_.setHeaderUnitString("mm");
    out_[m_HEADER_Version] = kVersion;
    out_[m_HEADER_NElemP] = elementsOf(Block::plastic);
    out_[m_HEADER_NElemM] = elementsOf(Block::mold);
    out_[m_HEADER_NElemC] = elementsOf(Block::channel);
    out_[m_HEADER_NElemS] = countOf(surfaces.faces);
    out_[m_HEADER_NElemSC] = static_cast<std::int32_t>(surfaces.end(3) - surfaces.begin(3));
    out_[m_HEADER_NNode] = volumes_.mesh().nodeCount();
    out_[m_HEADER_NMatP] = materialsOf(Block::plastic);
    out_[m_HEADER_NMatM] = materialsOf(Block::mold);
    out_[m_HEADER_NMatC] = channelGroups;
    out_[m_HEADER_NMatI] = countOf(layers_.insert);
    out_.header[kChannelGroupField] = channelGroups;
    out_[m_HEADER_NCCGroup] = channelGroups;
    out_.header.setFloatField(m_HEADER_ScaleFactor, mesh_.scale);
    out_[m_HEADER_NLayerMM] = countOf(layers_.mold);
    out_[m_HEADER_NLayerPI] = countOf(layers_.insert);
    out_[m_HEADER_NLayerCC] = countOf(layers_.channel);
  }

  void setBlockCounts() {
    const auto& roles = mesh_.roles;
    for (const auto& sensor : mesh_.sensors) ++out_.header[m_HEADER_NSensor1 + sensor.type - 1];
    const auto lines = static_cast<std::int32_t>(std::count_if(mesh_.channels.channels.begin(),
                                                               mesh_.channels.channels.end(),
                                                               [](const auto& c) { return c.hasLine; }));
    const auto points = roles.layout ? countOf(roles.layout->points) : 2 * lines;
    const auto beams = roles.layout ? countOf(roles.layout->beams) : lines;
    out_[m_HEADER_NCCDiameter] = out_[m_HEADER_NElemSC];
    out_[m_HEADER_NCCLine] = roles.lines ? countOf(*roles.lines) : lines;
    out_[m_HEADER_NLayoutPoint] = points;
    out_[m_HEADER_NLayoutSegment] = beams;
    out_[m_HEADER_NLayoutEntry] = points + beams;
    countOutline(roles.moldInsert, m_HEADER_NMIPoint, m_HEADER_NMIFace, m_HEADER_NMIEntry);
    if (roles.channelSurface)
      countOutline(*roles.channelSurface, m_HEADER_NCCSurfacePoint, m_HEADER_NCCSurfaceFace,
                   m_HEADER_NCCSurfaceEntry);
    for (const auto& bad : mesh_.bad)
      ++out_.header[m_HEADER_NBadP + static_cast<int>(blockOf(volumes_.componentOf(bad.element).role.kind))];
    out_[m_HEADER_NSurfaceBC] = out_.header[kNamedSurfaceField] = countOf(mesh_.names.surfaces);
    out_.header[kNamesInUseField] =
        countOf(std::set<std::int32_t>(mesh_.names.names.begin(), mesh_.names.names.end()));
    out_[m_HEADER_NBoundaryCondition] = countOf(mesh_.conditions);
    out_[m_HEADER_NSurfaceBCName] = countOf(roles.bcNames);
  }

  void countOutline(const Outline& outline, OFEHeaderField points, OFEHeaderField faces,
                    OFEHeaderField entries) {
    out_[points] = countOf(outline.points);
    out_[faces] = countOf(outline.faces);
    out_[entries] = static_cast<std::int32_t>(outline.points.size() + outline.faces.size());
  }

  void writeNodes() {
    const auto& xyz = volumes_.mesh().xyz;
    for (std::size_t k = 0; k < xyz.size(); k += 3)
      check(out_.writeNodeBlockEntry(xyz[k], xyz[k + 1], xyz[k + 2]));
  }

  template <class WriteEntry>
  void writeElements(Block block, WriteEntry writeEntry) {
    for (const auto& run : volumes_.runsOf(block)) {
      const auto& component = volumes_.components[run.component];
      const int a = component.fieldA();
      const int b = component.fieldB();
      const int corners = cornersOf(run.shape);
      const auto nodes = volumes_.corners(run);
      for (const int *n = nodes.data(), *end = n + nodes.size(); n != end; n += corners)
        check((out_.*writeEntry)(corners, n, a, b, 0.0F));
    }
  }

  void writeSurfaces() {
    for (const auto& s : mesh_.surfaces.faces)
      check(out_.writeElementSurfaceBlockEntry(s.nodes, s.interfaceId, s.ownerCode, s.contactCode,
                                               s.boundaryType, s.elementNo,
                                               static_cast<std::int32_t>(s.tag)));
  }

  template <class WriteEntry>
  void writeBad(Block block, WriteEntry writeEntry) {
    const auto first = volumes_.blockFirst(block);
    for (const auto& bad : mesh_.bad)
      if (first <= bad.element && bad.element < volumes_.blockEnd(block))
        check((out_.*writeEntry)(bad.element - first + 1, bad.code));
  }

  // A length computed from coordinates, which may have no place in the file.
  float lengthOf(double value, double largest, const Channel& channel) const {
    if (!(value >= -largest && value <= largest))
      throw Failure(volumes_.mesh().path, textOf(volumes_.components[channel.component].role) +
                                              ": its diameter or line is too large for an OFE file");
    return static_cast<float>(value);
  }
  // Readers take a diameter as ten-thousandths of a scaled unit, in 32 bits.
  float diameterOf(const Channel& channel) const {
    constexpr double kLargest = 214748;
    return lengthOf(channel.diameter, kLargest / std::max(1.0F, mesh_.scale), channel);
  }
  Position positionOf(const Vector& point, const Channel& channel) const {
    Position position{};
    for (std::size_t axis = 0; axis < 3; ++axis)
      position[axis] = lengthOf(point[axis], std::numeric_limits<float>::max(), channel);
    return position;
  }

  // One entry per wall face, its nodes in the order of the surface.
  void writeDiameters() {
    std::vector<float> diameters(volumes_.components.size());
    for (const auto& c : mesh_.channels.channels) diameters[c.component] = diameterOf(c);
    const auto& surfaces = mesh_.surfaces;
    for (auto k = surfaces.begin(3); k < surfaces.end(3); ++k) {
      const auto& n = surfaces.faces[k].nodes;
      const int nodes[8] = {n[0], n[1], n[2], n[3] == n[2] ? 0 : n[3]};
      check(out_.writeCoolantChannelDiameterBlockEntry(
          nodes, diameters[volumes_.runOf(surfaces.faces[k].element).component]));
    }
  }

  void writeLineEnd(const Position& p, float diameter, const Role& channel, int end) {
    const int kind = channel.kind == RoleKind::heater ? 2 : 1;
    check(out_.writeCoolantChannelLineBlockEntry(p[0], p[1], p[2], diameter, channel.number, kind, end, 0));
  }

  void writeLines() {
    if (mesh_.roles.lines) {
      for (const auto& line : *mesh_.roles.lines)
        for (int end = 0; end < 2; ++end)
          writeLineEnd(line.ends[end], line.diameters[end], line.channel, end + 1);
      return;
    }
    for (const auto& c : mesh_.channels.channels) {
      if (!c.hasLine) continue;
      for (int end = 0; end < 2; ++end)
        writeLineEnd(positionOf(c.line[end], c), diameterOf(c), volumes_.components[c.component].role,
                     end + 1);
    }
  }

  void writeLayoutPoint(const Position& p, int type) {
    check(out_.writeCoolantChannelLayoutBlockEntry(1, p[0], p[1], p[2], type, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0,
                                                   0, 0, 0, 0));
  }
  void writeBeam(int from, int to, float diameterFrom, float diameterTo, int code, int beamCode) {
    check(out_.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, from, to, diameterFrom, diameterTo, code,
                                                   beamCode, 0, 0, 0, 0, 0, 0, 0, 0, 0));
  }

  void writeLayout() {
    if (mesh_.roles.layout) {
      for (const auto& point : mesh_.roles.layout->points) writeLayoutPoint(point.position, point.type);
      for (const auto& b : mesh_.roles.layout->beams)
        writeBeam(b.ends[0], b.ends[1], b.diameters[0], b.diameters[1], b.code, b.beamCode);
      return;
    }
    for (const auto& c : mesh_.channels.channels)
      if (c.hasLine)
        for (int end = 0; end < 2; ++end) writeLayoutPoint(positionOf(c.line[end], c), end + 1);
    int point = 1;
    for (const auto& c : mesh_.channels.channels) {
      if (!c.hasLine) continue;
      const auto& role = volumes_.components[c.component].role;
      const auto diameter = diameterOf(c);
      writeBeam(point, point + 1, diameter, diameter, role.number,
                role.kind == RoleKind::heater ? kHeaterBeam : kCoolantBeam);
      point += 2;
    }
  }

  template <class WriteEntry>
  void writeOutline(const Outline& outline, WriteEntry writeEntry) {
    const int noNodes[4] = {};
    for (const auto& p : outline.points) check((out_.*writeEntry)(1, p[0], p[1], p[2], noNodes, 0, 0));
    for (const auto& face : outline.faces)
      check((out_.*writeEntry)(0, 0, 0, 0, face.nodes.data(), face.codes[0], face.codes[1]));
  }

  void writeSurfaceNames() {
    const auto& names = mesh_.names;
    for (std::size_t k = 0; k < names.surfaces.size(); ++k)
      check(out_.writeSurfaceElementBoundaryConditionBlockEntry(
          names.surfaces[k], static_cast<int>(names.list(k).size()), names.list(k).data()));
  }

  void writeBcNames() {
    for (const auto& name : mesh_.roles.bcNames) {
      OFEIO_Dictionary dictionary;
      for (const auto& [key, value] : name.properties) dictionary.AddEntry(key.c_str(), value.c_str());
      check(out_.writeSurfaceElementBoundaryConditionNameBlockEntry(
          name.name.c_str(), name.type, name.properties.empty() ? nullptr : &dictionary));
    }
  }

  void writeLayers() {
    for (const auto& l : layers_.mold)
      check(out_.writeMoldMetalLayerBlockEntry(l.material, l.layer, l.name.c_str(), 0, 0, 0, l.flag));
    for (const auto& l : layers_.insert)
      check(out_.writePartInsertLayerBlockEntry(l.material, l.layer, l.name.c_str(), 0, 0, 0, l.flag));
    for (const auto& l : layers_.channel)
      check(out_.writeCoolantChannelLayerBlockEntry(l.material, l.layer, l.name.c_str()));
  }

  const ComponentMesh& mesh_;
  const VolumeMesh& volumes_;
  const std::string& target_;
  Layers layers_;
  OFEIO_Manipulator out_;
};

}  // namespace

void writeOfe(const ComponentMesh& mesh, const std::string& target) { OfeOutput(mesh, target).write(); }

}  // namespace orvmesh::importing
