#pragma once

#include <algorithm>
#include <string>

#include "support/long_run.h"

namespace orvmesh::test {

// Damages of a file, one after another: visit(what, position, bytes) for each that is not the file itself.
// Of single bytes, truncations and exchanged units every stride-th is tried.
template <class Visit>
void eachMutation(const std::string& original, std::size_t stride, const Visit& visit) {
  const std::size_t whole = original.size();
  const auto tell = [&](const char* what, std::size_t position, const std::string& bytes) {
    if (bytes != original) visit(what, position, bytes);
  };
  const auto exchange = [&](const char* what, std::size_t i, std::size_t k, std::size_t size) {
    std::string bytes = original;
    std::swap_ranges(&bytes[i], &bytes[i] + size, &bytes[k]);
    tell(what, i, bytes);
  };
  if (isLong()) stride = 1;
  for (std::size_t i = 0; i < whole; i += stride)
    for (int add = 1; add < 256; add += isLong() ? 1 : 101)
      tell("changed", i, std::string(original).replace(i, 1, 1, static_cast<char>(original[i] + add)));
  for (std::size_t size = 0; size < whole; size += stride) tell("cut", size, original.substr(0, size));
  for (std::size_t size = 1; size <= 64; ++size)
    for (const char byte : {'\0', 'x', '\n', '\xFF'})
      tell("appended", size, original + std::string(size, byte));
  for (const std::size_t page : {std::size_t{512}, std::size_t{4096}})
    for (std::size_t i = 0; i < whole; i += page) {
      const std::size_t size = std::min(page, whole - i);
      tell("zeroed", i, std::string(original).replace(i, size, size, '\0'));
      for (std::size_t k = i + page; k + page <= whole; k += page) exchange("exchanged page", i, k, page);
    }
  // Blocks and columns are made of these units: exchanged, and taken out and put in elsewhere.
  constexpr std::size_t kUnit = 64;
  for (std::size_t i = 0; i + kUnit <= whole; i += kUnit * std::min<std::size_t>(stride, 5))
    for (std::size_t k = 0; k + kUnit <= whole; k += kUnit) {
      if (k > i) exchange("exchanged unit", i, k, kUnit);
      std::string bytes = original;
      bytes.erase(i, kUnit);
      tell("moved unit", i, bytes.insert(std::min(k, bytes.size()), original, i, kUnit));
    }
}

}  // namespace orvmesh::test
