// The mesh model over a file in memory: large tables look into its columns, small blocks become records.
#include "platform/cofedata.h"

#include <algorithm>
#include <cmath>
#include <fstream>
#include <set>
#include <stdexcept>

#include "base/ranges.h"
#include "base/text_number.h"
#include "memory_files.h"

using namespace memory_platform;
using namespace orvmesh;

namespace {

void require(bool holds, const char* what) {
  if (!holds) throw std::invalid_argument(what);
}
void requireRange(std::span<const std::int32_t> values, std::int32_t first, std::int32_t last,
                  const char* what) {
  for (const auto value : values) require(first <= value && value <= last, what);
}

std::int32_t usedNodes(const std::int32_t* nodes, std::int32_t count) {
  while (count > 0 && nodes[count - 1] == 0) --count;
  return count;
}

class Loader {
 public:
  Loader(const OfeFile& file, MeshModel& model) : file_(file), model_(model) {}

  void load() {
    model_.header = file_.header;
    model_.formatVersion = file_.header[m_HEADER_Version];
    const float factor = file_.header.floatField(m_HEADER_ScaleFactor);
    require(std::isfinite(factor), "the scale factor is no finite number");
    f_ = model_.lengthFactor = factor == 0 ? 1 : factor;
    model_.secondLengthFactor = file_.header.floatField(30);
    if (count(kNodes) > 0) model_.nodes = {column(kNodes, 0).floats, f_};
    elements(kElementsPlastic, model_.elemP);
    elements(kElementsMoldBase, model_.elemM);
    elements(kElementsCoolChannel, model_.elemC);
    requireRange(model_.elemM.fieldA, INT32_MIN, kHeaterMaterial + kLastGroup,
                 "a mold material is above 11900");
    requireRange(model_.elemC.fieldB, 0, kLastGroup, "a channel group is not 0 to 1000");
    const std::set<std::int32_t> materials(model_.elemM.fieldA.begin(), model_.elemM.fieldA.end());
    model_.blockToMaterial.assign(materials.begin(), materials.end());
    surfaces();
    conditions();
    bad(kBadElementsPlastic, model_.badP);
    bad(kBadElementsMoldBase, model_.badM);
    bad(kBadElementsCoolChannel, model_.badC);
    channels();
    sensors();
    geometry(kMoldMetal, model_.moldInsert);
    geometry(kChannelSurface, model_.channelSurface);
    names();
    layers(kMoldMetalLayers, model_.moldMetalLayers);
    layers(kPartInsertLayers, model_.partInsertLayers);
    layers(kChannelLayers, model_.channelLayers);
    require(count(kPartingDirection) <= 1, "there are two parting directions");
    model_.hasPartingDirection = count(kPartingDirection) == 1;
    for (std::size_t k = 0; k < 3 && model_.hasPartingDirection; ++k)
      model_.partingDirection[k] = column(kPartingDirection, k).floats[0];
  }

 private:
  std::size_t count(BlockId id) const { return static_cast<std::size_t>(file_.blocks[id].entries); }
  const Column& column(BlockId id, std::size_t index) const { return file_.blocks[id].columns[index]; }
  std::int32_t integer(BlockId id, std::size_t c, std::size_t i) const { return column(id, c).ints[i]; }
  double real(BlockId id, std::size_t c, std::size_t i) const { return column(id, c).floats[i]; }
  double length(BlockId id, std::size_t c, std::size_t i) const { return real(id, c, i) * f_; }
  const std::int32_t* piece(BlockId id, std::size_t c, std::size_t i) const {
    return column(id, c).ints.data() + column(id, c).ends[i];
  }

  void elements(BlockId id, ElementTable& table) const {
    if (count(id) == 0) return;
    table = {column(id, 0).ints, column(id, 0).ends, 0,
             column(id, 1).ints, column(id, 2).ints, column(id, 3).floats};
    requireRange(table.connectivity, 1, model_.nodes.count(), "an element names a node that is not there");
  }

