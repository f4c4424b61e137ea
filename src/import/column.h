#pragma once

#include <cstdint>
#include <memory>
#include <new>
#include <utility>
#include <vector>

namespace orvmesh::importing {

// Leaves entries that resize() adds as the memory comes: columns are filled right after they have grown.
template <class T>
struct RawAllocator : std::allocator<T> {
  template <class U>
  struct rebind {
    using other = RawAllocator<U>;
  };
  template <class U>
  void construct(U* place) noexcept {
    ::new (static_cast<void*>(place)) U;
  }
  template <class U, class... Args>
  void construct(U* place, Args&&... args) {
    std::construct_at(place, std::forward<Args>(args)...);
  }
};

template <class T>
using Column = std::vector<T, RawAllocator<T>>;

}  // namespace orvmesh::importing
