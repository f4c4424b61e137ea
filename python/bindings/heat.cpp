#include <pybind11/stl.h>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "heatsource/comsol_reader.h"
#include "heatsource/heat_map.h"
#include "platform/cofedata.h"

namespace orvmesh::python {
namespace {

struct Heat {
  heatsource::ComsolReport report;
  heatsource::HeatMap map;
};

void readTable(const std::string& path, COrvTool_PointFileReader& table, heatsource::ComsolReport& report) {
  if (!heatsource::readComsolFile(path.c_str(), table, report, [](double, double) {}))
    throw Fault(kSource, path, "cannot be opened");
  if (report.rows > 0) return;
  if (!report.error.empty()) throw Fault(kSource, path, report.error);
  throw Fault(kSource, path,
              report.blocks == 0
                  ? "no table found (a line \"% Nodes: COUNT\", then \"% x y z VALUE\", then the rows)"
                  : "no row follows the line of the columns");
}

Heat mapTable(const std::string& tablePath, const std::string& meshPath) {
  Heat heat;
  COrvTool_PointFileReader table;
  readTable(tablePath, table, heat.report);
  COFEData data;
  if (data.ReadDataBin(meshPath.c_str(), nullptr, 0, false) != 1)
    throw Fault(kSource, meshPath, data.errorText());
  heat.map = heatsource::mapHeat(table, heat.report, data.model().nodes);
  if (heat.map.mapped == 0)
    throw Fault(kSource, tablePath,
                data.model().nodes.count() == 0 ? "the mesh has no nodes to map it onto"
                                                : "no point has finite coordinates");
  return heat;
}

py::array withoutEntryZero(std::vector<double>& values) {
  if (!values.empty()) values.erase(values.begin());
  return adopt(std::move(values));
}

py::dict heatSource(const Path& table, const Path& mesh) {
  const std::string tableName = table.string(), meshName = mesh.string();
  Heat heat = unlocked({tableName, ""}, [&] { return mapTable(tableName, meshName); });
  py::dict result;
  result["source"] = withoutEntryZero(heat.map.source);
  result["loss"] = withoutEntryZero(heat.map.loss);
  result["distance"] = withoutEntryZero(heat.map.distance);
  result["rows"] = heat.report.rows;
  result["announced"] = heat.report.points;
  result["mapped"] = heat.map.mapped;
  result["not_finite"] = heat.map.notFinite;
  result["on_empty_rows"] = heat.map.onEmptyRows;
  result["unit_mistake"] = heatsource::unitMistake(heat.map);
  return result;
}

}  // namespace

void addHeat(py::module_& module) {
  module.def(
      "heat_source", &heatSource, py::arg("table"), py::arg("mesh"),
      "A COMSOL table of surface losses on the nodes of a mesh: a dict of source, loss and distance, float64 "
      "of shape (N,), and counts. Raises Error.");
}

}  // namespace orvmesh::python
