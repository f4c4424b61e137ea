#pragma once

// Lets the allocations of this program fail: operator new in all forms, malloc and the like of the code
// linked in.
namespace orvmesh::test {

// While it lives, allocation n (from 1) fails, or all from n on. Whether it got so far is told afterwards.
class FailingAllocations {
 public:
  enum class Mode { Once, FromThenOn };
  FailingAllocations(long n, Mode mode);
  ~FailingAllocations();
  FailingAllocations(const FailingAllocations&) = delete;
  FailingAllocations& operator=(const FailingAllocations&) = delete;

  // Allocations since the beginning, those that failed included.
  static long count();
};

}  // namespace orvmesh::test
