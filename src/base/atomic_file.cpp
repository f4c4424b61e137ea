#include "base/atomic_file.h"

#include <fcntl.h>
#include <stdlib.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/descriptor.h"

namespace orvmesh {
namespace {

std::string resolveLinks(const std::string& path) {
  const std::unique_ptr<char, decltype(&::free)> real(::realpath(path.c_str(), nullptr), &::free);
  return real ? std::string(real.get()) : path;
}

std::string folderOf(const std::string& path) {
  const auto slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

int writeAll(int descriptor, const char* bytes, std::size_t size, std::int64_t offset) {
  while (size > 0) {
    const auto written = uninterrupted([&] {
      return offset < 0 ? ::write(descriptor, bytes, size)
                        : ::pwrite(descriptor, bytes, size, static_cast<off_t>(offset));
    });
    if (written <= 0) return written < 0 ? errno : EIO;
    bytes += written;
    size -= static_cast<std::size_t>(written);
    if (offset >= 0) offset += written;
  }
  return 0;
}

// A rename is durable once its folder is; a folder that cannot be synced (some network file systems) is no
// error.
void syncFolder(const std::string& folder) {
  const Descriptor descriptor(openToRead(folder.c_str(), O_DIRECTORY));
  if (descriptor.isOpen()) (void)uninterrupted([&] { return ::fsync(descriptor.number()); });
}

}  // namespace

bool AtomicFile::fail(const char* what, int errorNumber) {
  if (error_.empty()) error_ = std::string(what) + ": " + std::strerror(errorNumber);
  const std::string kept = error_;
  discard();
  error_ = kept;
  return false;
}

bool AtomicFile::open(const std::string& target) {
  static std::atomic<unsigned> serial{0};
  discard();
  error_.clear();
  size_ = 0;
  if (target.empty()) return fail("cannot be written", ENOENT);
  target_ = resolveLinks(target);

  struct stat status {};
  const bool exists = ::stat(target_.c_str(), &status) == 0;
  if (exists && S_ISDIR(status.st_mode)) return fail("cannot be written", EISDIR);
  if (exists && !S_ISREG(status.st_mode)) {
    error_ = "cannot be written: not a regular file";
    return false;
  }
  if (exists && ::access(target_.c_str(), W_OK) != 0) return fail("cannot be written", errno);

  for (int attempt = 0; attempt < 100; ++attempt) {
    temporary_ = target_ + "." + std::to_string(::getpid()) + "-" + std::to_string(++serial) + ".tmp";
    descriptor_ = uninterrupted(
        [&] { return ::open(temporary_.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, 0666); });
    if (descriptor_ >= 0) break;
    if (errno != EEXIST) {
      const int reason = errno;
      temporary_.clear();
      return fail("cannot be written", reason);
    }
  }
  if (descriptor_ < 0) {
    temporary_.clear();
    return fail("cannot be written", EEXIST);
  }
  // A mode that cannot be carried over (another owner's file) leaves the default one.
  if (exists) (void)!::fchmod(descriptor_, status.st_mode & 07777);
  return true;
}

bool AtomicFile::append(const void* bytes, std::size_t size) {
  if (!isOpen()) return false;
  if (const int reason = writeAll(descriptor_, static_cast<const char*>(bytes), size, -1); reason != 0)
    return fail("cannot be written", reason);
  size_ += size;
  return true;
}

bool AtomicFile::overwrite(std::uint64_t offset, const void* bytes, std::size_t size) {
  if (!isOpen()) return false;
  const int reason =
      writeAll(descriptor_, static_cast<const char*>(bytes), size, static_cast<std::int64_t>(offset));
  return reason == 0 || fail("cannot be written", reason);
}

bool AtomicFile::commit() {
  if (!isOpen()) return false;
  if (uninterrupted([&] { return ::fsync(descriptor_); }) != 0 && errno != EINVAL)
    return fail("cannot be made durable", errno);
  const int closing = descriptor_;
  descriptor_ = -1;
  if (::close(closing) != 0 && errno != EINTR) return fail("cannot be closed", errno);
  if (::rename(temporary_.c_str(), target_.c_str()) != 0) return fail("cannot be renamed into place", errno);
  temporary_.clear();
  syncFolder(folderOf(target_));
  return true;
}

void AtomicFile::discard() {
  if (descriptor_ >= 0) ::close(descriptor_);
  descriptor_ = -1;
  if (!temporary_.empty()) (void)::unlink(temporary_.c_str());
  temporary_.clear();
}

}  // namespace orvmesh