  void surfaces() {
    SurfaceTable& table = model_.surfaces;
    if (count(kElementSurfaces) > 0) {
      const auto ints = [this](std::size_t c) { return std::span(column(kElementSurfaces, c).ints); };
      table = {ints(0), ints(1), ints(2), ints(3), ints(4), ints(5), ints(6), {}, {}};
      for (std::size_t i = 0; i < table.nodes.size(); ++i)
        requireRange(table.nodes.subspan(i, 1), i % 4 == 3 ? 0 : 1, model_.nodes.count(),
                     "a surface element names a node that is not there");
    }
    if (count(kSurfaceConditions) > 0) table.listOf.resize(static_cast<std::size_t>(table.count()) + 1);
    for (std::size_t i = 0; i < count(kSurfaceConditions); ++i) {
      const std::int32_t surface = integer(kSurfaceConditions, 0, i);
      require(1 <= surface && surface <= table.count(), "a list belongs to a surface that is not there");
      auto& place = table.listOf[static_cast<std::size_t>(surface)];
      require(place == 0, "a surface has two lists");
      place = static_cast<std::int32_t>(i) + 1;
      table.lists.emplace_back(piece(kSurfaceConditions, 1, i), piece(kSurfaceConditions, 1, i + 1));
    }
  }

  void conditions() {
    if (count(kBoundaryConditions) > 0)
      model_.conditions = {column(kBoundaryConditions, 0).ints, column(kBoundaryConditions, 1).ints,
                           column(kBoundaryConditions, 2).floats};
  }
  void bad(BlockId id, BadElementTable& table) const {
    if (count(id) > 0) table = {column(id, 0).ints, column(id, 1).ints};
  }

  void channels() {
    for (std::size_t i = 0; i < count(kChannelDiameters); ++i) {
      const std::int32_t* const nodes = piece(kChannelDiameters, 0, i);
      auto& entry = model_.diameters.emplace_back();
      entry.nodeCount = usedNodes(nodes, 8);
      std::copy_n(nodes, entry.nodeCount, entry.nodes);
      requireRange({nodes, static_cast<std::size_t>(entry.nodeCount)}, 1, model_.nodes.count(),
                   "a diameter names a node that is not there");
      entry.diameter = length(kChannelDiameters, 1, i);
    }
    require(count(kChannelLines) % 2 == 0, "a line has one end only");
    model_.lines.resize(count(kChannelLines) / 2);
    for (std::size_t i = 0; i < count(kChannelLines); ++i)
      for (std::size_t k = 0; k < 4; ++k) {
        model_.lines[i / 2].ends[i % 2].values[k] = static_cast<float>(length(kChannelLines, k, i));
        model_.lines[i / 2].ends[i % 2].codes[k] = integer(kChannelLines, 4 + k, i);
      }
    for (std::size_t i = 0; i < count(kChannelLayout); ++i) layoutPoint(i);
    for (std::size_t i = 0; i < count(kChannelLayout); ++i) layoutBeam(i);
  }
  void layoutPoint(std::size_t i) {
    if (integer(kChannelLayout, 0, i) != 0)
      model_.beamPoints.push_back({length(kChannelLayout, 1, i), length(kChannelLayout, 2, i),
                                   length(kChannelLayout, 3, i), integer(kChannelLayout, 4, i)});
  }
  void layoutBeam(std::size_t i) {
    if (integer(kChannelLayout, 0, i) != 0) return;
    const auto scaled = [](double value) {
      require(std::abs(value * 10000) <= INT32_MAX, "a layout value leaves the ten-thousandths");
      return static_cast<std::int32_t>(std::llround(value * 10000));
    };
    const auto code = [&](std::size_t c) { return integer(kChannelLayout, c, i); };
    const auto points = static_cast<std::int32_t>(model_.beamPoints.size());
    for (const std::size_t end : {5U, 6U})
      require(points == 0 || (1 <= code(end) && code(end) <= points),
              "a beam names a point that is not there");
    BeamSegment& beam = model_.beamSegments.emplace_back();
    beam.segValue = scaled(length(kChannelLayout, 8, i));
    beam.segCode = code(9);
    const std::int32_t first[] = {scaled(length(kChannelLayout, 7, i)), code(5), code(6), code(10), code(11)};
    std::copy_n(first, 5, beam.values);
    for (std::size_t k = 0; k < 8; ++k) beam.values[5 + k] = scaled(real(kChannelLayout, 12 + k, i));
  }

