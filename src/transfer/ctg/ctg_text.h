#pragma once

#include <concepts>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string_view>

#include "base/atomic_file.h"
#include "base/text_number.h"

namespace orvmesh::transfer {

// Text on its way into a file, line by line through a buffer that stays in the processor's cache.
class CtgText {
 public:
  explicit CtgText(AtomicFile& file) : file_(file) {}

  // A line of literals, integers, doubles and functions from the place to write at to the place behind.
  // At most kMostLine bytes.
  template <class... Parts>
  void line(const Parts&... parts) {
    if (used_ > kBuffer - kMostLine) flush();
    char* at = buffer_.get() + used_;
    ((at = put(at, parts)), ...);
    *at++ = '\n';
    used_ = static_cast<std::size_t>(at - buffer_.get());
  }
  // "[name]", what the content writes, "[/name]".
  template <class Content>
  void section(std::string_view name, Content content) {
    line("[", name, "]");
    content();
    line("[/", name, "]");
  }
  // False when anything could not be written; the file tells what.
  bool flush() {
    const bool written = file_.append(buffer_.get(), used_);
    used_ = 0;
    return written;
  }

  static char* put(char* at, std::int32_t value) { return writeInt(at, value); }
  static char* put(char* at, double value) { return writeDefault(at, value); }
  static char* put(char* at, std::string_view text) {
    std::memcpy(at, text.data(), text.size());
    return at + text.size();
  }
  template <std::size_t Size>
  static char* put(char* at, const char (&text)[Size]) {
    std::memcpy(at, text, Size - 1);
    return at + Size - 1;
  }
  static char* put(char* at, const std::invocable<char*> auto& write) { return write(at); }

 private:
  static constexpr std::size_t kBuffer = std::size_t{1} << 18;
  static constexpr std::size_t kMostLine = 512;

  AtomicFile& file_;
  std::unique_ptr<char[]> buffer_ = std::make_unique<char[]>(kBuffer);
  std::size_t used_ = 0;
};

}  // namespace orvmesh::transfer
