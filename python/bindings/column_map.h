#pragma once

#include <pybind11/pybind11.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "embedded/ofe_layout.h"

namespace orvmesh::python {

// The columns of one block that a caller gave, of the types and sizes that its layout asks for. Keeps the
// caller's arrays alive; everything but the constructor works without the interpreter's lock.
class BlockColumns {
 public:
  BlockColumns() = default;
  // Null columns: an empty block. Throws Fault.
  BlockColumns(const embedded::BlockLayout& layout, pybind11::handle columns);

  std::int64_t entries() const { return entries_; }
  // Columns of 4-byte values as words, whatever they mean.
  std::span<const std::int32_t> words(std::size_t column) const { return spanOf<std::int32_t>(column); }
  // A piece of the block's pool.
  std::span<const std::int32_t> list(std::int64_t index) const { return piece<std::int32_t>(index); }
  std::int64_t texts() const {
    return std::max<std::int64_t>(static_cast<std::int64_t>(columns_[offsetsColumn_].count) - 1, 0);
  }
  std::string_view text(std::int64_t index) const {
    const auto bytes = piece<char>(index);
    return {bytes.data(), bytes.size()};
  }

 private:
  template <class T>
  std::span<const T> spanOf(std::size_t column) const {
    return {static_cast<const T*>(columns_[column].data), columns_[column].count};
  }
  template <class T>
  std::span<const T> piece(std::int64_t index) const {
    const auto pool = spanOf<T>(0);
    const auto offsets = spanOf<std::int64_t>(offsetsColumn_);
    const auto i = static_cast<std::size_t>(index);
    if (offsets.empty()) return pool.subspan(i * commonLength_, commonLength_);
    return pool.subspan(static_cast<std::size_t>(offsets[i]),
                        static_cast<std::size_t>(offsets[i + 1] - offsets[i]));
  }
  void take(const embedded::ColumnLayout& layout, std::size_t index, pybind11::handle array);
  void checkCounts(const embedded::BlockLayout& layout);
  void checkOffsets(const embedded::BlockLayout& layout);

  struct Column {
    const void* data = nullptr;
    std::size_t count = 0;
  };
  std::array<Column, 8> columns_{};
  std::vector<pybind11::object> arrays_;
  const char* block_ = "";
  std::size_t offsetsColumn_ = 0;
  std::size_t commonLength_ = 0;
  std::int64_t entries_ = 0;
};

}  // namespace orvmesh::python
