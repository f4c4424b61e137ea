#include "import/mesh_file.h"

#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <utility>

#include "base/descriptor.h"
#include "base/failure.h"

namespace orvmesh::importing {
namespace {

// Why the opened file cannot be read; empty when it can.
std::string refusal(int descriptor, struct stat& status) {
  if (::fstat(descriptor, &status) != 0) return std::string("cannot be read: ") + std::strerror(errno);
  if (S_ISDIR(status.st_mode)) return "is a directory; expected a mesh file (MSH 2.2 or 4.1)";
  if (!S_ISREG(status.st_mode)) return "is no regular file; expected a mesh file (MSH 2.2 or 4.1)";
  if (status.st_size <= 0) return "is empty; expected a mesh file (MSH 2.2 or 4.1)";
  return {};
}

}  // namespace

MeshFile::MeshFile(std::string path) : path_(std::move(path)) {
  // Without O_NONBLOCK the open of a pipe would wait for its writer.
  const Descriptor descriptor(openToRead(path_.c_str(), O_NONBLOCK));
  if (!descriptor.isOpen()) throw Failure(path_, std::string("cannot be read: ") + std::strerror(errno));
  struct stat status {};
  std::string problem = refusal(descriptor.number(), status);
  if (problem.empty())
    if (const int reason = bytes_.take(descriptor.number(), static_cast<std::size_t>(status.st_size));
        reason != 0)
      problem = std::string("cannot be read: ") + std::strerror(reason);
  if (!problem.empty()) throw Failure(path_, problem);
}

void MeshFile::fail(const char* at, const std::string& what) const {
  const auto place = binary_ ? "byte " + std::to_string(at - begin())
                             : "line " + std::to_string(1 + std::count(begin(), at, '\n'));
  throw Failure(path_, place + ": " + what);
}

}  // namespace orvmesh::importing
