#include "embedded/block_reader.h"

#include <algorithm>
#include <cstring>

#include "base/checked.h"
#include "embedded/checksum.h"

namespace orvmesh::embedded {
namespace {

constexpr std::size_t kRecordSize = sizeof(BlockRecord);
constexpr std::size_t kHashedHeader = offsetof(BlockFileHeader, headerHash);

std::string number(std::uint64_t n) { return std::to_string(n); }

std::string blockText(std::int64_t id) { return "block " + std::to_string(id); }

// The first bytes of a foreign file as a person can recognise them.
std::string printable(std::span<const std::byte> bytes) {
  static constexpr char kHex[] = "0123456789abcdef";
  std::string text;
  for (const std::byte b : bytes.first(std::min<std::size_t>(bytes.size(), 8))) {
    const auto c = std::to_integer<unsigned>(b);
    if (c >= 0x20 && c < 0x7f)
      text += static_cast<char>(c);
    else
      text += {'\\', 'x', kHex[c >> 4], kHex[c & 15]};
  }
  return text;
}

}  // namespace

bool BlockReader::fail(std::string text) {
  if (error_.empty()) error_ = std::move(text);
  return false;
}

bool BlockReader::open(const std::string& path) {
  error_.clear();
  columns_.clear();
  blocks_.clear();
  byId_.clear();
  if (!file_.open(path)) return fail(file_.errorText());
  return checkMagic() && checkHeader() && loadDirectory() && checkUniqueIds();
}

bool BlockReader::checkMagic() {
  const auto bytes = file_.bytes();
  const std::size_t seen = std::min(bytes.size(), kBlockMagic.size());
  if (std::memcmp(bytes.data(), kBlockMagic.data(), seen) != 0)
    return fail("is not an OFE block file (it begins with \"" + printable(bytes) +
                "\", a block file with \"0blocks\\x0a\")");
  if (bytes.size() < sizeof(BlockFileHeader))
    return fail("is cut off after " + number(bytes.size()) + " bytes, within the 64-byte header");
  std::memcpy(&header_, bytes.data(), sizeof header_);
  return true;
}

bool BlockReader::checkHeader() {
  const std::uint64_t size = file_.bytes().size();
  if (checksumOf(file_.bytes().data(), kHashedHeader, 0) != header_.headerHash)
    return fail("is damaged: the checksum of the header (bytes 0 to 63) does not match");
  if (header_.containerVersion != kContainerVersion)
    return fail("has container version " + number(header_.containerVersion) + " (known: 1)");
  if (header_.fileSize > size)
    return fail("is cut off: " + number(size) + " of " + number(header_.fileSize) + " bytes are there");
  if (header_.fileSize < size)
    return fail("has " + number(size - header_.fileSize) + " bytes too many after its end at byte " +
                number(header_.fileSize));
  const auto end = checkedSum(header_.directoryOffset, header_.directoryLength);
  if (!end || *end != size || header_.directoryOffset < sizeof header_ ||
      header_.directoryLength % kRecordSize != 0 || header_.reserved != 0)
    return fail("has a wrong header: the directory (offset " + number(header_.directoryOffset) + ", length " +
                number(header_.directoryLength) + ") does not end the file of " + number(size) + " bytes");
  return true;
}

bool BlockReader::loadDirectory() {
  const std::byte* at = file_.bytes().data() + header_.directoryOffset;
  if (checksumOf(at, header_.directoryLength, 0) != header_.directoryHash)
    return fail("is damaged: the checksum of the directory at byte " + number(header_.directoryOffset) +
                " does not match");
  std::uint64_t left = header_.directoryLength / kRecordSize;
  if (header_.blockCount > left) return fail("has a wrong directory: it is too short for its blocks");
  columns_.reserve(left - header_.blockCount);
  blocks_.reserve(header_.blockCount);

  std::uint64_t expected = sizeof header_;
  for (std::uint32_t i = 0; i < header_.blockCount; ++i) {
    if (left == 0) return fail("has a wrong directory: it is too short for its blocks");
    BlockEntry block{};
    std::memcpy(&block.record, at, kRecordSize);
    at += kRecordSize;
    --left;
    // The blocks still to come need a record each, so that columns_ never grows past what it reserved.
    const std::uint64_t others = header_.blockCount - i - 1;
    if (left < others || block.record.columnCount > left - others || block.record.columnCount > kMaxColumns)
      return fail("has a wrong directory: " + blockText(block.record.id) + " has " +
                  number(block.record.columnCount) + " columns, more than the directory holds");
    const std::size_t first = columns_.size();
    columns_.resize(first + block.record.columnCount);
    block.columns = std::span<const ColumnRecord>(columns_).subspan(first);
    if (!block.columns.empty()) std::memcpy(columns_.data() + first, at, block.columns.size_bytes());
    at += block.columns.size_bytes();
    left -= block.record.columnCount;
    if (!checkBlock(block, expected)) return false;
    expected = block.record.offset + block.record.length;
    blocks_.push_back(block);
  }
  if (left != 0 || expected != header_.directoryOffset)
    return fail("has a wrong directory: its blocks end at byte " + number(expected) +
                ", the directory begins at byte " + number(header_.directoryOffset));
  return true;
}

bool BlockReader::checkBlock(const BlockEntry& block, std::uint64_t expectedOffset) {
  const BlockRecord& record = block.record;
  const auto where = [&record] { return "has a wrong directory: " + blockText(record.id) + " "; };
  if (record.offset != expectedOffset)
    return fail(where() + "begins at byte " + number(record.offset) + ", not at " + number(expectedOffset));
  const std::uint64_t room = header_.directoryOffset - expectedOffset;
  if (record.length > room || record.reserved != 0)
    return fail(where() + "has " + number(record.length) + " bytes where " + number(room) + " are left");
  std::uint64_t used = 0;
  for (const ColumnRecord& column : block.columns) {
    const auto index = static_cast<std::uint64_t>(&column - block.columns.data());
    const auto which = [&] { return where() + "column " + number(index) + " "; };
    const std::uint64_t unit = column.type < 256 ? valueSize(static_cast<char>(column.type)) : 0;
    if (unit == 0 || column.reserved != 0)
      return fail(which() + "has an unknown type " + number(column.type));
    if (column.offset != record.offset + used)
      return fail(which() + "begins at byte " + number(column.offset) + ", not at " +
                  number(record.offset + used));
    const auto size = checkedProduct(column.count, unit);
    const auto padded = size ? checkedSum(*size, paddingAfter(*size)) : size;
    if (!padded || *padded > record.length - used)
      return fail(which() + "has " + number(column.count) + " values, more than its block of " +
                  number(record.length) + " bytes holds");
    used += *padded;
  }
  if (used != record.length)
    return fail(where() + "has " + number(record.length) + " bytes, its columns " + number(used));
  return true;
}

bool BlockReader::checkUniqueIds() {
  byId_.reserve(blocks_.size());
  for (std::size_t i = 0; i < blocks_.size(); ++i) byId_.emplace_back(blocks_[i].record.id, i);
  std::sort(byId_.begin(), byId_.end());
  for (std::size_t i = 1; i < byId_.size(); ++i)
    if (byId_[i].first == byId_[i - 1].first)
      return fail("has a wrong directory: " + blockText(byId_[i].first) + " is there twice");
  return true;
}

const BlockEntry* BlockReader::find(std::int64_t id) const {
  const auto found = std::lower_bound(byId_.begin(), byId_.end(), std::pair{id, std::size_t{0}});
  return found != byId_.end() && found->first == id ? &blocks_[found->second] : nullptr;
}

bool BlockReader::verify(const BlockEntry& block, std::size_t column) {
  const ColumnRecord& record = block.columns[column];
  const std::uint64_t size = record.count * valueSize(static_cast<char>(record.type));
  const std::uint64_t padding = paddingAfter(size);
  const std::byte* const bytes = file_.bytes().data() + record.offset;
  const auto which = [&block] { return "is damaged: " + blockText(block.record.id) + ", "; };
  if (checksumOf(bytes, size + padding, columnSeed(block.record.id, column)) != record.hash)
    return fail(which() + "the checksum of column " + number(column) + " (bytes " + number(record.offset) +
                " to " + number(record.offset + size + padding - 1) + ") does not match");
  return std::all_of(bytes + size, bytes + size + padding, [](std::byte b) { return b == std::byte{0}; }) ||
         fail(which() + "the padding of column " + number(column) + " is not zero");
}

}  // namespace orvmesh::embedded
