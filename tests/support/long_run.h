#pragma once

#include <cstdlib>

namespace orvmesh::test {

// With ORVMESH_LONG set the tests try all that they else take a sample of.
inline bool isLong() { return std::getenv("ORVMESH_LONG") != nullptr; }

}  // namespace orvmesh::test
