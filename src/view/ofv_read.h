#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <vector>

#include "platform/ofv_reader.h"

namespace orvmesh::view {

// A whole OFV file. Throws Failure unless it is sound and its faces and cells fit together.
class OfvFile {
 public:
  explicit OfvFile(const std::string& path);
  const OFVMesh& mesh() const { return reader_.mesh(); }

 private:
  COrvOFVReader reader_;
};

// Is this file an OFV file by its first blocks or, where they say nothing, by its name?
bool looksLikeOfv(const std::string& path);

struct OfvSummary {
  std::int64_t interiorFaces = 0, boundaryFaces = 0;
  std::vector<std::int64_t> cells;  // of each cavity
  std::vector<double> volumes;      // of each cavity
  std::array<double, 3> boxMin{}, boxMax{};
};
OfvSummary summaryOf(const OFVMesh& mesh);

// What `info` tells about it; throws Failure.
std::string ofvInfoAsText(const std::string& path);
std::string ofvInfoAsJson(const std::string& path);

// Writes the cells as polyhedra of a VTK XML file; their number. Throws Failure.
std::int64_t exportOfv(const std::string& ofvPath, const std::string& vtuPath);

}  // namespace orvmesh::view
