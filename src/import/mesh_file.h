#pragma once

#include <cstddef>
#include <string>

#include "base/file_bytes.h"

namespace orvmesh::importing {

// The bytes of a mesh file.
class MeshFile {
 public:
  // Fails for anything but a readable, non-empty regular file.
  explicit MeshFile(std::string path);

  const std::string& path() const { return path_; }
  const char* begin() const { return reinterpret_cast<const char*>(bytes_.data()); }
  const char* end() const { return begin() + bytes_.size(); }

  // Places are named by line while the file is text and by byte offset from then on.
  void setBinary() { binary_ = true; }
  bool binary() const { return binary_; }
  [[noreturn]] void fail(const char* at, const std::string& what) const;

 private:
  std::string path_;
  FileBytes bytes_;
  bool binary_ = false;
};

}  // namespace orvmesh::importing
