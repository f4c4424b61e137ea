#include <orvmesh/sensor_mapping.h>
#include <orvmesh/sensor_mapping_tools.h>

#include <cstdio>
#include <memory>
#include <nlohmann/json.hpp>

#include "base/failure.h"
#include "base/text_number.h"
#include "cli/commands.h"
#include "cli/progress.h"
#include "platform/cofedata.h"
#include "sensor/counts.h"
#include "sensor/sensor_list.h"
#include "view/text_io.h"
#include "view/text_table.h"

namespace orvmesh::cli {
namespace {

using Json = nlohmann::ordered_json;

struct Options {
  std::string file;
  bool json = false;
  bool fast = false;
};

std::string numberOrDash(std::int32_t number) { return number == 0 ? "-" : std::to_string(number); }
std::string coordinate(double value) {
  std::string text;
  appendDefault(text, value);
  return text;
}

Json rowAsJson(const sensor::SensorRow& row) {
  const auto numberOrNull = [](std::int32_t number) { return number == 0 ? Json() : Json(number); };
  return {{"display", row.display},     {"number", numberOrNull(row.global)},
          {"type", row.type},           {"seat", row.seat},
          {"seatNumber", row.seatNo},   {"position", row.position},
          {"component", row.component}, {"newNumber", numberOrNull(row.newGlobal)},
          {"newType", row.newType}};
}

std::string rowsAsText(const std::vector<sensor::SensorRow>& rows) {
  view::TextTable table(
      {"display", "number", "type", "sits on", "x", "y", "z", "component", "new number", "new type"});
  for (const auto& row : rows)
    table.add({std::to_string(row.display), numberOrDash(row.global), std::to_string(row.type),
               row.seat + (" " + std::to_string(row.seatNo)), coordinate(row.position[0]),
               coordinate(row.position[1]), coordinate(row.position[2]),
               row.component.empty() ? "-" : row.component, numberOrDash(row.newGlobal),
               std::to_string(row.newType)});
  return table.text();
}

// The lookup counts sensors as they stand in the file, the list by type.
void warnOfOrder(const std::string& file, const std::vector<sensor::SensorRow>& rows) {
  COrvSensorMappingTools lookup;
  if (!lookup.SetMeshFilePath(file.c_str())) return;
  for (const auto& row : rows) {
    if (row.global == 0 || lookup.GetSensorDisplayID(row.global) == row.display) continue;
    std::fprintf(stderr,
                 "orvmesh: %s: warning: sensors are not stored by type, or the header counts them otherwise; "
                 "the display lookup gives %d for number %d\n",
                 file.c_str(), lookup.GetSensorDisplayID(row.global), row.global);
    return;
  }
}

std::vector<sensor::SensorRow> readRows(const std::string& file, bool& split) {
  const ProgressLine progress("reading " + file);
  COFEData data;
  if (data.ReadDataBin(file.c_str(), nullptr, 0, false) != 1) throw Failure(file, data.errorText());
  split = sensor::variantOfTransfer(data.model()) == sensor::MapVariant::standard;
  return sensor::listSensors(data.model());
}

int listSensors(const Options& options) {
  bool split = true;
  const auto rows = readRows(options.file, split);
  warnOfOrder(options.file, rows);
  if (options.json) {
    Json json{{"file", options.file}, {"split", split}, {"sensors", Json::array()}};
    for (const auto& row : rows) json["sensors"].push_back(rowAsJson(row));
    view::printText(json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n");
    return 0;
  }
  view::printText(rowsAsText(rows));
  view::printText(std::to_string(rows.size()) +
                  " sensors; new numbers and types are those of the mesh joined with its part inserts" +
                  (split ? "\n" : " (header field 2 is not 0: every mold sensor joins the part)\n"));
  return 0;
}

struct Direction {
  SensorMapCondition condition;
  const char* key;
  const char* title;
};
constexpr Direction kDirections[] = {{SensorMap_Old2New, "oldToNew", "number in the mesh"},
                                     {SensorMap_New2Old, "newToOld", "number in the joined mesh"}};

struct Entry {
  int type, local, global;
};
Entry entryOf(const COrvMeshTransfer_SensorMapping& mapping, SensorMapCondition condition, int index) {
  return {mapping.GetSensorMappingType(condition, index), mapping.GetSensorMappingLocalID(condition, index),
          mapping.GetSensorMappingGlobalID(condition, index)};
}

Json mapAsJson(const COrvMeshTransfer_SensorMapping& mapping, const Options& options) {
  Json json{{"file", options.file}, {"variant", options.fast ? "fast" : "standard"}};
  for (const int type : sensor::kNumberedTypes)
    json["counts"][std::to_string(type)] = mapping.GetSensorNumber_Ori(static_cast<SensorType>(type));
  for (const Direction& direction : kDirections) {
    Json& rows = json[direction.key] = Json::array();
    for (int i = 1; i <= mapping.GetTotalSensorNumber_Ori(); ++i) {
      const Entry entry = entryOf(mapping, direction.condition, i);
      rows.push_back({{"number", i}, {"type", entry.type}, {"local", entry.local}, {"global", entry.global}});
    }
  }
  return json;
}

std::string mapAsText(const COrvMeshTransfer_SensorMapping& mapping) {
  std::string text;
  for (const Direction& direction : kDirections) {
    view::TextTable table({direction.title, "type", "local", "global"});
    for (int i = 1; i <= mapping.GetTotalSensorNumber_Ori(); ++i) {
      const Entry entry = entryOf(mapping, direction.condition, i);
      table.add({std::to_string(i), std::to_string(entry.type), std::to_string(entry.local),
                 std::to_string(entry.global)});
    }
    text += std::string(direction.key) + "\n" + table.text() + "\n";
  }
  return text + std::to_string(mapping.GetTotalSensorNumber_Ori()) + " sensors\n";
}

int mapSensors(const Options& options) {
  COrvMeshTransfer_SensorMapping mapping;
  {
    const ProgressLine progress("reading " + options.file);
    if (options.fast)
      mapping.SetMeshFilePath_Fast(options.file.c_str(), 0);
    else
      mapping.SetMeshFilePath_Std(options.file.c_str(), 0, 0);
  }
  if (const std::string error = mapping.GetErrorMessage_Link(); !error.empty()) {
    std::fprintf(stderr, "orvmesh: %s\n", error.c_str());
    return 1;
  }
  view::printText(options.json ? mapAsJson(mapping, options).dump(2) + "\n" : mapAsText(mapping));
  return 0;
}

CLI::App* addOne(CLI::App& parent, Job& job, const char* name, const char* what,
                 const std::shared_ptr<Options>& options, int (*run)(const Options&)) {
  auto* command = parent.add_subcommand(name, what);
  command->add_option("MESH", options->file, "component OFE file")->required();
  command->add_flag("--json", options->json, "print it as JSON");
  command->callback([&job, options, run] { job = [options, run] { return run(*options); }; });
  return command;
}

}  // namespace

void addSensors(CLI::App& app, Job& job) {
  const auto options = std::make_shared<Options>();
  auto* command =
      app.add_subcommand("sensors", "Tell the sensors of a mesh and their numbers in the joined mesh");
  command->require_subcommand(1);
  command->footer("Example: orvmesh sensors list mold.ofe");
  addOne(*command, job, "list", "All sensors: where they sit, old and new number and type", options,
         listSensors)
      ->footer(
          "\"number\" counts by type, surface sensors (type 3) left out; \"new\" is the mesh that\n"
          "`orvmesh transfer part-inserts` makes.\n"
          "Example: orvmesh sensors list mold.ofe");
  auto* map = addOne(*command, job, "map", "Both number maps, as the programs that load them see them",
                     options, mapSensors);
  map->add_flag("--fast", options->fast,
                "from the header's counts alone: every mold sensor counts as in an insert");
  map->footer(
      "Old to new: type and global number in the joined mesh. New to old: type and local number in the\n"
      "mesh. The standard map's other columns: local is the new global number (for type 2 the old one),\n"
      "global of new to old is the old number. With --fast local is the number within the type, global of\n"
      "new to old the new number.\n"
      "Example: orvmesh sensors map --fast mold.ofe");
}

}  // namespace orvmesh::cli
