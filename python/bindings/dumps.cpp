#include <orvmesh/dmpio_manipulator.h>
#include <pybind11/stl.h>

#include <algorithm>
#include <functional>

#include "bindings/arrays.h"
#include "bindings/parts.h"
#include "dmpio/dump_info.h"

namespace orvmesh::python {
namespace {

using dmpio::Block;
using dmpio::Shape;

// The values of a dump, block by block; a line-to-face map has the places where its lines begin, too.
struct Content : dmpio::DumpVisitor {
  std::array<std::vector<int>, dmpio::kBlocks> values;
  std::vector<std::int64_t> offsets{0};
  std::vector<std::string> notes;

  void beginBlock(Block block) override { current_ = block; }
  void endBlock() override {}
  void one(int value) override { values[current_].push_back(value); }
  void pair(int first, int second) override {
    one(first);
    one(second);
  }
  void beginGroup() override {}
  void endGroup() override { offsets.push_back(static_cast<std::int64_t>(values[current_].size() / 2)); }
  void note(const std::string& text) override { notes.push_back(text); }

 private:
  Block current_ = dmpio::kNodeMap;
};

py::dict readDump(const Path& path) {
  const std::string name = path.string();
  Content content;
  const dmpio::DumpHeader header = unlocked({name, ""}, [&] {
    const auto proven = dmpio::readDumpInfo(name);
    dmpio::walkDump(name, proven.header.encoding, content);
    return proven.header;
  });
  py::dict blocks, result;
  for (std::size_t b = 0; b < dmpio::kBlocks; ++b)
    blocks[dmpio::kBlockRows[b].name] =
        adopt(std::move(content.values[b]), dmpio::kBlockRows[b].shape == Shape::One ? 1 : 2);
  result["version"] = header.version;
  result["header"] = adopt(std::vector<int>(header.values.begin(), header.values.end()));
  result["blocks"] = blocks;
  result["line_offsets"] = adopt(std::move(content.offsets));
  result["notes"] = content.notes;
  return result;
}

using Dump = DMPIO_Manipulator_C;
using WriteOne = int (Dump::*)(int);
using WritePair = int (Dump::*)(int, int);

// The write operations; the line-to-face map has its own.
constexpr WriteOne kWriteOne[dmpio::kBlocks] = {nullptr,
                                                &Dump::writeElementPlasticMapBlockEntry,
                                                &Dump::writeElementMoldBaseMapBlockEntry,
                                                &Dump::writeElementCoolChannelMapBlockEntry,
                                                nullptr,
                                                &Dump::writeElementCoolFaceToLineMapBlockEntry,
                                                nullptr,
                                                &Dump::writeSensorMapBlockEntry,
                                                &Dump::writeElementSurfaceMapBlockEntry,
                                                &Dump::writeElementSurface103104MapBlockEntry};
constexpr WritePair kWritePair[dmpio::kBlocks] = {&Dump::writeNodeMapBlockEntry, nullptr, nullptr, nullptr,
                                                  &Dump::writeElementCoolantEndMapBlockEntry};

[[noreturn]] void refuse(const std::string& text) { throw Fault(kArgument, "", text); }

// The columns of a dump as a caller gave them.
struct GivenDump {
  int version = 0;
  Input<int> header;
  std::array<Input<int>, dmpio::kBlocks> blocks;
  Input<std::int64_t> lineOffsets;