  void sensors() {
    for (std::size_t i = 0; i < count(kSensors); ++i) {
      const std::int32_t kind = integer(kSensors, 0, i);
      require(1 <= kind && kind <= 6, "a sensor's kind is not 1 to 6");
      const std::int32_t* const ids = piece(kSensors, 1, i);
      model_.sensors[kind - 1].push_back({length(kSensors, 2, i),
                                          length(kSensors, 3, i),
                                          length(kSensors, 4, i),
                                          {ids[0], ids[1], ids[2], ids[3]}});
    }
  }

  void geometry(BlockId id, Geometry& geometry) const {
    for (std::size_t i = 0; i < count(id); ++i)
      if (integer(id, 0, i) != 0)
        geometry.points.push_back({length(id, 1, i), length(id, 2, i), length(id, 3, i)});
    const auto last = std::max(model_.nodes.count(), static_cast<std::int32_t>(geometry.points.size()));
    for (std::size_t i = 0; i < count(id); ++i) {
      if (integer(id, 0, i) != 0) continue;
      const std::int32_t* const nodes = piece(id, 4, i);
      GeometryFace face{std::max(1, usedNodes(nodes, 4)), {}, integer(id, 5, i), integer(id, 6, i)};
      std::copy_n(nodes, face.nodeCount, face.nodes);
      requireRange({nodes, static_cast<std::size_t>(face.nodeCount)}, 1, last,
                   "a face names no node or point");
      geometry.faces.push_back(face);
    }
  }

  void names() {
    for (std::size_t i = 0; i < count(kSurfaceConditionNames); ++i) {
      SurfaceBCName name{column(kSurfaceConditionNames, 0).texts[i],
                         integer(kSurfaceConditionNames, 1, i),
                         0,
                         0,
                         0,
                         static_cast<std::int32_t>(i)};
      double thickness = 0;
      const auto dictionary =
          file_.blocks[kSurfaceConditionNames].dictionaries[i].value_or(OFEIO_Dictionary{});
      for (const auto& entry : dictionary.entries()) {
        const auto set = [&](const char* wanted, auto& value) {
          if (entry.first != wanted) return;
          const auto parsed = parseNumber<std::remove_reference_t<decltype(value)>>(entry.second);
          require(parsed.has_value(), "a branch or thickness is no number");
          value = *parsed;
        };
        set("BRANCH_ID", name.branchId);
        set("BRANCH_OUTLET_ID", name.branchOutletId);
        set("BRANCH_NUMBER", name.branchNumber);
        set("THICKNESS", thickness);
      }
      model_.bcNames.push_back(std::move(name));
      model_.bcValues.push_back(thickness * f_);
    }
  }

  void layers(BlockId id, std::vector<LayerMaterial>& list) const {
    for (std::size_t i = 0; i < count(id); ++i)
      list.push_back({integer(id, 0, i), integer(id, 1, i), id == kChannelLayers ? 0 : integer(id, 6, i),
                      column(id, 2).texts[i]});
  }

  const OfeFile& file_;
  MeshModel& model_;
  double f_ = 1;
};

}  // namespace

COFEData::COFEData() = default;
COFEData::~COFEData() = default;

int COFEData::ReadDataBin(const char* ofePath, const char* logPath, int, bool) {
  model_ = {};
  contactFaces_.reset();
  error_.clear();
  path_ = ofePath == nullptr ? "" : ofePath;
  openLog(logPath);
  const auto file = find<OfeFile>(ofePath);
  storage_ = file;
  try {
    require(file != nullptr, "there is no such OFE file in memory");
    Loader(*file, model_).load();
    DumpInfoMsg((path_ + " read\n").c_str());
    return 1;
  } catch (const std::invalid_argument& refusal) {
    model_ = {};
    error_ = refusal.what();
    DumpErrMsg((path_ + ": " + error_ + "\n").c_str());
    return 0;
  }
}

void COFEData::openLog(const char* logPath) {
  logPath_ = logPath == nullptr ? "" : logPath;
  if (!logPath_.empty()) std::ofstream(logPath_, std::ios::trunc);
}
void COFEData::DumpInfoMsg(const char* text) {
  if (text != nullptr && !logPath_.empty()) std::ofstream(logPath_, std::ios::app) << text;
}
void COFEData::DumpErrMsg(const char* text) { DumpInfoMsg(text); }
