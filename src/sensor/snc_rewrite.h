#pragma once

#include <functional>
#include <istream>
#include <string>
#include <string_view>

#include "sensor/maps.h"

namespace orvmesh::sensor {

// Takes the next piece of the rewritten text; false when it cannot.
using TextSink = std::function<bool(std::string_view)>;

// What a rewrite met. The text is whole and true to the file when error is empty.
struct SncReport {
  std::string error;         // the first thing that was wrong, one line: where, what, what would be right
  std::int64_t records = 0;  // of the history
  std::int64_t longSensorLines = 0;  // with text behind the coordinates, which is dropped
  std::int64_t closingTexts = 0;     // records with a closing line that is not blank, which becomes blank
};

// Rewrites the text of an SNC file from the numbering of the joined mesh to that of the mesh itself, record
// by record. Goes on to the end of the text whatever it meets.
SncReport rewriteSnc(std::istream& in, const TextSink& sink, const SensorMaps& maps);

}  // namespace orvmesh::sensor
