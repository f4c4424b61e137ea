#include "support/allocation_hook.h"

#include <cerrno>
#include <cstdlib>
#include <limits>
#include <new>

using orvmesh::test::grants;

// The linker leads the allocations of this program's own objects here (--wrap).
extern "C" {
// NOLINTBEGIN(bugprone-reserved-identifier)
void* __real_malloc(std::size_t size);
void* __real_calloc(std::size_t count, std::size_t size);
void* __real_realloc(void* memory, std::size_t size);
int __real_posix_memalign(void** memory, std::size_t alignment, std::size_t size);
void* __wrap_malloc(std::size_t size);
void* __wrap_calloc(std::size_t count, std::size_t size);
void* __wrap_realloc(void* memory, std::size_t size);
int __wrap_posix_memalign(void** memory, std::size_t alignment, std::size_t size);

void* __wrap_malloc(std::size_t size) { return grants(size) ? __real_malloc(size) : nullptr; }
void* __wrap_calloc(std::size_t count, std::size_t size) {
  constexpr std::size_t kAll = std::numeric_limits<std::size_t>::max();
  const std::size_t whole = size > 0 && count > kAll / size ? kAll : count * size;
  return grants(whole) ? __real_calloc(count, size) : nullptr;
}
void* __wrap_realloc(void* memory, std::size_t size) {
  return grants(size) ? __real_realloc(memory, size) : nullptr;
}
int __wrap_posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
  return grants(size) ? __real_posix_memalign(memory, alignment, size) : ENOMEM;
}
// NOLINTEND(bugprone-reserved-identifier)
}

void* operator new(std::size_t size, const std::nothrow_t&) noexcept {
  return grants(size) ? __real_malloc(size > 0 ? size : 1) : nullptr;
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
