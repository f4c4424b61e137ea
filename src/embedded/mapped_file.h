#pragma once

#include <cstddef>
#include <span>
#include <string>

namespace orvmesh::embedded {

// A regular file mapped read-only. A file replaced by name while it is mapped keeps its old bytes here.
class MappedFile {
 public:
  MappedFile() = default;
  ~MappedFile() { close(); }
  MappedFile(const MappedFile&) = delete;
  MappedFile& operator=(const MappedFile&) = delete;

  // False with errorText() for anything but a readable, non-empty regular file.
  bool open(const std::string& path);
  void close();
  std::span<const std::byte> bytes() const { return bytes_; }
  const std::string& errorText() const { return error_; }

 private:
  bool map(int descriptor);

  std::span<const std::byte> bytes_;
  std::string error_;
};

}  // namespace orvmesh::embedded
