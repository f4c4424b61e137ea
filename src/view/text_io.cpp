#include "view/text_io.h"

#include <sys/stat.h>

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <memory>

#include "base/failure.h"

namespace orvmesh::view {

std::string readWholeFile(const std::string& path) {
  const auto cannot = [&](int reason) {
    return Failure(path, std::string("cannot be read: ") + std::strerror(reason));
  };
  const std::unique_ptr<std::FILE, int (*)(std::FILE*)> file(std::fopen(path.c_str(), "rb"), &std::fclose);
  if (!file) throw cannot(errno);

  // The size is a hint; pipes have none.
  struct stat status {};
  std::string bytes;
  if (::fstat(::fileno(file.get()), &status) == 0 && S_ISREG(status.st_mode))
    bytes.reserve(static_cast<std::size_t>(status.st_size) + 1);
  constexpr std::size_t kPiece = std::size_t{1} << 16;
  for (std::size_t got = kPiece; got == kPiece;) {
    const auto size = bytes.size();
    bytes.resize(size + kPiece);
    got = std::fread(bytes.data() + size, 1, kPiece, file.get());
    bytes.resize(size + got);
  }
  if (std::ferror(file.get()) != 0) throw cannot(errno);
  return bytes;
}

void printText(std::string_view text) {
  if (std::fwrite(text.data(), 1, text.size(), stdout) != text.size())
    throw Failure("standard output", std::string("cannot be written: ") + std::strerror(errno));
}

}  // namespace orvmesh::view
