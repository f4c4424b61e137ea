#pragma once

class COrvSolverMeshWriter;

namespace orvmesh::transfer {

// Opens the target under the version in header field 0. Above 13001 a version that is refused is lowered one
// by one down to the first of its thousand; header field 0 stays. Returns the last result of beginWriting: 1
// open, 0 cannot be created, negative refused (or never tried).
int openTarget(COrvSolverMeshWriter& worker, const char* target);

}  // namespace orvmesh::transfer
