#include "alloc/failing_allocations.h"

#include <cstddef>
#include <cstdlib>
#include <new>

namespace {

struct Plan {
  bool armed = false;
  bool stays = false;
  long at = 0;
  long count = 0;
} plan;

bool fails() {
  if (!plan.armed) return false;
  ++plan.count;
  return plan.count == plan.at || (plan.stays && plan.count > plan.at);
}

}  // namespace

// The linker leads malloc, calloc and realloc of this program's own objects here (--wrap).
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);

void* __wrap_malloc(std::size_t size) { return fails() ? nullptr : __real_malloc(size); }
void* __wrap_calloc(std::size_t count, std::size_t size) {
  return fails() ? nullptr : __real_calloc(count, size);
}
void* __wrap_realloc(void* memory, std::size_t size) {
  return fails() ? nullptr : __real_realloc(memory, size);
}
// NOLINTEND(bugprone-reserved-identifier)
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return fails() ? nullptr : __real_malloc(size > 0 ? size : 1);
}
void* operator new(std::size_t size) {
  void* const memory = operator new(size, std::nothrow);
  if (memory == nullptr) throw std::bad_alloc();
  return memory;
}
void* operator new[](std::size_t size) { return operator new(size); }
void* operator new[](std::size_t size, const std::nothrow_t& tag) noexcept { return operator new(size, tag); }
void operator delete(void* memory) noexcept { std::free(memory); }
void operator delete(void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete(void* memory, const std::nothrow_t&) noexcept { std::free(memory); }
void operator delete[](void* memory) noexcept { std::free(memory); }
void operator delete[](void* memory, std::size_t) noexcept { std::free(memory); }
void operator delete[](void* memory, const std::nothrow_t&) noexcept { std::free(memory); }

namespace orvmesh::test {

FailingAllocations::FailingAllocations(long n, Mode mode) { plan = {true, mode == Mode::FromThenOn, n, 0}; }
FailingAllocations::~FailingAllocations() { plan.armed = false; }
long FailingAllocations::count() { return plan.count; }

}  // namespace orvmesh::test
