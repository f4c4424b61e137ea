#include <pybind11/stl.h>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "embedded/model_loader.h"
#include "embedded/ofe_reader.h"

namespace orvmesh::python {
namespace {

using embedded::BlockLayout;
using embedded::BlockView;
using embedded::ColumnLayout;
using embedded::OfeReader;

// An open file, and what its reader noticed.
struct MeshFile {
  OfeReader file;
  std::vector<std::string> warnings;
  double scale = 1;
};

std::unique_ptr<MeshFile> openMesh(const std::string& path) {
  auto mesh = std::make_unique<MeshFile>();
  if (!mesh->file.open(path, false)) throw Fault(kSource, path, mesh->file.errorText());
  MeshModel model;
  embedded::ModelLoader loader(mesh->file, model);
  if (!loader.load()) throw Fault(kSource, path, loader.errorText());
  mesh->warnings = loader.warnings();
  mesh->scale = model.lengthFactor;
  return mesh;
}

template <class T>
py::array columnOf(const BlockView& block, std::size_t index, const ColumnLayout& layout, py::handle owner) {
  const auto values = block.values<T>(index);
  const int width = layout.per == embedded::Per::Entry ? layout.width : 1;
  return view<T>(values, shapeOf(values.size(), width), owner);
}

py::array arrayOf(const BlockView& block, std::size_t index, const ColumnLayout& layout, py::handle owner) {
  switch (layout.type) {
    case 'I':
      return columnOf<std::int32_t>(block, index, layout, owner);
    case 'L':
      return columnOf<std::int64_t>(block, index, layout, owner);
    case 'F':
      return columnOf<float>(block, index, layout, owner);
    default:
      return columnOf<std::uint8_t>(block, index, layout, owner);
  }
}

py::dict columnsOf(MeshFile& mesh, const BlockLayout& layout, const std::string& path, py::handle owner) {
  const auto block = mesh.file.block(layout.block);
  if (!block) throw Fault(kSource, path, mesh.file.errorText());
  py::dict columns;
  for (std::size_t i = 0; i < layout.columns.size(); ++i)
    columns[layout.columns[i].name] = arrayOf(*block, i, layout.columns[i], owner);
  return columns;
}

py::dict headerOf(const MeshFile& mesh) {
  const OFEHeader& header = mesh.file.header();
  py::dict result;
  result["words"] = adopt(std::vector<std::int32_t>(header.words.begin(), header.words.end()));
  result["version"] = mesh.file.version();
  result["strings"] = py::make_tuple(py::bytes(header.source), py::bytes(header.dateTime),
                                     py::bytes(header.unit), py::bytes(header.remark));
  return result;
}

py::dict readMesh(const Path& path) {
  const std::string name = path.string();
  auto mesh = unlocked({name, ""}, [&name] { return openMesh(name); });
  MeshFile& content = *mesh;
  const py::capsule owner = owning(std::move(mesh));
  py::dict blocks;
  for (const BlockLayout& layout : embedded::allLayouts())
    if (layout.block != embedded::Block::Header)
      blocks[layout.name] = columnsOf(content, layout, name, owner);
  py::dict result;
  result["header"] = headerOf(content);
  result["scale"] = content.scale;
  result["warnings"] = content.warnings;
  result["blocks"] = blocks;
  return result;
}

// Of every block: its columns with their type, values per entry (0: not by entries).
py::dict blockColumns() {
  py::dict result;
  for (const BlockLayout& layout : embedded::allLayouts()) {
    if (layout.block == embedded::Block::Header) continue;
    py::dict columns;
    for (const ColumnLayout& column : layout.columns)
      columns[column.name] =
          py::make_tuple(std::string(1, column.type), column.per == embedded::Per::Entry ? column.width : 0);
    result[layout.name] = columns;
  }
  return result;
}

}  // namespace

void addReading(py::module_& module) {
  module.def(
      "read_mesh", &readMesh, py::arg("path"),
      "Opens, verifies and validates an OFE file: a dict of header, scale, warnings and blocks. The "
      "blocks are\ndicts of read-only arrays over the mapped file, shape (n,) or (n, values per entry); "
      "each keeps the\nmapping alive. Raises Error (code \"source\").");
  module.def("block_columns", &blockColumns,
             "Name, type letter (I int32, L int64, F float32, C uint8) and values per entry (0: a pool or "
             "offsets into it) of\nevery column of every block.");
}

}  // namespace orvmesh::python
