#include "platform/text_stream.h"

#include <clocale>
#include <cstdio>
#include <locale>
#include <stdexcept>
#include <string>

#include "platform/locale.h"

namespace {

// The process's global locale is the system's default one for the lifetime of this object. The locale of C is
// another one, which setting that of C++ changes as well.
class SystemLocaleScope {
 public:
  SystemLocaleScope() : previousC_(currentC()), previous_(std::locale::global(systemDefault())) {}
  ~SystemLocaleScope() {
    std::locale::global(previous_);
    std::setlocale(LC_ALL, previousC_.c_str());
  }
  SystemLocaleScope(const SystemLocaleScope&) = delete;
  SystemLocaleScope& operator=(const SystemLocaleScope&) = delete;

 private:
  static std::string currentC() {
    const char* const name = std::setlocale(LC_ALL, nullptr);
    return name == nullptr ? "C" : name;
  }
  static std::locale systemDefault() {
    try {
      return std::locale(COrvLocale::GetSystemDefaultLocale());
    } catch (const std::runtime_error&) {
      return std::locale::classic();
    }
  }
  std::string previousC_;
  std::locale previous_;
};

template <class Stream>
void openWithRetry(Stream& stream, const char* path, std::ios_base::openmode mode) {
  constexpr int kAttempts = 4;
  stream.imbue(std::locale::classic());
  const SystemLocaleScope scope;
  for (int attempt = 0; attempt < kAttempts; ++attempt) {
    stream.clear();
    stream.open(path, mode);
    if (stream.is_open()) return;
  }
  stream.setstate(std::ios_base::failbit);
}

}  // namespace

void OpenTextStreamWithRetry(std::ifstream& stream, const char* path) {
  openWithRetry(stream, path, std::ios_base::in);
}

void OpenTextStreamWithRetry(std::ofstream& stream, const char* path) {
  (void)std::remove(path);
  openWithRetry(stream, path, std::ios_base::out | std::ios_base::trunc);
}
