#include "sensor/header_counts.h"

namespace orvmesh::sensor {

std::optional<SensorCounts> headerCounts(OFEIO_Manipulator& file, std::int64_t entries, std::string& error) {
  // The header is the authority, but arrays are not made by the gigabyte for a file of a few bytes.
  constexpr std::int64_t kTakenOnTrust = 1 << 16;
  SensorCounts counts;
  std::int64_t total = 0;
  for (const int type : kNumberedTypes) {
    counts[type] = file.header[m_HEADER_NSensor1 + type - 1];
    total += counts[type];
    if (counts[type] >= 0 && total <= std::max(entries, kTakenOnTrust)) continue;
    error = "header field " + std::to_string(m_HEADER_NSensor1 + type - 1) + " counts " +
            std::to_string(counts[type]) + " sensors of type " + std::to_string(type) + ", the file holds " +
            std::to_string(entries) + " of all types";
    return std::nullopt;
  }
  return counts;
}

}  // namespace orvmesh::sensor
