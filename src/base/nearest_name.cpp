#include "base/nearest_name.h"

#include <algorithm>
#include <cctype>
#include <cstddef>
#include <limits>

namespace orvmesh {
namespace {

bool sameLetter(char a, char b) {
  return std::tolower(static_cast<unsigned char>(a)) == std::tolower(static_cast<unsigned char>(b));
}

// The number of letters to replace, insert or drop, or any number from `limit` on when it is not below that.
std::size_t editDistance(std::string_view a, std::string_view b, std::size_t limit) {
  if (std::max(a.size(), b.size()) - std::min(a.size(), b.size()) >= limit) return limit;
  std::vector<std::size_t> row(b.size() + 1);
  for (std::size_t j = 0; j <= b.size(); ++j) row[j] = j;
  for (std::size_t i = 0; i < a.size(); ++i) {
    std::size_t diagonal = row[0];
    std::size_t least = row[0] = i + 1;
    for (std::size_t j = 0; j < b.size(); ++j) {
      const std::size_t replaced = diagonal + (sameLetter(a[i], b[j]) ? 0 : 1);
      diagonal = row[j + 1];
      row[j + 1] = std::min(replaced, std::min(row[j], row[j + 1]) + 1);
      least = std::min(least, row[j + 1]);
    }
    if (least >= limit) return limit;
  }
  return row[b.size()];
}

}  // namespace

std::string_view nearestName(std::string_view name, const std::vector<std::string_view>& names) {
  constexpr std::size_t kLongest = 64;  // what is longer resembles nothing
  std::string_view nearest;
  std::size_t least = std::numeric_limits<std::size_t>::max();
  for (const auto known : names) {
    const auto distance = editDistance(name.substr(0, kLongest), known, least);
    if (distance >= least) continue;
    least = distance;
    nearest = known;
  }
  return nearest;
}

}  // namespace orvmesh
