#include <limits>

#include "view/grids.h"
#include "view/vtk_cells.h"

namespace orvmesh::view {
namespace {

std::size_t sizeOf(const ElementTable& table) { return static_cast<std::size_t>(table.count()); }

std::vector<std::uint8_t> marksOf(const ElementTable& table, const BadElementTable& bad) {
  std::vector<std::uint8_t> marks(sizeOf(table));
  for (const auto element : bad.elementNo)
    if (table.holds(element)) marks[static_cast<std::size_t>(element) - 1] = 1;
  return marks;
}

void writeTableConnectivity(VtuSink& sink, const ElementTable& table) {
  constexpr std::int32_t kWedgeNodes = 6;
  if (table.offsets.empty() && table.nodesPerElement != kWedgeNodes) {
    sink.generate<std::int32_t>(table.connectivity.size(),
                                [&](std::size_t i) { return table.connectivity[i] - 1; });
    return;
  }
  for (std::int32_t e = 1; e <= table.count(); ++e) {
    const auto nodes = table.nodes(e);
    const auto& order = kVtkCells[nodes.size()].order;
    for (std::size_t i = 0; i < nodes.size(); ++i) sink.put(nodes[order[i]] - 1);
  }
}

template <class T>
void writeTableOffsets(VtuSink& sink, const ElementTable& table, std::size_t before) {
  const auto each = static_cast<std::size_t>(table.nodesPerElement);
  sink.generate<T>(sizeOf(table), [&](std::size_t i) {
    const std::size_t end =
        table.offsets.empty() ? (i + 1) * each : static_cast<std::size_t>(table.offsets[i + 1]);
    return static_cast<T>(before + end);
  });
}

void writeTableTypes(VtuSink& sink, const ElementTable& table) {
  const auto each = static_cast<std::size_t>(table.nodesPerElement);
  sink.generate<std::uint8_t>(sizeOf(table), [&](std::size_t i) {
    if (table.offsets.empty()) return kVtkCells[each].type;
    return kVtkCells[static_cast<std::size_t>(table.offsets[i + 1] - table.offsets[i])].type;
  });
}

void writePoints(VtuSink& sink, const NodeTable& nodes) {
  if (nodes.factor == 1) return sink.raw(std::as_bytes(nodes.xyz));
  sink.generate<float>(nodes.xyz.size(),
                       [&](std::size_t i) { return static_cast<float>(nodes.xyz[i] * nodes.factor); });
}

}  // namespace

VolumeGrid::VolumeGrid(const MeshModel& model)
    : model_(model),
      tables_{&model.elemP, &model.elemM, &model.elemC},
      bad_{marksOf(model.elemP, model.badP), marksOf(model.elemM, model.badM),
           marksOf(model.elemC, model.badC)} {}

void VolumeGrid::writeConnectivity(VtuSink& sink) const {
  for (const auto* table : tables_) writeTableConnectivity(sink, *table);
}

template <class T>
void VolumeGrid::writeOffsets(VtuSink& sink) const {
  std::size_t before = 0;
  for (const auto* table : tables_) {
    writeTableOffsets<T>(sink, *table, before);
    before += table->connectivity.size();
  }
}

void VolumeGrid::writeTypes(VtuSink& sink) const {
  for (const auto* table : tables_) writeTableTypes(sink, *table);
}

VtuGrid VolumeGrid::grid(std::span<const NodalArray> nodal) const {
  std::uint64_t cells = 0, corners = 0;
  for (const auto* table : tables_) {
    cells += sizeOf(*table);
    corners += table->connectivity.size();
  }
  const bool isWide = corners > static_cast<std::uint64_t>(std::numeric_limits<std::int32_t>::max());
  // One array over all components: `write` takes the sink, the component and its table.
  const auto perTable = [this, cells](const char* name, VtuType type, auto write) {
    return VtuArray{name, type, 1, cells, [this, write](VtuSink& sink) {
                      for (std::size_t c = 0; c < tables_.size(); ++c) write(sink, c, *tables_[c]);
                    }};
  };
  VtuGrid grid;
  grid.points = static_cast<std::uint64_t>(model_.nodes.count());
  grid.cells = cells;
  for (const NodalArray& array : nodal)
    grid.pointData.push_back(
        {array.name.c_str(), VtuType::Float64, 1, grid.points,
         [values = array.values](VtuSink& sink) { sink.raw(std::as_bytes(values.subspan(1))); }});
  grid.cellData = {perTable("component", VtuType::UInt8,
                            [](VtuSink& sink, std::size_t c, const ElementTable& table) {
                              sink.generate<std::uint8_t>(sizeOf(table), [c](std::size_t) {
                                return static_cast<std::uint8_t>(c + 1);
                              });
                            }),
                   perTable("material", VtuType::Int32,
                            [](VtuSink& sink, std::size_t, const ElementTable& table) {
                              sink.raw(std::as_bytes(table.fieldA));
                            }),
                   perTable("group", VtuType::Int32,
                            [](VtuSink& sink, std::size_t, const ElementTable& table) {
                              sink.raw(std::as_bytes(table.fieldB));
                            }),
                   perTable("element", VtuType::Int32,
                            [](VtuSink& sink, std::size_t, const ElementTable& table) {
                              sink.generate<std::int32_t>(sizeOf(table), [](std::size_t i) {
                                return static_cast<std::int32_t>(i) + 1;
                              });
                            }),
                   perTable("bad", VtuType::UInt8, [this](VtuSink& sink, std::size_t c, const ElementTable&) {
                     sink.raw(std::as_bytes(std::span(bad_[c])));
                   })};
  grid.coordinates = {{"Points", VtuType::Float32, 3, grid.points,
                       [this](VtuSink& sink) { writePoints(sink, model_.nodes); }}};
  grid.topology = {
      {"connectivity", VtuType::Int32, 1, corners, [this](VtuSink& sink) { writeConnectivity(sink); }},
      {"offsets", isWide ? VtuType::Int64 : VtuType::Int32, 1, cells,
       [this, isWide](VtuSink& sink) {
         isWide ? writeOffsets<std::int64_t>(sink) : writeOffsets<std::int32_t>(sink);
       }},
      {"types", VtuType::UInt8, 1, cells, [this](VtuSink& sink) { writeTypes(sink); }}};
  return grid;
}

}  // namespace orvmesh::view
