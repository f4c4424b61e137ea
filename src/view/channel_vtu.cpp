#include "view/channel_vtu.h"

#include <numeric>

#include "base/failure.h"
#include "view/vtk_cells.h"
#include "view/vtu_writer.h"

namespace orvmesh::view {
namespace {

template <class T>
VtuArray column(const char* name, VtuType type, int components, std::span<const T> values) {
  return {name, type, components, values.size() / static_cast<std::size_t>(components),
          [values](VtuSink& sink) { sink.raw(std::as_bytes(values)); }};
}

void writeConnectivity(VtuSink& sink, const ChannelFaces& faces) {
  for (std::size_t face = 0; face < faces.vertexCount.size(); ++face)
    for (const std::int32_t node :
         faces.nodes.subspan(4 * face, static_cast<std::size_t>(faces.vertexCount[face])))
      sink.put(node - 1);
}

void writeOffsets(VtuSink& sink, std::span<const std::uint8_t> vertexCount) {
  std::int64_t end = 0;
  for (const std::uint8_t count : vertexCount) sink.put(end += count);
}

VtuGrid gridOf(const ChannelFaces& faces) {
  VtuGrid grid;
  grid.points = faces.fileNodes.size();
  grid.cells = faces.vertexCount.size();
  const std::uint64_t corners =
      std::accumulate(faces.vertexCount.begin(), faces.vertexCount.end(), std::uint64_t{0});
  grid.pointData = {column("node", VtuType::Int32, 1, faces.fileNodes)};
  grid.cellData = {column("group", VtuType::Int32, 1, faces.group),
                   column("kind", VtuType::UInt8, 1, faces.kind),
                   column("endCode", VtuType::UInt8, 1, faces.endCode),
                   column("interface", VtuType::UInt8, 1, faces.interfaceId),
                   {"face", VtuType::Int32, 1, grid.cells, [count = grid.cells](VtuSink& sink) {
                      sink.generate<std::int32_t>(
                          count, [](std::size_t i) { return static_cast<std::int32_t>(i) + 1; });
                    }}};
  grid.coordinates = {column("Points", VtuType::Float32, 3, faces.xyz)};
  grid.topology = {{"connectivity", VtuType::Int32, 1, corners,
                    [&faces](VtuSink& sink) { writeConnectivity(sink, faces); }},
                   {"offsets", VtuType::Int64, 1, grid.cells,
                    [&faces](VtuSink& sink) { writeOffsets(sink, faces.vertexCount); }},
                   {"types", VtuType::UInt8, 1, grid.cells, [&faces](VtuSink& sink) {
                      sink.generate<std::uint8_t>(faces.vertexCount.size(), [&faces](std::size_t i) {
                        return faces.vertexCount[i] == 3 ? kVtkTriangle : kVtkQuad;
                      });
                    }}};
  return grid;
}

}  // namespace

void writeChannelVtu(const ChannelFaces& faces, const std::string& path) {
  AtomicFile file;
  if (!file.open(path)) throw Failure(path, file.errorText());
  writeVtu(gridOf(faces), file, path);
  if (!file.commit()) throw Failure(path, file.errorText());
}

}  // namespace orvmesh::view
