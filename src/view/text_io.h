#pragma once

#include <string>
#include <string_view>

namespace orvmesh::view {

// The bytes of a file; throws Failure when it cannot be read.
std::string readWholeFile(const std::string& path);
// Throws Failure when standard output takes no more.
void printText(std::string_view text);

}  // namespace orvmesh::view
