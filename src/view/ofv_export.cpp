#include <algorithm>

#include "base/failure.h"
#include "base/one_based.h"
#include "view/ofv_read.h"
#include "view/vtu_writer.h"

namespace orvmesh::view {
namespace {

constexpr std::uint8_t kVtkPolyhedron = 42;

// The cells of a mesh as a grid of polyhedra; its arrays are made while they are written.
class PolyhedronGrid {
 public:
  explicit PolyhedronGrid(const OFVMesh& mesh)
      : mesh_(mesh), cells_(facesOfCells(mesh)), lastCell_(mesh.pointCount()) {
    const auto count = mesh.cellCavity.size();
    corners_.reserve(count);
    faceEnds_.reserve(count);
    std::int64_t corners = 0;
    std::int64_t faceWords = 0;
    for (std::size_t c = 0; c < count; ++c) {
      eachPoint(c, [&](std::int32_t) { ++corners; });
      ++faceWords;
      for (const std::int32_t face : cells_.of(c))
        faceWords += 1 + static_cast<std::int64_t>(mesh.nodes(place(face)).size());
      corners_.push_back(corners);
      faceEnds_.push_back(faceWords);
    }
  }

  VtuGrid grid() {
    const auto cells = static_cast<std::uint64_t>(corners_.size());
    const auto lastOf = [](const std::vector<std::int64_t>& ends) {
      return ends.empty() ? 0 : static_cast<std::uint64_t>(ends.back());
    };
    const auto perCell = [cells](const char* name, VtuType type, auto write) {
      return VtuArray{name, type, 1, cells, write};
    };
    VtuGrid grid;
    grid.points = static_cast<std::uint64_t>(mesh_.pointCount());
    grid.cells = cells;
    grid.cellData = {
        perCell("cavity", VtuType::Int32, [this](VtuSink& sink) { writeCavities(sink, mesh_.cavityNumber); }),
        perCell("kind", VtuType::Int32, [this](VtuSink& sink) { writeCavities(sink, mesh_.cavityKind); }),
        perCell("cell", VtuType::Int32, [this](VtuSink& sink) {
          sink.generate<std::int32_t>(corners_.size(),
                                      [](std::size_t c) { return static_cast<std::int32_t>(c) + 1; });
        })};
    grid.coordinates = {{"Points", VtuType::Float64, 3, grid.points,
                         [this](VtuSink& sink) { sink.raw(std::as_bytes(mesh_.xyz)); }}};
    grid.topology = {
        {"connectivity", VtuType::Int64, 1, lastOf(corners_), [this](VtuSink& sink) { writeCorners(sink); }},
        perCell("offsets", VtuType::Int64,
                [this](VtuSink& sink) { sink.raw(std::as_bytes(std::span(corners_))); }),
        perCell("types", VtuType::UInt8,
                [this](VtuSink& sink) {
                  sink.generate<std::uint8_t>(corners_.size(), [](std::size_t) { return kVtkPolyhedron; });
                }),
        {"faces", VtuType::Int64, 1, lastOf(faceEnds_), [this](VtuSink& sink) { writeFaces(sink); }},
        perCell("faceoffsets", VtuType::Int64,
                [this](VtuSink& sink) { sink.raw(std::as_bytes(std::span(faceEnds_))); })};
    return grid;
  }

 private:
  static std::size_t place(std::int32_t face) {
    return static_cast<std::size_t>(face < 0 ? -std::int64_t{face} : face) - 1;
  }

  // Each point of a cell once, in the order of its faces. A walk marks points by cells: all cells must be
  // walked in order, and no two walks at a time.
  void eachPoint(std::size_t c, const auto& use) {
    const auto cell = static_cast<std::int32_t>(c) + 1;
    if (c == 0) lastCell_ = OneBasedArray<std::int32_t>(mesh_.pointCount());
    for (const std::int32_t face : cells_.of(c))
      for (const std::int32_t n : mesh_.nodes(place(face))) {
        if (lastCell_[n] == cell) continue;
        lastCell_[n] = cell;
        use(n);
      }
  }

  void writeCorners(VtuSink& sink) {
    for (std::size_t c = 0; c < corners_.size(); ++c)
      eachPoint(c, [&](std::int32_t n) { sink.put(std::int64_t{n} - 1); });
  }

  // Seen from outside the cell: the neighbour has a face the other way round.
  void writeFaces(VtuSink& sink) {
    for (std::size_t c = 0; c < corners_.size(); ++c) {
      sink.put(static_cast<std::int64_t>(cells_.of(c).size()));
      for (const std::int32_t face : cells_.of(c)) {
        const auto nodes = mesh_.nodes(place(face));
        sink.put(static_cast<std::int64_t>(nodes.size()));
        for (std::size_t k = 0; k < nodes.size(); ++k)
          sink.put(std::int64_t{nodes[face > 0 ? k : nodes.size() - 1 - k]} - 1);
      }
    }
  }

  void writeCavities(VtuSink& sink, std::span<const std::int32_t> values) const {
    sink.generate<std::int32_t>(mesh_.cellCavity.size(), [&](std::size_t c) {
      return values[static_cast<std::size_t>(mesh_.cellCavity[c]) - 1];
    });
  }

  const OFVMesh& mesh_;
  const CellFaces cells_;
  OneBasedArray<std::int32_t> lastCell_;
  std::vector<std::int64_t> corners_, faceEnds_;  // where each cell's part of the two lists ends
};

}  // namespace

std::int64_t exportOfv(const std::string& ofvPath, const std::string& vtuPath) {
  const OfvFile source(ofvPath);
  PolyhedronGrid grid(source.mesh());
  AtomicFile file;
  if (!file.open(vtuPath)) throw Failure(vtuPath, file.errorText());
  writeVtu(grid.grid(), file, vtuPath);
  if (!file.commit()) throw Failure(vtuPath, file.errorText());
  return source.mesh().cellCount();
}

}  // namespace orvmesh::view
