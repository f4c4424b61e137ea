#include <orvmesh/sensor_mapping_tools.h>

#include <algorithm>
#include <exception>
#include <iostream>
#include <vector>

#include "platform/ofeio.h"
#include "sensor/header_counts.h"

namespace {

// Display numbers in the order of the file. Which of a sensor's numbers it is depends on its type
// (quirk 48).
std::vector<int> readDisplayNumbers(OFEIO_Manipulator& file, std::int64_t& entries) {
  std::vector<int> numbers;
  int type = 0;
  int ids[4];
  float x = 0, y = 0, z = 0;
  for (entries = 0; file.readSensorInfoBlockEntry(type, ids, x, y, z) >= 0; ++entries)
    if (type != 3) numbers.push_back(type == 6 ? ids[1] : ids[2]);
  return numbers;
}

}  // namespace

COrvSensorMappingTools::COrvSensorMappingTools() = default;
COrvSensorMappingTools::~COrvSensorMappingTools() { m_NSensor = 0; }
COrvSensorMappingTools::COrvSensorMappingTools(const COrvSensorMappingTools&) = default;
COrvSensorMappingTools& COrvSensorMappingTools::operator=(const COrvSensorMappingTools&) = default;

bool COrvSensorMappingTools::SetMeshFilePath(const char* path) try {
  OFEIO_Manipulator file;
  if (file.beginReading(path, nullptr, OFEIO_Manipulator::getFileSecondBlockExsistency(path)) < 1) {
    std::cout << "Open mesh File Fail" << std::endl;
    return false;
  }
  std::int64_t entries = 0;
  const std::vector<int> numbers = readDisplayNumbers(file, entries);
  std::string error;
  const auto counts = entries > 0 ? orvmesh::sensor::headerCounts(file, entries, error) : std::nullopt;
  file.endReading();
  if (!counts) return true;

  // The header is the authority on how many there are: what it does not count has no number.
  const auto count = static_cast<std::size_t>(counts->total());
  const std::shared_ptr<int[]> display(new int[count + 1]());
  std::copy_n(numbers.begin(), std::min(count, numbers.size()), display.get() + 1);
  m_NSensor = counts->total();
  m_DisplayID = display;
  return true;
} catch (const std::exception&) {
  return false;
}

int COrvSensorMappingTools::GetSensorDisplayID(int global) const {
  return 1 <= global && global <= m_NSensor ? m_DisplayID[global] : 0;
}

int COrvSensorMappingTools::GetSensorGlobalID(int display) const {
  for (int global = 1; global <= m_NSensor; ++global)
    if (m_DisplayID[global] == display) return global;
  return 0;
}
