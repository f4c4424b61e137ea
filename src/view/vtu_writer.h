#pragma once

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <functional>
#include <span>
#include <string>
#include <vector>

#include "base/atomic_file.h"

namespace orvmesh::view {

// Binary values on their way into a file, through a buffer of fixed size.
class VtuSink {
 public:
  VtuSink(AtomicFile& file, const std::string& path) : file_(file), path_(path), buffer_(kBufferSize) {}

  // Memory as it stands.
  void raw(std::span<const std::byte> bytes);
  void text(const std::string& text) { raw(std::as_bytes(std::span(text))); }
  template <class T>
  void put(T value) {
    if (used_ + sizeof value > buffer_.size()) flush();
    std::memcpy(buffer_.data() + used_, &value, sizeof value);
    used_ += sizeof value;
  }
  // values(0), values(1), ... values(count - 1).
  template <class T, class Values>
  void generate(std::size_t count, const Values& values) {
    std::array<T, 4096> piece;
    for (std::size_t done = 0; done < count;) {
      const std::size_t n = std::min(piece.size(), count - done);
      for (std::size_t i = 0; i < n; ++i) piece[i] = values(done + i);
      raw(std::as_bytes(std::span(piece.data(), n)));
      done += n;
    }
  }
  void flush();
  std::uint64_t written() const { return file_.size() + used_; }

 private:
  static constexpr std::size_t kBufferSize = std::size_t{1} << 18;
  void write(const void* bytes, std::size_t size);

  AtomicFile& file_;
  const std::string& path_;
  std::vector<std::byte> buffer_;
  std::size_t used_ = 0;
};

enum class VtuType : std::uint8_t { Int8, UInt8, Int32, UInt32, Int64, Float32, Float64 };

// One array of a grid: its values are made while they are written.
struct VtuArray {
  const char* name;
  VtuType type;
  int components;
  std::uint64_t tuples;
  std::function<void(VtuSink&)> write;

  std::uint64_t bytes() const;
};

struct VtuGrid {
  std::uint64_t points = 0, cells = 0;
  std::vector<VtuArray> pointData, cellData;
  std::vector<VtuArray> coordinates;  // the one array of the points
  std::vector<VtuArray> topology;     // connectivity, offsets, types
};

// Appends the grid to an open file as a VTK XML file with raw appended data and 64-bit sizes. Throws Failure.
void writeVtu(const VtuGrid& grid, AtomicFile& file, const std::string& path);

}  // namespace orvmesh::view
