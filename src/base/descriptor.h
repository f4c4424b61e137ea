#pragma once

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>

namespace orvmesh {

// The result of a system call, made again as long as a signal interrupts it.
template <class Call>
auto uninterrupted(Call call) {
  auto result = call();
  while (result < 0 && errno == EINTR) result = call();
  return result;
}

// An open file, closed at the end.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() { close(); }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int number() const { return number_; }
  bool isOpen() const { return number_ >= 0; }
  // False when the file was not open or what was written to it may be lost. Where close is interrupted, the
  // number is free all the same.
  bool close() {
    const int closing = number_;
    number_ = -1;
    return closing >= 0 && (::close(closing) == 0 || errno == EINTR);
  }

 private:
  int number_;
};

inline int openToRead(const char* path, int flags = 0) {
  return uninterrupted([&] { return ::open(path, O_RDONLY | O_CLOEXEC | flags); });
}

// As ::read: at most size bytes, 0 at the end of the file, -1 and errno.
inline ssize_t readSome(int descriptor, void* bytes, std::size_t size) {
  return uninterrupted([&] { return ::read(descriptor, bytes, size); });
}

}  // namespace orvmesh
