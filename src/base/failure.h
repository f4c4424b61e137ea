#pragma once

#include <algorithm>
#include <stdexcept>
#include <string>

namespace orvmesh {

// A job that cannot be done: the file concerned and one clear line about it (what is wrong, where, what would
// be right). Thrown only above the library (import, view, command), never across the exported interface.
class Failure : public std::runtime_error {
 public:
  Failure(const std::string& file, const std::string& what)
      : std::runtime_error(file + ": " + printable(what)) {}

 private:
  // What is told may quote a damaged file, and a terminal would obey its control bytes.
  static std::string printable(std::string text) {
    std::ranges::replace_if(
        text, [](unsigned char byte) { return byte < 0x20 || byte == 0x7F; }, '?');
    return text;
  }
};

}  // namespace orvmesh
