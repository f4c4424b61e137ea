#include "dmpio/dump_walk.h"

#include <algorithm>
#include <optional>

#include "base/failure.h"
#include "base/nearest_name.h"
#include "dmpio/text_input.h"
#include "platform/binio.h"

namespace orvmesh::dmpio {
namespace {

class BlockWalk {
 public:
  BlockWalk(const std::string& path, DumpVisitor& visitor) : path_(path), visitor_(visitor) {}

  void run() {
    if (file_.beginReading(path_.c_str(), 0) < 1) throw Failure(path_, "is no sound block file");
    for (int b = 0; b < kBlocks; ++b) walk(static_cast<Block>(b));
  }

 private:
  [[noreturn]] void fail(const BlockRow& row, const std::string& what) const {
    throw Failure(path_, "block " + std::to_string(row.id) + " (" + row.name + ") " + what);
  }
  void note(const BlockRow& row, const std::string& what) { visitor_.note(row.name + (" " + what)); }
  void walk(Block block);
  void walkPairs(const BlockRow& row);
  void walkGroups(const BlockRow& row);
  std::int64_t sizeOf(int vector) {
    return std::max<std::int64_t>(0, file_.currentBlock().getVectorSize('I', vector));
  }
  int valueAt(int vector, std::int64_t at) { return file_.currentBlock().getValue(vector, at); }

  const std::string& path_;
  DumpVisitor& visitor_;
  BINIO_BinaryFile file_;
};

void BlockWalk::walk(Block block) {
  const BlockRow& row = kBlockRows[block];
  const int result = file_.readBlock(row.id);
  if (result < 0) fail(row, "is damaged: its checksum does not match");
  if (result == 0) return;
  visitor_.beginBlock(block);
  if (row.shape == Shape::Groups)
    walkGroups(row);
  else if (row.shape == Shape::Pair)
    walkPairs(row);
  else
    for (std::int64_t i = 0; i < sizeOf(0); ++i) visitor_.one(valueAt(0, i));
  visitor_.endBlock();
}

void BlockWalk::walkPairs(const BlockRow& row) {
  const std::int64_t firsts = sizeOf(0), seconds = sizeOf(1);
  for (std::int64_t i = 0; i < std::min(firsts, seconds); ++i) visitor_.pair(valueAt(0, i), valueAt(1, i));
  if (firsts != seconds)
    note(row, "has " + std::to_string(firsts) + " first and " + std::to_string(seconds) + " second values");
}

void BlockWalk::walkGroups(const BlockRow& row) {
  std::int64_t at = 0;
  for (std::int64_t group = 0; group < sizeOf(0); ++group) {
    const int stored = valueAt(0, group);
    const std::int64_t there = std::min<std::int64_t>(stored, sizeOf(1) - at) & ~std::int64_t{1};
    visitor_.beginGroup();
    for (const std::int64_t end = at + there; at < end; at += 2)
      visitor_.pair(valueAt(1, at), valueAt(1, at + 1));
    visitor_.endGroup();
    if (there != stored)
      note(row, "stores " + std::to_string(stored) + " values for line " + std::to_string(group) + ", " +
                    std::to_string(std::max<std::int64_t>(there, 0)) +
                    " can be used (legal: an even number)");
  }
  if (at < sizeOf(1)) note(row, "has " + std::to_string(sizeOf(1) - at) + " values that belong to no line");
}

class TextWalk {
 public:
  TextWalk(const std::string& path, DumpVisitor& visitor) : path_(path), visitor_(visitor) {}

  void run();

 private:
  [[noreturn]] void fail(const BlockRow& row, std::int64_t entry, const char* what) const {
    throw Failure(path_, std::string(row.name) + "[" + std::to_string(entry) + "] " + what);
  }
  // Throws when the end came because the file could not be read on.
  void checkInput() const {
    if (!input_.errorText().empty()) throw Failure(path_, input_.errorText());
  }
  std::optional<Block> blockOf(const Line& heading) const;
  std::string place() const;  // behind what was read last
  [[noreturn]] void refuseHeading(const Line& heading) const;
  // True when an entry comes next: neither a heading nor the end.
  bool hasEntry();
  void walk(Block block);
  void walkLine(const BlockRow& row, std::int64_t entry);
  void walkGroup(const BlockRow& row, std::int64_t entry);

