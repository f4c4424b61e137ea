#pragma once

#include <initializer_list>
#include <string>

namespace orvmesh {

// Throws Failure when the target is one of the files that are read: it would take its place.
void requireOtherFile(const std::string& target, std::initializer_list<std::string> sources);

}  // namespace orvmesh
