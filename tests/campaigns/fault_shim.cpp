// Preloaded into a program, counts its calls that touch files of one folder and spoils call n.
//   FAULT_FOLDER  absolute path; relative paths count as well, so the program is to run in it
//   FAULT_CALL    n, from 1
//   FAULT_MODE    kill | once | from | short
//   FAULT_ERRNO   for once and from; a call that cannot give this error goes on untouched
//   FAULT_TRACE   a file that gets one line per call: its name, the errors it can give, the path
#include <dlfcn.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <sys/syscall.h>
#include <sys/uio.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <initializer_list>
#include <string>
#include <string_view>

namespace {

using Errors = std::initializer_list<int>;
constexpr Errors kWriting{ENOSPC, EIO, EDQUOT, EINTR};
constexpr Errors kReading{EIO, EINTR};
constexpr Errors kNaming{ENOSPC, EIO, EDQUOT};
constexpr Errors kPlain{EIO};
constexpr Errors kMapping{ENOMEM};

enum class Mode { Count, Kill, Once, From, Short };
enum class Fate { GoOn, Fail, Shorten };

std::string_view setting(const char* name) {
  const char* const value = std::getenv(name);
  return value == nullptr ? "" : value;
}

struct Plan {
  std::string_view folder = setting("FAULT_FOLDER");
  std::string_view name = setting("FAULT_MODE");
  long call = std::strtol(setting("FAULT_CALL").data(), nullptr, 10);
  int error = static_cast<int>(std::strtol(setting("FAULT_ERRNO").data(), nullptr, 10));
  Mode mode = name == "kill"    ? Mode::Kill
              : name == "once"  ? Mode::Once
              : name == "from"  ? Mode::From
              : name == "short" ? Mode::Short
                                : Mode::Count;
  // Past the hooks of this file.
  long trace = setting("FAULT_TRACE").empty() ? -1
                                              : ::syscall(SYS_openat, AT_FDCWD, setting("FAULT_TRACE").data(),
                                                          O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, 0666);
  long calls = 0;
  std::array<bool, 1024> watched{};
};

Plan& plan() {
  static Plan instance;
  return instance;
}

bool isWatched(int descriptor) {
  return descriptor >= 0 && static_cast<std::size_t>(descriptor) < plan().watched.size() &&
         plan().watched[static_cast<std::size_t>(descriptor)];
}

void watch(int descriptor, bool on) {
  if (descriptor >= 0 && static_cast<std::size_t>(descriptor) < plan().watched.size())
    plan().watched[static_cast<std::size_t>(descriptor)] = on;
}

bool isInside(const char* path) {
  return !plan().folder.empty() && path != nullptr &&
         (path[0] != '/' || std::string_view(path).substr(0, plan().folder.size()) == plan().folder);
}

Fate meet(const char* call, Errors errors, const char* path = "") {
  Plan& p = plan();
  ++p.calls;
  if (p.trace >= 0) {
    std::string line = call;
    for (const int error : errors) line.append(1, ' ').append(std::to_string(error));
    line.append(1, ' ').append(path).append(1, '\n');
    (void)::syscall(SYS_write, p.trace, line.data(), line.size());
  }
  if (p.mode == Mode::Kill && p.calls == p.call) (void)::syscall(SYS_kill, ::getpid(), SIGKILL);
  if (p.mode == Mode::Short && p.calls == p.call) return Fate::Shorten;
  const bool now = (p.mode == Mode::Once && p.calls == p.call) || (p.mode == Mode::From && p.calls >= p.call);
  for (const int error : errors)
    if (now && error == p.error) {
      errno = error;
      return Fate::Fail;
    }
  return Fate::GoOn;
}

template <class F>
F* next(const char* name) {
  return reinterpret_cast<F*>(::dlsym(RTLD_NEXT, name));
}

// A call that moves bytes: it fails, moves some or moves all.
template <class Move>
ssize_t moveBytes(const char* call, Errors errors, int descriptor, std::size_t size, Move move) {
  const Fate fate = isWatched(descriptor) ? meet(call, errors) : Fate::GoOn;
  if (fate == Fate::Fail) return -1;
  return move(fate == Fate::Shorten && size > 1 ? size / 2 : size);
}

int openWatched(const char* path, int flags, mode_t mode) {
  static auto* const real = next<int(const char*, int, ...)>("open");
  if (!isInside(path)) return real(path, flags, mode);
  if (meet("open", (flags & O_CREAT) != 0 ? kWriting : kReading, path) == Fate::Fail) return -1;
  const int descriptor = real(path, flags, mode);
  watch(descriptor, true);
  return descriptor;
}

mode_t modeOf(int flags, va_list arguments) {
  return (flags & O_CREAT) != 0 ? static_cast<mode_t>(va_arg(arguments, int)) : 0;
}

std::FILE* openStream(const char* path, const char* mode) {
  static auto* const real = next<std::FILE*(const char*, const char*)>("fopen");
  if (!isInside(path)) return real(path, mode);
  if (meet("fopen", mode[0] == 'r' ? kReading : kWriting, path) == Fate::Fail) return nullptr;
  std::FILE* const stream = real(path, mode);
  if (stream != nullptr) watch(::fileno(stream), true);
  return stream;
}

template <class... Arguments>
int onPath(const char* name, Errors errors, const char* path, Arguments... more) {
  auto* const real = next<int(const char*, Arguments...)>(name);
  if (isInside(path) && meet(name, errors, path) == Fate::Fail) return -1;
  return real(path, more...);
}

template <class... Arguments>
int onDescriptor(const char* name, Errors errors, int descriptor, Arguments... more) {
  auto* const real = next<int(int, Arguments...)>(name);
  if (isWatched(descriptor) && meet(name, errors) == Fate::Fail) return -1;
  return real(descriptor, more...);
}

}  // namespace

