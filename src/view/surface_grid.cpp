#include "base/face_tag.h"
#include "view/grids.h"
#include "view/vtk_cells.h"

namespace orvmesh::view {
namespace {

std::size_t sizeOf(const SurfaceTable& table) { return static_cast<std::size_t>(table.count()); }

bool isTriangle(const SurfaceTable& table, std::size_t i) {
  return table.nodes[4 * i + 3] == 0 || table.nodes[4 * i + 3] == table.nodes[4 * i + 2];
}

std::span<const std::int32_t> cornersOf(const SurfaceTable& table, std::size_t i) {
  return table.nodes.subspan(4 * i, isTriangle(table, i) ? 3 : 4);
}

}  // namespace

SurfaceGrid::SurfaceGrid(const MeshModel& model)
    : model_(model), point_(static_cast<std::size_t>(model.nodes.count()) + 1) {
  numberNodes();
}

void SurfaceGrid::numberNodes() {
  const SurfaceTable& table = model_.surfaces;
  for (std::size_t i = 0; i < sizeOf(table); ++i) {
    const auto corners = cornersOf(table, i);
    corners_ += corners.size();
    for (const auto node : corners) point_[static_cast<std::size_t>(node)] = 1;
  }
  std::int32_t last = 0;
  for (auto& point : point_)
    if (point != 0) point = ++last;
  points_ = static_cast<std::uint64_t>(last);
}

void SurfaceGrid::writePoints(VtuSink& sink) const {
  for (std::size_t node = 1; node < point_.size(); ++node) {
    if (point_[node] == 0) continue;
    const COFE_Node at = model_.nodes[static_cast<std::int32_t>(node)];
    for (const double value : {at.x, at.y, at.z}) sink.put(static_cast<float>(value));
  }
}

void SurfaceGrid::writeNodeNumbers(VtuSink& sink) const {
  for (std::size_t node = 1; node < point_.size(); ++node)
    if (point_[node] != 0) sink.put(static_cast<std::int32_t>(node));
}

void SurfaceGrid::writeNodal(VtuSink& sink, std::span<const double> values) const {
  for (std::size_t node = 1; node < point_.size(); ++node)
    if (point_[node] != 0) sink.put(values[node]);
}

void SurfaceGrid::writeConnectivity(VtuSink& sink) const {
  for (std::size_t i = 0; i < sizeOf(model_.surfaces); ++i)
    for (const auto node : cornersOf(model_.surfaces, i))
      sink.put(point_[static_cast<std::size_t>(node)] - 1);
}

void SurfaceGrid::writeOffsets(VtuSink& sink) const {
  std::int64_t end = 0;
  for (std::size_t i = 0; i < sizeOf(model_.surfaces); ++i)
    sink.put(end += static_cast<std::int64_t>(cornersOf(model_.surfaces, i).size()));
}

VtuGrid SurfaceGrid::grid(std::span<const NodalArray> nodal) const {
  const SurfaceTable& table = model_.surfaces;
  const std::uint64_t cells = sizeOf(table);
  const auto column = [cells](const char* name, std::span<const std::int32_t> values,
                              VtuType type = VtuType::Int32) {
    return VtuArray{name, type, 1, cells, [values](VtuSink& sink) { sink.raw(std::as_bytes(values)); }};
  };
  VtuGrid grid;
  grid.points = points_;
  grid.cells = cells;
  grid.pointData = {{"node", VtuType::Int32, 1, points_, [this](VtuSink& sink) { writeNodeNumbers(sink); }}};
  for (const NodalArray& array : nodal)
    grid.pointData.push_back({array.name.c_str(), VtuType::Float64, 1, points_,
                              [this, values = array.values](VtuSink& sink) { writeNodal(sink, values); }});
  grid.cellData = {column("interface", table.interfaceId),
                   column("ownerCode", table.ownerCode),
                   column("contactCode", table.contactCode),
                   column("boundaryType", table.boundaryType),
                   column("elementNo", table.elementNo),
                   column("tag", table.tag, VtuType::UInt32),
                   {"group", VtuType::Int32, 1, cells,
                    [&table](VtuSink& sink) {
                      sink.generate<std::int32_t>(sizeOf(table), [&](std::size_t i) {
                        return tagGroup(static_cast<std::uint32_t>(table.tag[i]));
                      });
                    }},
                   {"surface", VtuType::Int32, 1, cells, [&table](VtuSink& sink) {
                      sink.generate<std::int32_t>(
                          sizeOf(table), [](std::size_t i) { return static_cast<std::int32_t>(i) + 1; });
                    }}};
  grid.coordinates = {{"Points", VtuType::Float32, 3, points_, [this](VtuSink& sink) { writePoints(sink); }}};
  grid.topology = {
      {"connectivity", VtuType::Int32, 1, corners_, [this](VtuSink& sink) { writeConnectivity(sink); }},
      {"offsets", VtuType::Int64, 1, cells, [this](VtuSink& sink) { writeOffsets(sink); }},
      {"types", VtuType::UInt8, 1, cells, [&table](VtuSink& sink) {
         sink.generate<std::uint8_t>(
             sizeOf(table), [&](std::size_t i) { return isTriangle(table, i) ? kVtkTriangle : kVtkQuad; });
       }}};
  return grid;
}

}  // namespace orvmesh::view
