#include "view/text_io.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>

#include "base/descriptor.h"
#include "base/failure.h"

namespace orvmesh::view {

std::string readWholeFile(const std::string& path) {
  const auto cannot = [&](int reason) {
    return Failure(path, std::string("cannot be read: ") + std::strerror(reason));
  };
  const Descriptor file(openToRead(path.c_str()));
  if (!file.isOpen()) throw cannot(errno);

  // The size is a hint; pipes have none.
  struct stat status {};
  std::string bytes;
  if (::fstat(file.number(), &status) == 0 && S_ISREG(status.st_mode))
    bytes.reserve(static_cast<std::size_t>(status.st_size) + 1);
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  for (;;) {
    const auto size = bytes.size();
    bytes.resize(size + kPiece);
    const auto got = readSome(file.number(), bytes.data() + size, kPiece);
    if (got < 0) throw cannot(errno);
    bytes.resize(size + static_cast<std::size_t>(got));
    if (got == 0) return bytes;
  }
}

void printText(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
    throw Failure("standard output", std::string("cannot be written: ") + std::strerror(errno));
}

}  // namespace orvmesh::view
