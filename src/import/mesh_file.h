#pragma once

#include <cstddef>
#include <string>

namespace orvmesh::importing {

// The bytes of a mesh file, mapped read-only for as long as the object lives.
class MeshFile {
 public:
  // Fails for anything but a readable, non-empty regular file.
  explicit MeshFile(std::string path);
  ~MeshFile();
  MeshFile(const MeshFile&) = delete;
  MeshFile& operator=(const MeshFile&) = delete;

  const std::string& path() const { return path_; }
  const char* begin() const { return bytes_; }
  const char* end() const { return bytes_ + size_; }

  // Places are named by line while the file is text and by byte offset from then on.
  void setBinary() { binary_ = true; }
  bool binary() const { return binary_; }
  [[noreturn]] void fail(const char* at, const std::string& what) const;

 private:
  std::string path_;
  const char* bytes_ = nullptr;
  std::size_t size_ = 0;
  bool binary_ = false;
};

}  // namespace orvmesh::importing
