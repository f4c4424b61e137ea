#pragma once

#include <cstddef>

namespace orvmesh {

// The bytes of an open regular file, all of them: mapped read-only, or, of a small file, a copy in memory,
// which takes less time than a mapping. A file replaced by name meanwhile keeps its old bytes here.
class FileBytes {
 public:
  FileBytes() = default;
  ~FileBytes() { release(); }
  FileBytes(const FileBytes&) = delete;
  FileBytes& operator=(const FileBytes&) = delete;

  // 0, or errno. The size must be above 0. Throws std::bad_alloc: a file is not refused for want of memory.
  int take(int descriptor, std::size_t size);
  void release();

  // Aligned to 64 bytes.
  const std::byte* data() const { return data_; }
  std::size_t size() const { return size_; }

 private:
  int copy(int descriptor, std::size_t size);

  const std::byte* data_ = nullptr;
  std::size_t size_ = 0;
  bool mapped_ = false;
};

}  // namespace orvmesh
