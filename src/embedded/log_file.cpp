#include "embedded/log_file.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "base/descriptor.h"

namespace orvmesh::embedded {
namespace {

bool isSameFile(const std::string& a, const std::string& b) {
  struct stat first {};
  struct stat second {};
  return ::stat(a.c_str(), &first) == 0 && ::stat(b.c_str(), &second) == 0 && first.st_dev == second.st_dev &&
         first.st_ino == second.st_ino;
}

bool writeTo(const std::string& logPath, std::string_view text, const std::string& kept, int mode) {
  if (logPath.empty() || isSameFile(logPath, kept)) return false;
  // Without O_NONBLOCK the open of a pipe would wait for its reader.
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | O_NONBLOCK | mode;
  const Descriptor descriptor(uninterrupted([&] { return ::open(logPath.c_str(), flags, 0666); }));
  bool written = descriptor.isOpen();
  while (written && !text.empty()) {
    const auto size = uninterrupted([&] { return ::write(descriptor.number(), text.data(), text.size()); });
    written = size > 0;
    if (written) text.remove_prefix(static_cast<std::size_t>(size));
  }
  return written;
}

}  // namespace

bool startLog(const std::string& logPath, const std::string& kept) {
  return writeTo(logPath, {}, kept, O_TRUNC);
}

void appendToLog(const std::string& logPath, std::string_view text, const std::string& kept) {
  (void)writeTo(logPath, text, kept, O_APPEND);
}

}  // namespace orvmesh::embedded