  std::span<const int> values(std::size_t block) const {
    return {blocks[block].data(), static_cast<std::size_t>(blocks[block].size())};
  }
  std::span<const std::int64_t> offsets() const {
    return {lineOffsets.data(), static_cast<std::size_t>(lineOffsets.size())};
  }
};

void checkShapes(const GivenDump& given) {
  if (given.header.size() != dmpio::kHeaderValues)
    refuse("header: has " + std::to_string(given.header.size()) + " values (legal: 11)");
  for (std::size_t b = 0; b < dmpio::kBlocks; ++b) {
    const bool isTable = dmpio::kBlockRows[b].shape != Shape::One;
    const auto& array = given.blocks[b];
    if (isTable ? array.ndim() != 2 || array.shape(1) != 2 : array.ndim() != 1)
      refuse(std::string(dmpio::kBlockRows[b].name) + ": its shape must be " + (isTable ? "(n, 2)" : "(n,)"));
  }
  const auto offsets = given.offsets();
  const auto pairs = static_cast<std::int64_t>(given.values(dmpio::kLineToFaceMap).size() / 2);
  if (offsets.empty() || offsets.front() != 0 || offsets.back() != pairs || !std::ranges::is_sorted(offsets))
    refuse("line_offsets: must ascend from 0 to " + std::to_string(pairs));
}

void writeLines(Dump& dump, const GivenDump& given, const std::function<void(int, std::size_t)>& proven) {
  const auto offsets = given.offsets();
  const auto pairs = given.values(dmpio::kLineToFaceMap);
  for (std::size_t line = 0; line + 1 < offsets.size(); ++line) {
    const auto first = static_cast<std::size_t>(offsets[line]),
               last = static_cast<std::size_t>(offsets[line + 1]);
    const int items = static_cast<int>(last - first);
    if (items == 0) proven(dump.writeElementCoolLineToFaceMapBlockEntryItemPair(true, 0, 0, 0), line);
    for (std::size_t i = first; i < last; ++i)
      proven(dump.writeElementCoolLineToFaceMapBlockEntryItemPair(i == first, items, pairs[2 * i],
                                                                  pairs[2 * i + 1]),
             line);
  }
}

void writeBlock(Dump& dump, const GivenDump& given, std::size_t block) {
  // A refused entry is -1, or 0 again where the first one was 0.
  const auto proven = [block](int place, std::size_t entry) {
    if (place < 0 || (place == 0 && entry > 0))
      refuse(
          std::string(dmpio::kBlockRows[block].name) + "[" + std::to_string(entry) +
          "]: this version's header does not count so many, or the block has no place after those before it");
  };
  const auto values = given.values(block);
  if (block == dmpio::kLineToFaceMap) return writeLines(dump, given, proven);
  if (const auto one = kWriteOne[block]; one != nullptr)
    for (std::size_t i = 0; i < values.size(); ++i) proven((dump.*one)(values[i]), i);
  if (const auto pair = kWritePair[block]; pair != nullptr)
    for (std::size_t i = 0; 2 * i < values.size(); ++i)
      proven((dump.*pair)(values[2 * i], values[2 * i + 1]), i);
}

// The caller's values, counts raised to what their blocks need.
void setHeader(Dump& dump, const GivenDump& given) {
  const dmpio::Header header(dump);
  for (int i = 1; i < dmpio::kHeaderValues; ++i) header[i] = given.header.data()[i];
  const bool isText = dmpio::encodingOf(given.version) == dmpio::Encoding::Text;
  for (std::size_t b = 0; b < dmpio::kBlocks; ++b) {
    const dmpio::BlockRow& row = dmpio::kBlockRows[b];
    const std::size_t values = given.values(b).size();
    const std::size_t entries = row.shape == Shape::Groups ? given.offsets().size() - 1
                                : row.shape == Shape::Pair ? values / 2
                                                           : values;
    int& count = header[isText ? row.textCount : row.blockCount];
    count = std::max(count, static_cast<int>(entries));
  }
}

// The manipulator's destructor completes a file, also one that an exception left half done.
void writeGiven(const std::string& path, const GivenDump& given) {
  Dump dump;
  setHeader(dump, given);
  if (dump.beginWriting(path.c_str(), given.version) != 1)
    throw Fault(dmpio::isSupported(given.version) ? kTarget : kArgument, path, dump.getErrorText());
  try {
    for (std::size_t block = 0; block < dmpio::kBlocks; ++block) writeBlock(dump, given, block);
  } catch (...) {
    dump = Dump();  // gives the file up
    throw;
  }
  if (dump.endWriting() != 1) throw Fault(kTarget, path, dump.getErrorText());
}

void writeDump(const Path& path, int version, const Input<int>& header, const py::dict& blocks,
               const Input<std::int64_t>& lineOffsets) {
  GivenDump given{version, header, {}, lineOffsets};
  for (std::size_t b = 0; b < dmpio::kBlocks; ++b) {
    const char* const name = dmpio::kBlockRows[b].name;
    if (!blocks.contains(name) || !py::isinstance<Input<int>>(blocks[name]))
      refuse(std::string(name) + ": must be a C-contiguous array of int32");
    given.blocks[b] = py::reinterpret_borrow<Input<int>>(blocks[name]);
  }
  checkShapes(given);
  const std::string name = path.string();
  unlocked({"", name}, [&] { writeGiven(name, given); });
}

std::vector<std::string> convertDump(const Path& source, const Path& target, int version) {
  const Paths paths{source.string(), target.string()};
  return unlocked(paths, [&] {
    const auto before = dmpio::readDumpInfo(paths.source);
    Dump dump;
    dump.convert(paths.source.c_str(), paths.target.c_str(), version);
    if (*dump.getErrorText() != '\0') throw Fault(kTarget, paths.target, dump.getErrorText());
    auto told = before.notes;
    for (const auto& loss : dmpio::lossesOfCopy(before, dmpio::readDumpInfo(paths.target)))
      told.push_back(loss);
    return told;
  });
}

std::vector<std::pair<std::string, int>> dumpBlocks() {
  std::vector<std::pair<std::string, int>> names;
  names.reserve(dmpio::kBlocks);
  for (const auto& row : dmpio::kBlockRows) names.emplace_back(row.name, row.shape == Shape::One ? 1 : 2);
  return names;
}

}  // namespace

void addDumps(py::module_& module) {
  module.def(
      "dump_blocks", &dumpBlocks,
      "The blocks of a mapping dump in file order: name, and values per entry (1: shape (n,), 2: (n, 2)).");
  module.def(
      "read_dmp", &readDump, py::arg("path"),
      "A mapping dump as a dict of version, header (int32 of shape (11,)), blocks (int32 of shape (n,) or "
      "(n, 2)),\nline_offsets (int64 of shape (lines + 1,)) and notes. Raises Error.");
  module.def("write_dmp", &writeDump, py::arg("path"), py::arg("version"), py::arg("header").noconvert(),
             py::arg("blocks"), py::arg("line_offsets").noconvert(),
             "Writes a mapping dump; the arrays are those of read_dmp, C-contiguous: header of shape (11,), "
             "line_offsets of shape (lines + 1,). Raises Error.");
  module.def("convert_dmp", &convertDump, py::arg("source"), py::arg("target"), py::arg("version"),
             "Copies a mapping dump into another version; what the copy lacks, one line each. Raises Error.");
}

}  // namespace orvmesh::python
