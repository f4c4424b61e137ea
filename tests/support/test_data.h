#pragma once

#include <stdexcept>

#include "support/files.h"

namespace orvmesh::test {

// The bytes of a file below tests/. A test program that uses this is one of those in tests/CMakeLists.txt
// that know where it lies.
inline std::string testData(const std::string& name) {
  std::string bytes = bytesOf(ORVMESH_TESTS "/" + name);
  if (bytes.empty()) throw std::runtime_error("there is no " + name);
  return bytes;
}

}  // namespace orvmesh::test
