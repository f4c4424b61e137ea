#include <orvmesh/sensor_mapping.h>

#include <exception>

#include "platform/ofeio.h"
#include "sensor/header_counts.h"
#include "sensor/maps.h"

using orvmesh::OneBasedArray;
using orvmesh::sensor::MapVariant;
using orvmesh::sensor::NumberMap;
using orvmesh::sensor::SensorCounts;
using orvmesh::sensor::SensorMaps;

namespace {

std::string inFile(const char* path, const std::string& what) {
  return what.empty() ? what : (path == nullptr ? std::string("no path") : std::string(path)) + ": " + what;
}

// Callers may ask for any number: what has no entry is 0.
int entryOf(const SensorMaps* maps, SensorMapCondition condition,
            OneBasedArray<std::int32_t> NumberMap::*column, int index) {
  if (maps == nullptr || (condition != SensorMap_Old2New && condition != SensorMap_New2Old)) return 0;
  const auto& entries = (condition == SensorMap_Old2New ? maps->oldToNew : maps->newToOld).*column;
  return 1 <= index && index <= entries.count() ? entries[index] : 0;
}

// Counts of a file, and those of before where it has no sensors; nothing when it is refused.
std::optional<SensorCounts> readCounts(const char* path, int fastOption, const SensorCounts& before,
                                       std::string& error) {
  OFEIO_Manipulator file;
  if (file.beginReading(path, nullptr, fastOption >= 1 ? 1 : 0) <= 0) {
    error = file.errorText();
    return std::nullopt;
  }
  int kind = 0;
  int ids[4];
  float x = 0, y = 0, z = 0;
  std::int64_t entries = 0;
  while (file.readSensorInfoBlockEntry(kind, ids, x, y, z) >= 0) ++entries;
  const auto counts = entries > 0 ? orvmesh::sensor::headerCounts(file, entries, error) : before;
  file.endReading();
  return counts;
}

}  // namespace

COrvMeshTransfer_SensorMapping::COrvMeshTransfer_SensorMapping() = default;
COrvMeshTransfer_SensorMapping::~COrvMeshTransfer_SensorMapping() = default;
COrvMeshTransfer_SensorMapping::COrvMeshTransfer_SensorMapping(const COrvMeshTransfer_SensorMapping&) =
    default;
COrvMeshTransfer_SensorMapping& COrvMeshTransfer_SensorMapping::operator=(
    const COrvMeshTransfer_SensorMapping&) = default;

void COrvMeshTransfer_SensorMapping::SetMeshFilePath_Std(const char* path, int readOption, int) try {
  std::string error;
  m_Maps = std::make_shared<SensorMaps>(orvmesh::sensor::readStandardMaps(path, readOption, error));
  m_ErrorMessage = inFile(path, error);
} catch (const std::exception& failure) {
  m_Maps.reset();
  m_ErrorMessage = failure.what();
}

void COrvMeshTransfer_SensorMapping::SetMeshFilePath_Fast(const char* path, int fastOption) try {
  std::string error;
  const auto counts = readCounts(path, fastOption, m_Maps ? m_Maps->counts : SensorCounts{}, error);
  m_ErrorMessage = inFile(path, error);
  if (counts) m_Maps = std::make_shared<SensorMaps>(orvmesh::sensor::makeMaps(*counts, MapVariant::fast, {}));
} catch (const std::exception& failure) {
  m_ErrorMessage = failure.what();
}

int COrvMeshTransfer_SensorMapping::GetTotalSensorNumber_Ori() const {
  return m_Maps ? m_Maps->counts.total() : 0;
}
int COrvMeshTransfer_SensorMapping::GetSensorNumber_Ori(SensorType type) const {
  return m_Maps ? m_Maps->counts.ofType(type) : 0;
}

// Counts as the mesh does for both conditions, although the new-to-old map goes by the joined mesh's numbers
// (quirk 42).
int COrvMeshTransfer_SensorMapping::GetSensorOrder(SensorType type, int local) const {
  if (!m_Maps || !SensorCounts::isNumbered(type)) return 0;
  const std::int64_t index = std::int64_t{m_Maps->counts.before(type)} + local;
  return 1 <= index && index <= m_Maps->counts.total() ? static_cast<int>(index) : 0;
}

int COrvMeshTransfer_SensorMapping::GetSensorMappingType(SensorMapCondition condition, SensorType type,
                                                         int local) const {
  return GetSensorMappingType(condition, GetSensorOrder(type, local));
}
int COrvMeshTransfer_SensorMapping::GetSensorMappingLocalID(SensorMapCondition condition, SensorType type,
                                                            int local) const {
  return GetSensorMappingLocalID(condition, GetSensorOrder(type, local));
}
int COrvMeshTransfer_SensorMapping::GetSensorMappingGlobalID(SensorMapCondition condition, SensorType type,
                                                             int local) const {
  return GetSensorMappingGlobalID(condition, GetSensorOrder(type, local));
}

int COrvMeshTransfer_SensorMapping::GetSensorMappingType(SensorMapCondition condition, int index) const {
  return entryOf(m_Maps.get(), condition, &NumberMap::type, index);
}
int COrvMeshTransfer_SensorMapping::GetSensorMappingLocalID(SensorMapCondition condition, int index) const {
  return entryOf(m_Maps.get(), condition, &NumberMap::local, index);
}
int COrvMeshTransfer_SensorMapping::GetSensorMappingGlobalID(SensorMapCondition condition, int index) const {
  return entryOf(m_Maps.get(), condition, &NumberMap::global, index);
}

const char* COrvMeshTransfer_SensorMapping::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
