#pragma once

#include <string_view>
#include <vector>

namespace orvmesh {

// Of the names, the one with the fewest letters to change, add or drop; the first of several such.
std::string_view nearestName(std::string_view name, const std::vector<std::string_view>& names);

}  // namespace orvmesh