extern "C" {
#pragma GCC visibility push(default)

int open(const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  return openWatched(path, flags, mode);
}
int open64(const char* path, int flags, ...) __attribute__((alias("open")));

int openat(int folder, const char* path, int flags, ...) {
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = modeOf(flags, arguments);
  va_end(arguments);
  static auto* const real = next<int(int, const char*, int, ...)>("openat");
  return folder == AT_FDCWD ? openWatched(path, flags, mode) : real(folder, path, flags, mode);
}
int openat64(int folder, const char* path, int flags, ...) __attribute__((alias("openat")));

int creat(const char* path, mode_t mode) { return openWatched(path, O_WRONLY | O_CREAT | O_TRUNC, mode); }
int creat64(const char* path, mode_t mode) __attribute__((alias("creat")));

std::FILE* fopen(const char* path, const char* mode) { return openStream(path, mode); }
std::FILE* fopen64(const char* path, const char* mode) __attribute__((alias("fopen")));

ssize_t write(int descriptor, const void* bytes, size_t size) {
  static auto* const real = next<ssize_t(int, const void*, size_t)>("write");
  return moveBytes("write", kWriting, descriptor, size, [&](size_t n) { return real(descriptor, bytes, n); });
}

ssize_t pwrite(int descriptor, const void* bytes, size_t size, off_t at) {
  static auto* const real = next<ssize_t(int, const void*, size_t, off_t)>("pwrite");
  return moveBytes("pwrite", kWriting, descriptor, size,
                   [&](size_t n) { return real(descriptor, bytes, n, at); });
}
ssize_t pwrite64(int descriptor, const void* bytes, size_t size, off_t at) __attribute__((alias("pwrite")));

ssize_t writev(int descriptor, const iovec* pieces, int count) {
  static auto* const real = next<ssize_t(int, const iovec*, int)>("writev");
  return moveBytes("writev", kWriting, descriptor, static_cast<size_t>(count),
                   [&](size_t n) { return real(descriptor, pieces, static_cast<int>(n)); });
}

ssize_t read(int descriptor, void* bytes, size_t size) {
  static auto* const real = next<ssize_t(int, void*, size_t)>("read");
  return moveBytes("read", kReading, descriptor, size, [&](size_t n) { return real(descriptor, bytes, n); });
}

size_t fread(void* bytes, size_t unit, size_t count, std::FILE* stream) {
  static auto* const real = next<size_t(void*, size_t, size_t, std::FILE*)>("fread");
  if (!isWatched(::fileno(stream)) || meet("fread", kReading) != Fate::Fail)
    return real(bytes, unit, count, stream);
  constexpr int kErrorSeen = 0x20;  // what ferror looks at in the C library this is made for
  stream->_flags |= kErrorSeen;
  return 0;
}

ssize_t copy_file_range(int from, off64_t* fromAt, int to, off64_t* toAt, size_t size, unsigned flags) {
  static auto* const real = next<ssize_t(int, off64_t*, int, off64_t*, size_t, unsigned)>("copy_file_range");
  return moveBytes("copy_file_range", kWriting, to, size,
                   [&](size_t n) { return real(from, fromAt, to, toAt, n, flags); });
}

int fsync(int descriptor) { return onDescriptor("fsync", kWriting, descriptor); }
int fchmod(int descriptor, mode_t mode) { return onDescriptor("fchmod", kPlain, descriptor, mode); }
int ftruncate(int descriptor, off_t size) { return onDescriptor("ftruncate", kWriting, descriptor, size); }
int ftruncate64(int descriptor, off_t size) __attribute__((alias("ftruncate")));

// A descriptor is gone whatever close says.
int close(int descriptor) {
  static auto* const real = next<int(int)>("close");
  if (!isWatched(descriptor)) return real(descriptor);
  watch(descriptor, false);
  const bool fails = meet("close", kWriting) == Fate::Fail;
  const int reason = errno;
  const int result = real(descriptor);
  if (fails) errno = reason;
  return fails ? -1 : result;
}

int fclose(std::FILE* stream) {
  static auto* const real = next<int(std::FILE*)>("fclose");
  const int descriptor = ::fileno(stream);
  if (!isWatched(descriptor)) return real(stream);
  watch(descriptor, false);
  const bool fails = meet("fclose", kWriting) == Fate::Fail;
  const int reason = errno;
  const int result = real(stream);
  if (fails) errno = reason;
  return fails ? EOF : result;
}

int rename(const char* from, const char* to) { return onPath("rename", kNaming, from, to); }
int unlink(const char* path) { return onPath("unlink", kPlain, path); }
int remove(const char* path) { return onPath("remove", kPlain, path); }

void* mmap(void* place, size_t size, int protection, int flags, int descriptor, off_t at) {
  static auto* const real = next<void*(void*, size_t, int, int, int, off_t)>("mmap");
  if (isWatched(descriptor) && meet("mmap", kMapping) == Fate::Fail) return MAP_FAILED;
  return real(place, size, protection, flags, descriptor, at);
}
void* mmap64(void* place, size_t size, int protection, int flags, int descriptor, off_t at)
    __attribute__((alias("mmap")));

#pragma GCC visibility pop
}
