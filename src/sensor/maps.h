#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "base/one_based.h"
#include "platform/mesh_records.h"
#include "sensor/counts.h"

namespace orvmesh::sensor {

// Which mold sensors lie in a part insert; queries count from 1 within the type.
struct InsertFlags {
  std::vector<bool> elements, nodes;  // of the sensors of type 4 and 5
  bool hold(int type, std::int32_t local) const {
    const auto at = static_cast<std::size_t>(local) - 1;
    return type == 4 ? elements[at] : nodes[at];
  }
};

// Standard: mold sensors are sorted by what they sit on. Fast: all of them count as lying in an insert.
enum class MapVariant { standard, fast };

// Type, local and global number of each sensor; three arrays of total + 1 entries, entry 0 is 0.
struct NumberMap {
  OneBasedArray<std::int32_t> type, local, global;
};

// The numbering of a mesh against that of its part joined with the part inserts.
struct SensorMaps {
  SensorCounts counts;  // of the mesh itself
  NumberMap oldToNew;   // by the global number in the mesh
  NumberMap newToOld;   // by the global number in the joined mesh

  // Counts by type of the joined mesh.
  SensorCounts newCounts() const;
};

// flags are looked at in the standard variant only.
SensorMaps makeMaps(const SensorCounts& counts, MapVariant variant, const InsertFlags& flags);

SensorCounts countSensors(const MeshModel& model);
// A sensor on an element or node that does not exist lies in no insert.
InsertFlags insertFlags(const MeshModel& model);
SensorMaps makeMaps(const MeshModel& model, MapVariant variant);
// The variant that numbers sensors as the transfer into a joined mesh does: the fast one where header field 2
// keeps the mold's sensors together.
MapVariant variantOfTransfer(const MeshModel& model);

// Reads the whole mesh. A refused one gives the maps of a mesh without sensors, and error says why.
SensorMaps readStandardMaps(const char* path, int readOption, std::string& error);

}  // namespace orvmesh::sensor
