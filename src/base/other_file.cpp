#include "base/other_file.h"

#include <filesystem>

#include "base/failure.h"

namespace orvmesh {

void requireOtherFile(const std::string& target, std::initializer_list<std::string> sources) {
  std::error_code none;
  for (const std::string& source : sources)
    if (!source.empty() && (target == source || std::filesystem::equivalent(target, source, none)))
      throw Failure(target, "is read and cannot be written at the same time (name another target)");
}

}  // namespace orvmesh
