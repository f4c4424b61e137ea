#include "embedded/mapped_file.h"

#include <sys/mman.h>
#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/descriptor.h"

namespace orvmesh::embedded {

bool MappedFile::open(const std::string& path) {
  close();
  error_.clear();
  // Without O_NONBLOCK the open of a pipe would wait for its writer.
  const Descriptor descriptor(openToRead(path.c_str(), O_NONBLOCK));
  if (descriptor.isOpen()) return map(descriptor.number());
  error_ = std::string("cannot be read: ") + std::strerror(errno);
  return false;
}

bool MappedFile::map(int descriptor) {
  struct stat status {};
  if (::fstat(descriptor, &status) != 0) {
    error_ = std::string("cannot be read: ") + std::strerror(errno);
  } else if (S_ISDIR(status.st_mode)) {
    error_ = "is a directory";
  } else if (!S_ISREG(status.st_mode)) {
    error_ = "is not a regular file";
  } else if (status.st_size <= 0) {
    error_ = "is empty";
  }
  if (!error_.empty()) return false;

  const auto size = static_cast<std::size_t>(status.st_size);
  void* const memory = ::mmap(nullptr, size, PROT_READ, MAP_PRIVATE, descriptor, 0);
  if (memory == MAP_FAILED) {
    error_ = std::string("cannot be mapped: ") + std::strerror(errno);
    return false;
  }
  bytes_ = {static_cast<const std::byte*>(memory), size};
  return true;
}

void MappedFile::close() {
  if (!bytes_.empty()) ::munmap(const_cast<std::byte*>(bytes_.data()), bytes_.size());
  bytes_ = {};
}

}  // namespace orvmesh::embedded
