#include "hostile/largest_request.h"

#include <algorithm>
#include <utility>

#include "support/allocation_hook.h"

namespace orvmesh::test {
namespace {

std::size_t largest = 0;

}  // namespace

bool grants(std::size_t size) {
  largest = std::max(largest, size);
  return size <= kMostGranted;
}

std::size_t takeLargestRequest() { return std::exchange(largest, 0); }

}  // namespace orvmesh::test
