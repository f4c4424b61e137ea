#include "embedded/ofe_writer.h"

#include <array>

namespace orvmesh::embedded {
namespace {

constexpr std::size_t kMostColumns = 7;
constexpr int kMixed = -1;

}  // namespace

OfeWriter::OfeWriter() : nodeCounts_(chunks_) {
  columns_.reserve(kMostColumns);
  for (std::size_t i = 0; i < kMostColumns; ++i) columns_.emplace_back(chunks_);
}

bool OfeWriter::begin(const std::string& path, int version) {
  discard();
  error_.clear();
  begun_.reset();
  version_ = version;
  writing_ = file_.open(path);
  return writing_;
}

void OfeWriter::discard() {
  for (auto& column : columns_) column.clear();
  nodeCounts_.clear();
  current_.reset();
  writing_ = false;
  file_.discard();
}

bool OfeWriter::refuse(const std::string& reason) {
  if (error_.empty())
    error_ = std::string(layoutOf(*current_).name) + " entry " + std::to_string(count_ + std::int64_t{1}) +
             " " + reason;
  return false;
}

bool OfeWriter::start(Block block) {
  if (!writing_) return false;
  const auto index = static_cast<std::size_t>(block);
  const BlockLayout& layout = layoutOf(block);
  if (begun_[index]) {
    if (error_.empty()) error_ = std::string(layout.name) + " was finished before and got another entry";
    return false;
  }
  finishBlock();
  begun_.set(index);
  current_ = block;
  count_ = 0;
  commonNodeCount_ = 0;
  poolSize_ = 0;
  file_.beginBlock(layout.id);
  file_.beginColumn(layout.columns[0].type);
  columns_[0].spillInto(file_);
  const Per last = layout.columns.back().per;
  if (last == Per::Offsets || last == Per::TextOffsets) column(column::kPoolOffsets).push(std::int64_t{0});
  return true;
}

void OfeWriter::finishBlock() {
  if (!current_) return;
  const auto layouts = layoutOf(*current_).columns;
  for (std::size_t i = 0; i < layouts.size(); ++i) {
    if (i > 0) file_.beginColumn(layouts[i].type);
    if (layouts[i].per == Per::OffsetsIfMixed)
      writeOffsetsOfMixed();
    else
      columns_[i].finish(file_);
  }
  file_.endBlock();
  current_.reset();
}

void OfeWriter::writeOffsetsOfMixed() {
  std::array<std::int64_t, 4096> offsets;
  std::int64_t next = 0;
  if (commonNodeCount_ == kMixed) file_.append(&next, sizeof next);
  nodeCounts_.drain([&](const char* counts, std::size_t size) {
    for (std::size_t done = 0; done < size;) {
      std::size_t n = 0;
      for (; n < offsets.size() && done < size; ++n, ++done) offsets[n] = next += counts[done];
      file_.append(offsets.data(), n * sizeof next);
    }
  });
}

void OfeWriter::noteNodeCount(int nodeCount) {
  if (count_ == 0) {
    commonNodeCount_ = nodeCount;
    return;
  }
  if (commonNodeCount_ != kMixed)
    for (std::int32_t i = 0; i < count_; ++i) nodeCounts_.push(static_cast<char>(commonNodeCount_));
  commonNodeCount_ = kMixed;
  nodeCounts_.push(static_cast<char>(nodeCount));
}

int OfeWriter::addElement(Block block, int nodeCount, const std::int32_t nodes[], std::int32_t a,
                          std::int32_t b, float value) {
  if (!admit(block)) return -1;
  if (nodeCount < 1 || nodeCount > kMaxElementNodes || nodes == nullptr) {
    refuse("has " + std::to_string(nodeCount) + " nodes (legal: 1 to 8)");
    return -1;
  }
  if (nodeCount == 4)
    columns_[column::kConnectivity].push(nodes, 4);
  else
    columns_[column::kConnectivity].push(nodes, static_cast<std::size_t>(nodeCount));
  columns_[column::kFieldA].push(a);
  columns_[column::kFieldB].push(b);
  columns_[column::kValue].push(value);
  if (nodeCount != commonNodeCount_) noteNodeCount(nodeCount);
  return accept();
}

void OfeWriter::endPiece(std::size_t size) {
  poolSize_ += static_cast<std::int64_t>(size);
  columns_[column::kPoolOffsets].push(poolSize_);
}

void OfeWriter::addList(const std::int32_t list[], std::size_t count) {
  columns_[column::kPool].pushBytes(reinterpret_cast<const char*>(list), count * sizeof *list);
  endPiece(count);
}

void OfeWriter::addText(std::string_view text) {
  columns_[column::kPool].pushBytes(text.data(), text.size());
  endPiece(text.size());
}

void OfeWriter::writeMissingBlocks() {
  for (const BlockLayout& layout : allLayouts()) {
    if (layout.block == Block::Header || begun_[static_cast<std::size_t>(layout.block)]) continue;
    file_.beginBlock(layout.id);
    file_.endBlock();
  }
}

void OfeWriter::writeHeader(const OFEHeader& header) {
  const BlockLayout& layout = layoutOf(Block::Header);
  const std::string* const strings[] = {&header.source, &header.dateTime, &header.unit, &header.remark};
  file_.beginBlock(layout.id);
  for (std::size_t i = 0; i < layout.columns.size(); ++i) {
    file_.beginColumn(layout.columns[i].type);
    if (i == column::kHeaderWords)
      file_.append(header.words.data(), sizeof header.words);
    else if (i == column::kFileVersion)
      file_.append(&version_, sizeof version_);
    else
      file_.append(strings[i - column::kHeaderStrings]->data(), strings[i - column::kHeaderStrings]->size());
  }
  file_.endBlock();
}

bool OfeWriter::end(const OFEHeader& header) {
  if (!writing_) return false;
  bool complete = error_.empty();
  if (complete) {
    finishBlock();
    writeMissingBlocks();
    writeHeader(header);
    complete = file_.commit();
  }
  discard();
  return complete;
}

}  // namespace orvmesh::embedded
