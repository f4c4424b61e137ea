#pragma once

#include <optional>
#include <string>

#include "import/report.h"

namespace orvmesh::importing {

struct ImportOptions {
  std::string mesh;             // MSH 2.2 or 4.1
  std::string target;           // OFE
  std::string roles;            // JSON; empty for none
  float scale = 1;              // the header's length scale factor; coordinates are stored as they are
  std::optional<double> merge;  // joins nodes at most this far apart
  bool dropUnused = false;
};

// Turns a mesh of several components into a component OFE file. Throws Failure where it cannot; the target is
// then as it was.
ImportReport importMesh(const ImportOptions& options);

}  // namespace orvmesh::importing
