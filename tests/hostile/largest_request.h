#pragma once

#include <cstddef>

namespace orvmesh::test {

// The largest request for memory of this program's own code since it was last asked. No request above the
// limit is granted, so that a fault does not take the machine down.
inline constexpr std::size_t kMostGranted = std::size_t{1} << 30;
std::size_t takeLargestRequest();

}  // namespace orvmesh::test
