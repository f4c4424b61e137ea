#pragma once

#include <array>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>

#include "embedded/block_reader.h"
#include "embedded/ofe_layout.h"
#include "platform/ofe_header.h"

namespace orvmesh::embedded {

// The entries of one block: typed columns in place, as the block's layout names them.
class BlockView {
 public:
  BlockView() = default;
  BlockView(const BlockReader& reader, const BlockEntry& entry, std::int32_t count)
      : reader_(&reader), entry_(&entry), count_(count) {}

  std::int32_t count() const { return count_; }
  template <class T>
  std::span<const T> values(std::size_t column) const {
    return count_ == 0 ? std::span<const T>{} : reader_->values<T>(*entry_, column);
  }
  // The `width` values of an entry (counted from 0) in a column of Per::Entry.
  template <class T>
  const T* at(std::size_t column, std::int32_t entry, int width) const {
    return values<T>(column).data() + static_cast<std::size_t>(entry) * static_cast<std::size_t>(width);
  }
  // A piece of a pool that is cut by offsets.
  template <class T>
  std::span<const T> piece(std::int64_t index) const {
    const std::int64_t* offset = values<std::int64_t>(column::kPoolOffsets).data() + index;
    return values<T>(column::kPool)
        .subspan(static_cast<std::size_t>(offset[0]), static_cast<std::size_t>(offset[1] - offset[0]));
  }
  std::string_view text(std::int64_t index) const {
    const auto bytes = piece<char>(index);
    return {bytes.data(), bytes.size()};
  }
  // Nodes of every element when all have as many, else 0.
  std::int32_t commonNodeCount() const;

 private:
  const BlockReader* reader_ = nullptr;
  const BlockEntry* entry_ = nullptr;
  std::int32_t count_ = 0;
};

// Opens an OFE file: the shapes of all blocks are proven at once, the bytes of a block when it is asked for.
class OfeReader {
 public:
  // secondPartOnly: the blocks of the first part seem empty and are not looked at.
  bool open(const std::string& path, bool secondPartOnly);
  const OFEHeader& header() const { return header_; }
  int version() const { return version_; }
  std::int32_t entryCount(Block block) const { return counts_[static_cast<std::size_t>(block)]; }

  // Checksums and pieces proven. Nothing, and errorText(), when the block is damaged.
  std::optional<BlockView> block(Block block);
  // Only one column proven, for a caller that looks at no other.
  std::optional<BlockView> blockForColumn(Block block, std::size_t column);

  const std::string& errorText() const { return error_; }

 private:
  bool fail(std::string text);
  bool readHeader();
  bool checkShape(const BlockLayout& layout);
  bool checkPieces(const BlockLayout& layout, const BlockView& view);
  bool verify(const BlockLayout& layout, const BlockEntry& entry, std::size_t column);

  BlockReader file_;
  OFEHeader header_;
  int version_ = 0;
  std::array<const BlockEntry*, kBlockCount> entries_{};
  std::array<std::int32_t, kBlockCount> counts_{};
  std::string error_;
};

}  // namespace orvmesh::embedded
