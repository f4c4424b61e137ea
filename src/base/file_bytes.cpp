#include "base/file_bytes.h"

#include <sys/mman.h>

#include <cerrno>
#include <cstdlib>
#include <new>

#include "base/descriptor.h"

namespace orvmesh {
namespace {

constexpr std::size_t kMostCopied = std::size_t{1} << 16;
constexpr std::size_t kAlignment = 64;

}  // namespace

int FileBytes::take(int descriptor, std::size_t size) {
  release();
  if (size <= kMostCopied) return copy(descriptor, size);
  void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (memory == MAP_FAILED) return errno;
  data_ = static_cast<const std::byte*>(memory);
  size_ = size;
  mapped_ = true;
  return 0;
}

int FileBytes::copy(int descriptor, std::size_t size) {
  void* memory = nullptr;
  if (::posix_memalign(&memory, kAlignment, size) != 0) throw std::bad_alloc();
  auto* const bytes = static_cast<std::byte*>(memory);
  data_ = bytes;
  while (size_ < size) {
    const auto got = readSome(descriptor, bytes + size_, size - size_);
    if (got > 0) {
      size_ += static_cast<std::size_t>(got);
      continue;
    }
    const int reason = got < 0 ? errno : EIO;  // shorter than it was a moment ago
    release();
    return reason;
  }
  return 0;
}

void FileBytes::release() {
  if (mapped_)
    ::munmap(const_cast<std::byte*>(data_), size_);
  else
    std::free(const_cast<std::byte*>(data_));
  data_ = nullptr;
  size_ = 0;
  mapped_ = false;
}

}  // namespace orvmesh
