#pragma once

#include <orvmesh/mesh_format_transfer.h>

#include <string>

namespace orvmesh::cli {

// Prints what the object's last operation noticed about the source, and what went wrong with it; false when
// something did.
bool reportTransfer(const COrvMeshFormatTransfer& transfer, const std::string& source);

// Prints which surface elements and sensors of the source the target does not hold.
void printDropped(const COrvMeshFormatTransfer& transfer);

}  // namespace orvmesh::cli
