#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvmesh {

// Entries 1..count of memory that someone else owns; entry 0 is out of reach.
template <class T>
class OneBasedView {
 public:
  OneBasedView(T* memory, std::int32_t count) : memory_(memory), count_(count) {}
  std::int32_t count() const { return count_; }
  T& operator[](std::int32_t i) const { return memory_[i]; }
  T* begin() const { return memory_ + 1; }
  T* end() const { return memory_ + 1 + count_; }

 private:
  T* memory_;
  std::int32_t count_;
};

// Owned entries 1..count, zeroed; entry 0 exists and stays zero, so that data() can be handed to callers who
// count from 1.
template <class T>
class OneBasedArray {
 public:
  OneBasedArray() = default;
  explicit OneBasedArray(std::int32_t count) : entries_(static_cast<std::size_t>(count) + 1) {}
  std::int32_t count() const { return entries_.empty() ? 0 : static_cast<std::int32_t>(entries_.size() - 1); }
  bool exists() const { return !entries_.empty(); }
  T& operator[](std::int32_t i) { return entries_[static_cast<std::size_t>(i)]; }
  const T& operator[](std::int32_t i) const { return entries_[static_cast<std::size_t>(i)]; }
  T* data() { return entries_.data(); }
  const T* data() const { return entries_.data(); }

 private:
  std::vector<T> entries_;
};

}  // namespace orvmesh
