#pragma once

#include <stdexcept>

#include "support/files.h"

namespace orvmesh::test {

// The bytes of a file below tests/.
inline std::string testData(const std::string& name) {
  std::string bytes = bytesOf(ORVMESH_TESTS "/" + name);
  if (bytes.empty()) throw std::runtime_error("there is no " + name);
  return bytes;
}

}  // namespace orvmesh::test
