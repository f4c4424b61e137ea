#pragma once

#include <string>

#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {

struct CtgOutcome {
  std::string error;     // one line that names the file; empty when the file was written
  std::string warnings;  // lines, each ended by a line feed
};

// Makes the finite-volume mesh of the worker's mold elements and writes it as a CTG file. The worker's
// console gets the counts of each pass.
CtgOutcome exportCtg(COrvSolverMeshWriter& worker, const std::string& path);

}  // namespace orvmesh::transfer
