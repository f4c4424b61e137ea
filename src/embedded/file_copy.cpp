#include "platform/file_copy.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include "base/descriptor.h"

using orvmesh::Descriptor;
using orvmesh::uninterrupted;

namespace {

// Moves what the file system can move by itself and leaves both files at the place reached. Some file systems
// answer 0 with bytes still to come, so its end means nothing.
void copyInKernel(int from, int to) {
  constexpr std::size_t kPiece = std::size_t{1} << 30;
  while (::copy_file_range(from, nullptr, to, nullptr, kPiece, 0) > 0) {
  }
}

// What is left, up to the end of the source.
bool copyByHand(int from, int to) {
  std::array<char, std::size_t{1} << 16> buffer;
  for (;;) {
    const ssize_t got = orvmesh::readSome(from, buffer.data(), buffer.size());
    if (got <= 0) return got == 0;
    for (ssize_t written = 0, more = 0; written < got; written += more) {
      more = uninterrupted(
          [&] { return ::write(to, buffer.data() + written, static_cast<std::size_t>(got - written)); });
      if (more <= 0) return false;
    }
  }
}

}  // namespace

bool CopyFileA(const char* from, const char* to, bool failIfExists) {
  if (from == nullptr || to == nullptr) return false;
  // A pipe must not hold us up before it is seen to be no file.
  const Descriptor source(orvmesh::openToRead(from, O_NONBLOCK));
  struct stat status {};
  if (source.number() < 0 || ::fstat(source.number(), &status) != 0 || !S_ISREG(status.st_mode)) return false;
  const int flags = O_WRONLY | O_CREAT | O_CLOEXEC | (failIfExists ? O_EXCL : 0);
  Descriptor target(uninterrupted([&] { return ::open(to, flags, status.st_mode & 0777); }));
  struct stat twin {};
  if (target.number() < 0 || ::fstat(target.number(), &twin) != 0) return false;
  if (twin.st_dev == status.st_dev && twin.st_ino == status.st_ino) return false;
  bool copied = uninterrupted([&] { return ::ftruncate(target.number(), 0); }) == 0;
  if (copied) copyInKernel(source.number(), target.number());
  copied = copied && copyByHand(source.number(), target.number()) && target.close();
  if (!copied) (void)::unlink(to);
  return copied;
}
