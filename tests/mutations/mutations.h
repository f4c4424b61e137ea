#pragma once

#include <algorithm>
#include <string>
#include <utility>

#include "support/long_run.h"

namespace orvmesh::test {

// Damages of a file, one after another: visit(what, position, bytes) for each that is not the file itself.
// Of single bytes, truncations and exchanged units every stride-th is tried.
template <class Visit>
class Mutations {
 public:
  Mutations(std::string bytes, std::size_t stride, Visit visit)
      : original_(std::move(bytes)), stride_(isLong() ? 1 : stride), visit_(std::move(visit)) {}

  void run() {
    changedBytes();
    for (std::size_t size = 0; size < original_.size(); size += stride_)
      tell("cut", size, original_.substr(0, size));
    for (std::size_t size = 1; size <= 64; ++size)
      for (const char byte : {'\0', 'x', '\n', '\xFF'})
        tell("appended", size, original_ + std::string(size, byte));
    for (const std::size_t page : {std::size_t{512}, std::size_t{4096}}) pages(page);
    movedUnits();
  }

 private:
  void tell(const char* what, std::size_t position, const std::string& bytes) {
    if (bytes != original_) visit_(what, position, bytes);
  }

  void changedBytes() {
    const int step = isLong() ? 1 : 101;
    std::string bytes = original_;
    for (std::size_t i = 0; i < bytes.size(); i += stride_) {
      for (int add = 1; add < 256; add += step) {
        bytes[i] = static_cast<char>(original_[i] + add);
        tell("changed", i, bytes);
      }
      bytes[i] = original_[i];
    }
  }

  void pages(std::size_t page) {
    for (std::size_t i = 0; i < original_.size(); i += page) {
      const std::size_t size = std::min(page, original_.size() - i);
      tell("zeroed", i, std::string(original_).replace(i, size, size, '\0'));
      for (std::size_t k = i + page; k + page <= original_.size(); k += page)
        exchange("exchanged page", i, k, page);
    }
  }

  void exchange(const char* what, std::size_t i, std::size_t k, std::size_t size) {
    std::string bytes = original_;
    std::swap_ranges(bytes.begin() + static_cast<std::ptrdiff_t>(i),
                     bytes.begin() + static_cast<std::ptrdiff_t>(i + size),
                     bytes.begin() + static_cast<std::ptrdiff_t>(k));
    tell(what, i, bytes);
  }

  // Blocks and columns are made of these units: exchanged, and taken out and put in elsewhere.
  void movedUnits() {
    constexpr std::size_t kUnit = 64;
    for (std::size_t i = 0; i + kUnit <= original_.size(); i += kUnit * std::min<std::size_t>(stride_, 5))
      for (std::size_t k = 0; k + kUnit <= original_.size(); k += kUnit) {
        if (k > i) exchange("exchanged unit", i, k, kUnit);
        std::string bytes = original_;
        bytes.erase(i, kUnit);
        tell("moved unit", i, bytes.insert(std::min(k, bytes.size()), original_, i, kUnit));
      }
  }

  const std::string original_;
  const std::size_t stride_;
  Visit visit_;
};

}  // namespace orvmesh::test
