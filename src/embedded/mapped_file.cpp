#include "embedded/mapped_file.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstring>

#include "base/descriptor.h"

namespace orvmesh::embedded {

bool MappedFile::open(const std::string& path) {
  bytes_.release();
  error_.clear();
  // Without O_NONBLOCK the open of a pipe would wait for its writer.
  const Descriptor descriptor(openToRead(path.c_str(), O_NONBLOCK));
  if (descriptor.isOpen()) return take(descriptor.number());
  error_ = std::string("cannot be read: ") + std::strerror(errno);
  return false;
}

bool MappedFile::take(int descriptor) {
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

  const int reason = bytes_.take(descriptor, static_cast<std::size_t>(status.st_size));
  if (reason != 0) error_ = std::string("cannot be read: ") + std::strerror(reason);
  return reason == 0;
}

}  // namespace orvmesh::embedded
