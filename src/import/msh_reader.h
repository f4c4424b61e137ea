#pragma once

#include <string>

#include "import/msh_mesh.h"

namespace orvmesh::importing {

// Reads an MSH file, version 2.2 or 4.1, text or little-endian binary; fails with the line or byte offset.
// Memory stays within a small multiple of the file's size whatever the file says.
MshMesh readMsh(const std::string& path);

}  // namespace orvmesh::importing
