#include <orvmesh/sensor_file.h>
#include <pybind11/stl.h>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "platform/cofedata.h"
#include "sensor/counts.h"
#include "sensor/sensor_list.h"

namespace orvmesh::python {
namespace {

using Mapping = COrvMeshTransfer_SensorMapping;

py::dict rowOf(const sensor::SensorRow& row) {
  py::dict result;
  result["display"] = row.display;
  result["number"] = row.global;
  result["type"] = row.type;
  result["seat"] = row.seat;
  result["seat_number"] = row.seatNo;
  result["position"] = py::make_tuple(row.position[0], row.position[1], row.position[2]);
  result["component"] = row.component;
  result["new_number"] = row.newGlobal;
  result["new_type"] = row.newType;
  return result;
}

py::list listSensors(const Path& path) {
  const std::string name = path.string();
  const auto rows = unlocked({name, ""}, [&] {
    COFEData data;
    if (data.ReadDataBin(name.c_str(), nullptr, 0, false) != 1) throw Fault(kSource, name, data.errorText());
    return sensor::listSensors(data.model());
  });
  py::list result;
  for (const auto& row : rows) result.append(rowOf(row));
  return result;
}

void checkDone(const Mapping& mapping, const Paths& paths) {
  const std::string error = mapping.GetErrorMessage_Link();
  if (!error.empty()) throw faultOf(error, paths);
}

py::array mapOf(const Mapping& mapping, SensorMapCondition condition) {
  std::vector<std::int32_t> rows;
  for (int i = 1; i <= mapping.GetTotalSensorNumber_Ori(); ++i)
    for (const int value :
         {mapping.GetSensorMappingType(condition, i), mapping.GetSensorMappingLocalID(condition, i),
          mapping.GetSensorMappingGlobalID(condition, i)})
      rows.push_back(value);
  return adopt(std::move(rows), 3);
}

py::dict sensorMaps(const Path& path, bool fast) {
  const std::string name = path.string();
  Mapping mapping;
  unlocked({name, ""}, [&] {
    if (fast)
      mapping.SetMeshFilePath_Fast(name.c_str(), 0);
    else
      mapping.SetMeshFilePath_Std(name.c_str(), 0, 0);
  });
  checkDone(mapping, {name, ""});
  py::dict counts, result;
  for (const int type : sensor::kNumberedTypes)
    counts[py::int_(type)] = mapping.GetSensorNumber_Ori(static_cast<SensorType>(type));
  result["counts"] = counts;
  result["old_to_new"] = mapOf(mapping, SensorMap_Old2New);
  result["new_to_old"] = mapOf(mapping, SensorMap_New2Old);
  return result;
}

void rewriteHistory(const Path& history, const Path& mesh) {
  const Paths paths{mesh.string(), history.string()};
  COrvMeshTransfer_SensorFile file;
  unlocked(paths, [&] {
    const std::scoped_lock turn(oneAtATime());
    file.TransferSensorFile_SNC(paths.target.c_str(), paths.source.c_str(), 0, 0);
  });
  checkDone(file, paths);
}

}  // namespace

void addSensors(py::module_& module) {
  module.def("list_sensors", &listSensors, py::arg("path"),
             "All sensors of a mesh, a list of dicts. Raises Error.");
  module.def(
      "sensor_maps", &sensorMaps, py::arg("path"), py::arg("fast"),
      "A dict of counts by type, old_to_new and new_to_old (int32 of shape (n, 3): type, local, global). "
      "Raises Error.");
  module.def("rewrite_snc", &rewriteHistory, py::arg("history"), py::arg("mesh"),
             "Rewrites an SNC file in place to the numbers of the mesh itself. Raises Error.");
}

}  // namespace orvmesh::python
