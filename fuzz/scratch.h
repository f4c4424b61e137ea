#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string>

#include "embedded/checksum.h"

namespace orvmesh::fuzzing {

// A name in memory-backed storage where there is such a place, one per process; what stands there at the end
// is removed.
class ScratchFile {
 public:
  explicit ScratchFile(const char* name)
      : path_((::access("/dev/shm", W_OK) == 0 ? "/dev/shm" : "/tmp") + std::string("/orvmesh-fuzz-") +
              std::to_string(::getpid()) + "-" + name) {}
  ~ScratchFile() { (void)::unlink(path_.c_str()); }
  ScratchFile(const ScratchFile&) = delete;
  ScratchFile& operator=(const ScratchFile&) = delete;

  const std::string& path() const { return path_; }

 private:
  std::string path_;
};

// A file that is rewritten for every input.
class InputFile {
 public:
  InputFile() : descriptor_(::open(file_.path().c_str(), O_RDWR | O_CREAT | O_TRUNC | O_CLOEXEC, 0600)) {}
  ~InputFile() { ::close(descriptor_); }
  InputFile(const InputFile&) = delete;
  InputFile& operator=(const InputFile&) = delete;

  const std::string& put(const std::uint8_t* bytes, std::size_t size) {
    if (size != size_ && ::ftruncate(descriptor_, static_cast<off_t>(size)) != 0) std::abort();
    size_ = size;
    if (::pwrite(descriptor_, bytes, size, 0) != static_cast<ssize_t>(size)) std::abort();
    return file_.path();
  }
  const std::string& put(const std::string& bytes) {
    return put(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  const std::string& path() const { return file_.path(); }

 private:
  ScratchFile file_{"input"};
  int descriptor_;
  std::size_t size_ = 0;
};

// Slow uses of an input take turns: most inputs are only read. Which one is used how depends on its bytes
// alone, so that a find can be repeated.
class Turn {
 public:
  Turn(const std::uint8_t* bytes, std::size_t size) : number_(embedded::checksumOf(bytes, size, 1)) {}
  // True for one input in n.
  bool oneIn(std::uint64_t n) {
    const bool chosen = number_ % n == 0;
    number_ /= n;
    return chosen;
  }
  // 0 to n - 1.
  std::size_t among(std::size_t n) {
    const auto chosen = static_cast<std::size_t>(number_ % n);
    number_ /= n;
    return chosen;
  }

 private:
  std::uint64_t number_;
};

}  // namespace orvmesh::fuzzing
