#include <pybind11/stl.h>

#include <optional>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "import/import.h"
#include "view/export_vtu.h"
#include "view/ofe_json.h"

namespace orvmesh::python {
namespace {

py::bytes dumpJson(const Path& path) {
  const std::string name = path.string();
  return unlocked({name, ""}, [&] { return view::dumpJson(name); });
}

void loadJson(const std::string& text, const Path& target, std::optional<int> version) {
  const std::string name = target.string();
  try {
    unlocked({"mesh", name}, [&] { view::loadJson(text, "mesh", name, {version}); });
  } catch (const Fault& fault) {
    if (fault.file() == "mesh") throw Fault(kArgument, "", fault.what());
    throw;
  }
}

std::string importMsh(const Path& mesh, const Path& target, const std::optional<Path>& roles, float scale,
                      std::optional<double> merge, bool dropUnused) {
  const importing::ImportOptions options{
      mesh.string(), target.string(), roles ? roles->string() : std::string(), scale, merge, dropUnused};
  return unlocked({options.mesh, options.target},
                  [&] { return importing::reportJson(importing::importMesh(options)); });
}

py::tuple exportVtu(const Path& source, const Path& target) {
  const Paths paths{source.string(), target.string()};
  const auto done = unlocked(paths, [&] { return view::exportVtu(paths.source, paths.target); });
  return py::make_tuple(paths.target, done.surfacePath);
}

}  // namespace

void addFiles(py::module_& module) {
  module.def("dump_json", &dumpJson, py::arg("path"), "An OFE file as JSON, UTF-8 bytes. Raises Error.");
  module.def("load_json", &loadJson, py::arg("text"), py::arg("target"), py::arg("version"),
             "Writes the OFE file that the JSON describes. Raises Error.");
  module.def("import_msh", &importMsh, py::arg("mesh"), py::arg("target"), py::arg("roles"), py::arg("scale"),
             py::arg("merge"), py::arg("drop_unused"),
             "Turns an MSH mesh into a component OFE file; its report as JSON text. Raises Error.");
  module.def("export_vtu", &exportVtu, py::arg("source"), py::arg("target"),
             "Writes an OFE file as two VTK XML files; their paths. Raises Error.");
}

}  // namespace orvmesh::python
