#include "sensor/maps.h"

#include "platform/cofedata.h"
#include "platform/insert_membership.h"

namespace orvmesh::sensor {
namespace {

enum class Which { all, inInsert, elsewhere };

// What a map stores for a sensor.
struct Numbers {
  std::int32_t oldLocal;   // within its type in the mesh
  std::int32_t oldGlobal;  // in the mesh
  std::int32_t newInType;  // within its type in the joined mesh
  std::int32_t newGlobal;  // in the joined mesh
};
using Stored = std::int32_t Numbers::*;
constexpr Stored kOldGlobal = &Numbers::oldGlobal;
constexpr Stored kNewInType = &Numbers::newInType;
constexpr Stored kNewGlobal = &Numbers::newGlobal;

// One group of the joined mesh's numbering, with what the two variants store differently.
struct Group {
  int oldType;
  Which which;
  int newType;
  Stored oldToNewLocal[2];   // by MapVariant
  Stored newToOldGlobal[2];  // by MapVariant
};

// The joined mesh's numbering is the order of the rows; the fast variant takes every sensor as in an insert.
// Alike in both are old-to-new type and global (those in the joined mesh) and new-to-old type and local
// (those in the mesh). The odd entry, kOldGlobal for type 2, is what the programs around this one expect
// (quirks 40 and 41).
// clang-format off
constexpr Group kJoinedOrder[] = {
  // old                 new  old-to-new local          new-to-old global
  // type                type standard    fast          standard    fast
    {1, Which::all,       1, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {4, Which::inInsert,  1, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {2, Which::all,       2, {kOldGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {5, Which::inInsert,  2, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {4, Which::elsewhere, 4, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {5, Which::elsewhere, 5, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
    {6, Which::all,       6, {kNewGlobal, kNewInType}, {kOldGlobal, kNewGlobal}},
};
// clang-format on

bool takes(const Group& group, MapVariant variant, const InsertFlags& flags, std::int32_t local) {
  if (group.which == Which::all) return true;
  const bool in = variant == MapVariant::fast || flags.hold(group.oldType, local);
  return in == (group.which == Which::inInsert);
}

NumberMap emptyMap(std::int32_t total) {
  using Array = OneBasedArray<std::int32_t>;
  return {Array(total), Array(total), Array(total)};
}

void set(NumberMap& map, std::int32_t at, int type, std::int32_t local, std::int32_t global) {
  map.type[at] = type;
  map.local[at] = local;
  map.global[at] = global;
}

}  // namespace

SensorMaps makeMaps(const SensorCounts& counts, MapVariant variant, const InsertFlags& flags) {
  SensorMaps maps{counts, emptyMap(counts.total()), emptyMap(counts.total())};
  const auto column = static_cast<std::size_t>(variant);
  SensorCounts met;
  std::int32_t newGlobal = 0;
  for (const Group& group : kJoinedOrder) {
    for (std::int32_t local = 1; local <= counts.ofType(group.oldType); ++local) {
      if (!takes(group, variant, flags, local)) continue;
      const Numbers numbers{local, counts.before(group.oldType) + local, ++met[group.newType], ++newGlobal};
      set(maps.oldToNew, numbers.oldGlobal, group.newType, numbers.*group.oldToNewLocal[column], newGlobal);
      set(maps.newToOld, newGlobal, group.oldType, local, numbers.*group.newToOldGlobal[column]);
    }
  }
  return maps;
}

SensorCounts SensorMaps::newCounts() const {
  SensorCounts joined;
  for (std::int32_t i = 1; i <= oldToNew.type.count(); ++i) ++joined[oldToNew.type[i]];
  return joined;
}

SensorCounts countSensors(const MeshModel& model) {
  SensorCounts counts;
  for (const int type : kNumberedTypes)
    counts[type] = static_cast<std::int32_t>(model.sensors[type - 1].size());
  return counts;
}

InsertFlags insertFlags(const MeshModel& model) {
  const auto& elementSensors = model.sensors[4 - 1];
  const auto& nodeSensors = model.sensors[5 - 1];
  const InsertMembership inserts(model, false, !nodeSensors.empty());
  InsertFlags flags;
  for (const Sensor& sensor : elementSensors) flags.elements.push_back(inserts.holdsElement(sensor.ids[0]));
  for (const Sensor& sensor : nodeSensors) flags.nodes.push_back(inserts.holdsNode(sensor.ids[0]));
  return flags;
}

SensorMaps makeMaps(const MeshModel& model, MapVariant variant) {
  return makeMaps(countSensors(model), variant, insertFlags(model));
}

MapVariant variantOfTransfer(const MeshModel& model) {
  return model.header[2] != 0 ? MapVariant::fast : MapVariant::standard;
}

SensorMaps readStandardMaps(const char* path, int readOption, std::string& error) {
  COFEData data;
  error.clear();
  if (data.ReadDataBin(path, "", readOption, false) != 1) error = data.errorText();
  return makeMaps(data.model(), MapVariant::standard);
}

}  // namespace orvmesh::sensor
