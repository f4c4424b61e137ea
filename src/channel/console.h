#pragma once

#include <ostream>

namespace orvmesh::channel {

// Where lines go; null for nowhere.
struct Console {
  std::ostream* errors = nullptr;
  std::ostream* progress = nullptr;
};

template <class... Parts>
void tell(std::ostream* out, const Parts&... parts) {
  if (out != nullptr) (*out << ... << parts) << '\n';
}

}  // namespace orvmesh::channel
