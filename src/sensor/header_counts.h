#pragma once

#include <optional>
#include <string>

#include "platform/ofeio.h"
#include "sensor/counts.h"

namespace orvmesh::sensor {

// The counts that the header gives, type 3 left out. A header that cannot be true (a count below 0, or far
// more sensors than the `entries` that the file holds) gives nothing, and error says why.
std::optional<SensorCounts> headerCounts(OFEIO_Manipulator& file, std::int64_t entries, std::string& error);

}  // namespace orvmesh::sensor
