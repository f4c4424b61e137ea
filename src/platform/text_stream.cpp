#include "platform/text_stream.h"

#include <locale.h>

#include <cstdio>
#include <locale>

#include "platform/locale.h"

namespace {

// Made once and kept: the C library shares a locale's data among threads and would free it under their feet,
// as far as a thread sanitizer can see.
locale_t systemLocale() {
  static const locale_t kept = ::newlocale(LC_ALL_MASK, COrvLocale::GetSystemDefaultLocale().c_str(), {});
  return kept;
}

// The calling thread's locale is the system's default one for the lifetime of this object; that of the
// process and of other threads stays.
class SystemLocaleScope {
 public:
  SystemLocaleScope() : previous_(::uselocale(systemLocale())) {}
  ~SystemLocaleScope() { ::uselocale(previous_); }
  SystemLocaleScope(const SystemLocaleScope&) = delete;
  SystemLocaleScope& operator=(const SystemLocaleScope&) = delete;

 private:
  locale_t previous_;
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
