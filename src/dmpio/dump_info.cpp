#include "dmpio/dump_info.h"

#include "dmpio/dump_reader.h"

namespace orvmesh::dmpio {
namespace {

class Counter : public DumpVisitor {
 public:
  explicit Counter(DumpInfo& info) : info_(info) {}
  void beginBlock(Block block) override {
    block_ = &info_.blocks[block];
    block_->isThere = true;
  }
  void endBlock() override {}
  void one(int) override { ++block_->inFile.entries; }
  void pair(int, int) override { ++(inGroup_ ? block_->inFile.items : block_->inFile.entries); }
  void beginGroup() override {
    ++block_->inFile.entries;
    inGroup_ = true;
  }
  void endGroup() override { inGroup_ = false; }
  void note(const std::string& text) override {
    if (++notes_ <= kMostNotes) info_.notes.push_back(text);
  }
  void finish() {
    if (notes_ > kMostNotes)
      info_.notes.push_back("and " + std::to_string(notes_ - kMostNotes) + " more of these");
  }

 private:
  static constexpr std::int64_t kMostNotes = 10;

  DumpInfo& info_;
  DumpInfo::BlockInfo* block_ = nullptr;
  bool inGroup_ = false;
  std::int64_t notes_ = 0;
};

Amount readBlock(DumpReader& reader, Block block, Header header) {
  Amount read;
  int first = 0;
  int second = 0;
  int itemCount = 0;
  bool newGroup = false;
  switch (kBlockRows[block].shape) {
    case Shape::One:
      while (reader.readOne(block, header, first) >= 0) ++read.entries;
      break;
    case Shape::Pair:
      while (reader.readPair(block, header, first, second) >= 0) ++read.entries;
      break;
    case Shape::Groups:
      while (reader.readItem(header, newGroup, itemCount, first, second) >= 0) {
        if (newGroup) ++read.entries;
        if (itemCount != 0) ++read.items;
      }
  }
  return read;
}

std::string textOf(const Amount& amount, Block block) {
  if (kBlockRows[block].shape != Shape::Groups) return std::to_string(amount.entries) + " entries";
  return std::to_string(amount.entries) + " lines with " + std::to_string(amount.items) + " items";
}

std::string partOf(const Amount& part, const Amount& whole, Block block) {
  const auto of = [](std::int64_t a, std::int64_t b) {
    return std::to_string(a) + " of " + std::to_string(b);
  };
  if (kBlockRows[block].shape != Shape::Groups) return of(part.entries, whole.entries) + " entries";
  return of(part.entries, whole.entries) + " lines and " + of(part.items, whole.items) + " items";
}

// Halved and regrouped lines may happen to be as many as before.
bool isWhole(const Amount& before, const Amount& after, Encoding encoding) {
  return before == after && (before.items == 0 || encoding == Encoding::Block);
}

std::string lineOf(Block block, const std::string& text) { return kBlockRows[block].name + (": " + text); }

bool isCopied(Block block) { return block < kSensorMap; }

bool holdsFaceToLineEntries(const DumpInfo& info) { return info.blocks[kFaceToLineMap].inFile.entries > 0; }

const char* whyNotRead(const DumpInfo& info, Block block) {
  const bool isText = info.header.encoding == Encoding::Text;
  if (isText && block == kLineToFaceMap && info.blocks[block].read.entries > 0)
    return "the text form gives back half the items of each line";
  if (isText && block == kFaceToLineMap) return "its heading in the text form is not the one that is read";
  if (isText && block > kFaceToLineMap && holdsFaceToLineEntries(info))
    return "the text form is read forward only, and the face-to-line map before it is not found";
  return "the header counts fewer";
}

std::vector<std::string> headerLosses(const DumpInfo& source, const DumpInfo& copy) {
  std::vector<std::string> lines;
  const int version = copy.header.version;
  for (int i = headerValues(copy.header.encoding, version); i < kHeaderValues; ++i)
    if (const int value = source.header.values[static_cast<std::size_t>(i)]; value != 0)
      lines.push_back("header value " + std::to_string(i) + " (" + std::to_string(value) +
                      ") has no place in version " + std::to_string(version));
  return lines;
}

}  // namespace

Amount DumpInfo::copied(Block block) const { return isCopied(block) ? blocks[block].read : Amount{}; }

DumpInfo readDumpInfo(const std::string& path) {
  DumpInfo info;
  info.header = readDumpHeader(path);
  Counter counter(info);
  walkDump(path, info.header.encoding, counter);
  counter.finish();

  DMPIO_Manipulator_C members;
  const Header header(members);
  DumpReader reader;
  reader.begin(path.c_str(), header);
  for (int b = 0; b < kBlocks; ++b)
    info.blocks[static_cast<std::size_t>(b)].read = readBlock(reader, static_cast<Block>(b), header);
  return info;
}

std::vector<std::string> lossesOfAnyCopy(const DumpInfo& source) {
  std::vector<std::string> lines;
  for (int b = 0; b < kBlocks; ++b) {
    const auto block = static_cast<Block>(b);
    const Amount& inFile = source.blocks[block].inFile;
    const Amount copied = source.copied(block);
    if (isWhole(inFile, copied, source.header.encoding)) continue;
    const char* const why = isCopied(block) ? whyNotRead(source, block) : "convert leaves this block out";
    lines.push_back(lineOf(block, partOf(copied, inFile, block) + " are copied: " + why));
  }
  return lines;
}

std::vector<std::string> lossesOfCopy(const DumpInfo& source, const DumpInfo& copy) {
  std::vector<std::string> lines = lossesOfAnyCopy(source);
  for (int b = 0; b <= kLineToFaceMap; ++b) {
    const auto block = static_cast<Block>(b);
    const Amount before = source.copied(block);
    const Amount after = copy.blocks[block].read;
    if (isWhole(before, after, copy.header.encoding)) continue;
    const bool isBlocks = copy.header.encoding == Encoding::Block;
    const char* why = "the header counts otherwise";
    if (isBlocks && block == kCoolChannelMap) why = "the block form counts it by the face-to-line map";
    if (isBlocks && block == kFaceToLineMap) why = "the block form has none after a cool channel map";
    if (!isBlocks) why = whyNotRead(copy, block);
    lines.push_back(
        lineOf(block, textOf(before, block) + " come back as " + textOf(after, block) + ": " + why));
  }
  const auto header = headerLosses(source, copy);
  lines.insert(lines.end(), header.begin(), header.end());
  return lines;
}

}  // namespace orvmesh::dmpio
