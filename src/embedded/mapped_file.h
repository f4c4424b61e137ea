#pragma once

#include <cstddef>
#include <span>
#include <string>

#include "base/file_bytes.h"

namespace orvmesh::embedded {

// The bytes of a regular file, in place (base/file_bytes.h).
class MappedFile {
 public:
  // False with errorText() for anything but a readable, non-empty regular file.
  bool open(const std::string& path);
  std::span<const std::byte> bytes() const { return {bytes_.data(), bytes_.size()}; }
  const std::string& errorText() const { return error_; }

 private:
  bool take(int descriptor);

  FileBytes bytes_;
  std::string error_;
};

}  // namespace orvmesh::embedded
