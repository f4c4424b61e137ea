#pragma once

#include <stdexcept>
#include <string>

namespace orvmesh {

// A job that cannot be done: the file concerned and one clear line about it (what is wrong, where, what would
// be right). Thrown only above the library (import, view, command), never across the exported interface.
class Failure : public std::runtime_error {
 public:
  Failure(const std::string& file, const std::string& what) : std::runtime_error(file + ": " + what) {}
};

}  // namespace orvmesh
