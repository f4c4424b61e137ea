#pragma once

#include <string>
#include <vector>

namespace orvmesh::view {

// Points with a value each, in 1-based arrays (entry 0 is unused).
struct PointTable {
  std::vector<double> x{0}, y{0}, z{0}, value{0};

  int count() const { return static_cast<int>(value.size()) - 1; }
};

// Reads a text table of four numbers a line: x, y, z, value, with blanks, tabs or a comma between them. Empty
// lines and lines that begin with '#' or '%' are passed over. Throws Failure, with the line's number, for
// everything else.
PointTable readPointTable(const std::string& path);

// The points of an OFV file; their values, one a line in the order of the points, from a text as above.
// Throws Failure, also when there are not as many of both.
PointTable readPointsOfOfv(const std::string& path, const std::string& valuesPath);

}  // namespace orvmesh::view