  const std::string& path_;
  DumpVisitor& visitor_;
  TextInput input_;
  BlockSet seen_ = 0;
  const BlockRow* last_ = nullptr;  // where the walk is: its block and the entries seen of it
  std::int64_t entries_ = 0;
};

std::optional<Block> TextWalk::blockOf(const Line& heading) const {
  for (int b = 0; b < kBlocks; ++b) {
    const BlockRow& row = kBlockRows[static_cast<std::size_t>(b)];
    const std::string_view written = row.written.substr(0, row.written.size() - 1);
    if (heading.contains(row.searched) || heading.contains(written)) return static_cast<Block>(b);
  }
  return std::nullopt;
}

std::string TextWalk::place() const {
  return last_ == nullptr ? "behind the header"
                          : std::string("behind ") + last_->name + " entry " + std::to_string(entries_);
}

void TextWalk::refuseHeading(const Line& heading) const {
  const std::string text(heading.text().substr(0, heading.text().find_first_of("\r\n")));
  std::vector<std::string_view> known{"[EOF]"};
  for (const BlockRow& row : kBlockRows) known.push_back(row.searched);
  throw Failure(path_, "unknown heading " + text + " " + place() +
                           " (nearest known: " + std::string(nearestName(text, known)) + ")");
}

bool TextWalk::hasEntry() {
  int next = input_.peek();
  for (; next == ' ' || ('\t' <= next && next <= '\r'); next = input_.peek()) input_.skipByte();
  if (next == -1) checkInput();
  return next != '[' && next != -1;
}

void TextWalk::run() {
  if (!input_.open(path_.c_str())) throw Failure(path_, input_.errorText());
  Line line;
  while (!line.contains(kHeaderHeading))
    if (!input_.readLine(line)) break;
  while (hasEntry()) input_.readLine(line);  // the header's numbers
  while (input_.readLine(line) && !line.contains("[EOF]")) {
    const auto block = blockOf(line);
    if (!block) refuseHeading(line);
    if ((seen_ & setOf(*block)) != 0) fail(kBlockRows[*block], 0, "begins the block a second time");
    seen_ |= setOf(*block);
    walk(*block);
  }
  checkInput();
  if (!line.contains("[EOF]")) throw Failure(path_, "is cut off " + place() + ": it does not end with [EOF]");
}

void TextWalk::walk(Block block) {
  const BlockRow& row = kBlockRows[block];
  visitor_.beginBlock(block);
  last_ = &row;
  for (entries_ = 0; hasEntry(); ++entries_) {
    if (row.shape == Shape::Groups)
      walkGroup(row, entries_);
    else
      walkLine(row, entries_);
  }
  visitor_.endBlock();
}

void TextWalk::walkLine(const BlockRow& row, std::int64_t entry) {
  Line line;
  int values[2];
  const int wanted = row.shape == Shape::Pair ? 2 : 1;
  if (!input_.readLine(line) || scanNumbers(line.text(), values, wanted) < wanted)
    fail(row, entry, wanted == 2 ? "is not two 32-bit integers" : "is no 32-bit integer");
  if (wanted == 2)
    visitor_.pair(values[0], values[1]);
  else
    visitor_.one(values[0]);
}

void TextWalk::walkGroup(const BlockRow& row, std::int64_t entry) {
  int count = 0;
  if (!input_.readNumber(count) || count < 0) fail(row, entry, "does not begin with its number of items");
  visitor_.beginGroup();
  for (int i = 0; i < count; ++i) {
    int first = 0;
    int second = 0;
    if (!hasEntry()) {  // the block after a line that was never completed
      visitor_.note(std::string(row.name) + "[" + std::to_string(entry) + "] has " + std::to_string(i) +
                    " of " + std::to_string(count) + " items");
      break;
    }
    if (!input_.readNumber(first) || !input_.readNumber(second))
      fail(row, entry, "has fewer items than it begins with");
    visitor_.pair(first, second);
  }
  visitor_.endGroup();
}

}  // namespace

DumpHeader readDumpHeader(const std::string& path) {
  DMPIO_Manipulator_C dump;
  if (dump.beginReading(path.c_str(), nullptr) < 1) throw Failure(path, dump.getErrorText());
  DumpHeader header;
  header.version = dump.m_HEADER_Version;
  header.encoding = encodingOf(DMPIO_Manipulator_C::getFileVersion(path.c_str()));
  for (int i = 0; i < headerValues(header.encoding, header.version); ++i)
    header.values[static_cast<std::size_t>(i)] = dump.*Header::member(i);
  return header;
}

void walkDump(const std::string& path, Encoding encoding, DumpVisitor& visitor) {
  if (encoding == Encoding::Text)
    TextWalk(path, visitor).run();
  else
    BlockWalk(path, visitor).run();
}

}  // namespace orvmesh::dmpio
