#include "embedded/ofe_reader.h"

#include <algorithm>
#include <cstring>

#include "base/checked.h"

namespace orvmesh::embedded {
namespace {

std::string number(std::uint64_t n) { return std::to_string(n); }

std::string columnText(const BlockLayout& layout, std::size_t column) {
  return std::string(layout.name) + " column " + layout.columns[column].name;
}

// What a column of `count` values may hold for `entries` entries; empty when it is right.
std::string wrongCount(const ColumnLayout& layout, std::uint64_t count, std::uint64_t entries) {
  std::uint64_t legal = 0;
  switch (layout.per) {
    case Per::Entry:
      legal = entries * static_cast<std::uint64_t>(layout.width);
      break;
    case Per::OffsetsIfMixed:
      if (count == 0) return {};
      [[fallthrough]];
    case Per::Offsets:
      legal = entries + 1;
      break;
    case Per::TextOffsets:
      return count > entries ? std::string{} : "more than " + number(entries);
    case Per::Pool:
    case Per::Free:
      return {};
  }
  return count == legal ? std::string{} : number(legal);
}

}  // namespace

std::int32_t BlockView::commonNodeCount() const {
  if (count_ == 0 || !values<std::int64_t>(column::kOffsets).empty()) return 0;
  return static_cast<std::int32_t>(values<std::int32_t>(column::kConnectivity).size() /
                                   static_cast<std::size_t>(count_));
}

bool OfeReader::fail(std::string text) {
  if (error_.empty()) error_ = std::move(text);
  return false;
}

bool OfeReader::open(const std::string& path, bool secondPartOnly) {
  error_.clear();
  entries_.fill(nullptr);
  counts_.fill(0);
  if (!file_.open(path)) return fail(file_.errorText());
  for (const BlockLayout& layout : allLayouts()) {
    const auto index = static_cast<std::size_t>(layout.block);
    entries_[index] = file_.find(layout.id);
    if (entries_[index] == nullptr) return fail("has no block " + std::string(layout.name));
    const bool skipped = secondPartOnly && !layout.secondPart && layout.block != Block::Header;
    if (!skipped && !checkShape(layout)) return false;
  }
  if (file_.blocks().size() != kBlockCount)
    return fail("has " + number(file_.blocks().size()) + " blocks (legal: " + number(kBlockCount) + ")");
  return readHeader();
}

bool OfeReader::checkShape(const BlockLayout& layout) {
  const auto index = static_cast<std::size_t>(layout.block);
  const auto columns = entries_[index]->columns;
  if (columns.empty() && layout.block != Block::Header) return true;
  if (columns.size() != layout.columns.size())
    return fail(std::string(layout.name) + " has " + number(columns.size()) + " columns (legal: 0 or " +
                number(layout.columns.size()) + ")");
  std::uint64_t entries = 0;
  for (std::size_t i = 0; i < columns.size(); ++i) {
    if (columns[i].type != static_cast<std::uint32_t>(layout.columns[i].type))
      return fail(columnText(layout, i) + " has type '" + static_cast<char>(columns[i].type) + "' (legal: '" +
                  layout.columns[i].type + "')");
    if (layout.columns[i].per == Per::Entry && entries == 0)
      entries = columns[i].count / static_cast<std::uint64_t>(layout.columns[i].width);
  }
  if (entries > kMaxEntities)
    return fail(std::string(layout.name) + " has " + number(entries) + " entries (legal: 0 to 2147483647)");
  for (std::size_t i = 0; i < columns.size(); ++i)
    if (const auto legal = wrongCount(layout.columns[i], columns[i].count, entries); !legal.empty())
      return fail(columnText(layout, i) + " has " + number(columns[i].count) + " values (legal: " + legal +
                  " for " + number(entries) + " entries)");
  counts_[index] = static_cast<std::int32_t>(entries);
  return true;
}

bool OfeReader::readHeader() {
  const BlockLayout& layout = layoutOf(Block::Header);
  const BlockEntry& entry = *entries_[static_cast<std::size_t>(Block::Header)];
  for (std::size_t i = 0; i < entry.columns.size(); ++i)
    if (!verify(layout, entry, i)) return false;
  const auto words = file_.values<std::int32_t>(entry, column::kHeaderWords);
  const auto version = file_.values<std::int32_t>(entry, column::kFileVersion);
  if (words.size() != header_.words.size() || version.size() != 1)
    return fail("header has " + number(words.size()) + " words and " + number(version.size()) +
                " versions (legal: 160 and 1)");
  std::copy(words.begin(), words.end(), header_.words.begin());
  version_ = version[0];
  const auto known = writableVersions();
  if (std::find(known.begin(), known.end(), version_) == known.end())
    return fail("version " + std::to_string(version_) + " is unknown (known: " + writableVersionsAsText() +
                ")");
  std::string* const strings[] = {&header_.source, &header_.dateTime, &header_.unit, &header_.remark};
  for (std::size_t i = 0; i < 4; ++i) {
    const auto text = file_.values<char>(entry, column::kHeaderStrings + i);
    strings[i]->assign(text.data(), text.size());
  }
  return true;
}

bool OfeReader::verify(const BlockLayout& layout, const BlockEntry& entry, std::size_t column) {
  if (file_.verify(entry, column)) return true;
  return fail(file_.errorText() + " (" + columnText(layout, column) + ")");
}

std::optional<BlockView> OfeReader::block(Block block) {
  const BlockLayout& layout = layoutOf(block);
  const auto index = static_cast<std::size_t>(block);
  if (counts_[index] == 0) return BlockView{};
  const BlockView view(file_, *entries_[index], counts_[index]);
  for (std::size_t i = 0; i < layout.columns.size(); ++i)
    if (!verify(layout, *entries_[index], i)) return std::nullopt;
  if (!checkPieces(layout, view)) return std::nullopt;
  return view;
}

std::optional<BlockView> OfeReader::blockForColumn(Block block, std::size_t column) {
  const auto index = static_cast<std::size_t>(block);
  if (counts_[index] == 0) return BlockView{};
  if (!verify(layoutOf(block), *entries_[index], column)) return std::nullopt;
  return BlockView(file_, *entries_[index], counts_[index]);
}

}  // namespace orvmesh::embedded
