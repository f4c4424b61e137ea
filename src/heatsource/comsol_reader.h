#pragma once

#include <orvmesh/heat_source.h>

#include <functional>
#include <istream>

#include "heatsource/comsol_report.h"

namespace orvmesh::heatsource {

// Called at the end of each block with its largest and smallest raw value.
using BlockEnd = std::function<void(double largest, double smallest)>;

// What a table may take at most: all that the rows of a text of this size can need, and some for files whose
// rows are missing.
constexpr std::uint64_t mostTableBytes(std::uint64_t textSize) {
  return (std::uint64_t{64} << 20) + 16 * textSize;
}

// Reads a COMSOL text table: coordinates in m become cm, losses in W/m2 become W/cm2 times -10^7. The table
// is that of the last block.
void readComsol(std::istream& in, std::uint64_t mostBytes, COrvTool_PointFileReader& table,
                ComsolReport& report, const BlockEnd& blockEnd);

// False, and nothing touched, when the file cannot be opened.
bool readComsolFile(const char* path, COrvTool_PointFileReader& table, ComsolReport& report,
                    const BlockEnd& blockEnd);

}  // namespace orvmesh::heatsource
