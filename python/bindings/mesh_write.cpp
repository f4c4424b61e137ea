#include <pybind11/stl.h>

#include <algorithm>
#include <bit>
#include <optional>

#include "base/text_number.h"
#include "bindings/arrays.h"
#include "bindings/column_map.h"
#include "bindings/parts.h"
#include "platform/header_counts.h"
#include "view/json_mesh.h"

namespace orvmesh::python {
namespace {

using view::EntryWords;
using view::JsonMesh;

// How the values of an entry follow one another: pieces of columns, of the block's pool and texts.
enum class How : std::uint8_t { Values, List, Text, UsedNodes, NameAndDictionary };
struct Step {
  How how = How::Values;
  std::uint8_t column = 0, first = 0, count = 0;
};
using Steps = std::span<const Step>;

constexpr Step values(int column, int first, int count) {
  return {How::Values, static_cast<std::uint8_t>(column), static_cast<std::uint8_t>(first),
          static_cast<std::uint8_t>(count)};
}

constexpr Step kThree[] = {values(0, 0, 3)};
constexpr Step kElement[] = {{How::List}, values(1, 0, 1), values(2, 0, 1), values(3, 0, 1)};
constexpr Step kSurface[] = {values(0, 0, 4), values(1, 0, 1), values(2, 0, 1), values(3, 0, 1),
                             values(4, 0, 1), values(5, 0, 1), values(6, 0, 1)};
constexpr Step kCondition[] = {values(0, 0, 1), values(1, 0, 1), values(2, 0, 1)};
constexpr Step kBad[] = {values(0, 0, 1), values(1, 0, 1)};
constexpr Step kDiameter[] = {{How::UsedNodes}, values(1, 0, 1)};
constexpr Step kLine[] = {values(0, 0, 4), values(1, 0, 4)};
constexpr Step kLayout[] = {values(1, 0, 1), values(0, 0, 3), values(1, 1, 3),
                            values(0, 3, 2), values(1, 4, 3), values(0, 5, 8)};
constexpr Step kSensor[] = {values(1, 0, 1), values(0, 0, 4), values(2, 0, 3)};
constexpr Step kGeometry[] = {values(1, 0, 1), values(2, 0, 3), values(0, 0, 4), values(3, 0, 2)};
constexpr Step kList[] = {values(1, 0, 1), {How::List}};
constexpr Step kName[] = {{How::NameAndDictionary}};
constexpr Step kLayer[] = {values(1, 0, 2), {How::Text}, values(1, 2, 4)};
constexpr Step kChannelLayer[] = {values(1, 0, 2), {How::Text}};

constexpr Steps kPacking[kBlockCount] = {kThree,  kElement,      kElement,  kElement,  kSurface, kCondition,
                                         kBad,    kBad,          kBad,      kDiameter, kLine,    kLayout,
                                         kSensor, kGeometry,     kGeometry, kList,     kName,    kLayer,
                                         kLayer,  kChannelLayer, kThree};

// The layouts begin with the header, the blocks of a mesh do not.
const embedded::BlockLayout& layoutAt(int block) {
  return embedded::allLayouts()[static_cast<std::size_t>(block) + 1];
}

// Packs the entries of one block.
class Packer {
 public:
  Packer(const BlockColumns& columns, int block, EntryWords& out)
      : columns_(columns), layout_(layoutAt(block)), out_(out) {}

  void run(Steps steps) {
    for (std::int64_t entry = 0; entry < columns_.entries(); ++entry)
      for (const Step& step : steps) pack(step, entry);
    if (steps.front().how == How::NameAndDictionary && nextText_ != columns_.texts())
      throw Fault(kArgument, "",
                  std::string(layout_.name) + ".offsets: " + std::to_string(columns_.texts()) +
                      " texts, the entries need " + std::to_string(nextText_));
  }

 private:
  std::span<const std::int32_t> entryOf(std::size_t column, std::int64_t entry) const {
    const auto width = static_cast<std::size_t>(layout_.columns[column].width);
    return columns_.words(column).subspan(static_cast<std::size_t>(entry) * width, width);
  }

  void pack(const Step& step, std::int64_t entry) {
    switch (step.how) {
      case How::Values:
        return out_.putInts(entryOf(step.column, entry).subspan(step.first, step.count));
      case How::List:
        return out_.putList(columns_.list(entry));
      case How::Text:
        return putText(entry, entry);
      case How::UsedNodes:
        return putUsedNodes(entryOf(0, entry));
      case How::NameAndDictionary:
        return putName(entry);
    }
  }

  void putUsedNodes(std::span<const std::int32_t> nodes) {
    std::size_t used = nodes.size();
    while (used > 0 && nodes[used - 1] == 0) --used;
    out_.putList(nodes.first(used));
  }

  void putText(std::int64_t text, std::int64_t entry) {
    const auto bytes = columns_.text(text);
    if (bytes.find('\0') != std::string_view::npos) refuseEntry(entry, "has a zero byte in a text");
    out_.putText(bytes);
  }

  void putName(std::int64_t entry) {
    const auto typeAndSize = entryOf(1, entry);
    const std::int32_t size = typeAndSize[1];
    if (size < -1) refuseEntry(entry, "has a dictionary of " + std::to_string(size) + " (legal: -1 or more)");
    if (nextText_ + 1 + 2 * std::max<std::int64_t>(size, 0) > columns_.texts())
      refuseEntry(entry, "has no texts left (offsets: one text for each name, key and value)");
    putText(nextText_++, entry);
    out_.putInt(typeAndSize[0]);
    out_.putInt(size + 1);
    for (std::int32_t i = 0; i < size; ++i) {
      checkPair(entry);
      putText(nextText_++, entry);
      putText(nextText_++, entry);
    }
  }

  // Keys whose values readers take as numbers.
  void checkPair(std::int64_t entry) const {
    const std::string_view key = columns_.text(nextText_), value = columns_.text(nextText_ + 1);
    const bool isInteger = key == "BRANCH_ID" || key == "BRANCH_OUTLET_ID" || key == "BRANCH_NUMBER";
    const bool isWrong =
        isInteger ? !parseNumber<std::int32_t>(value) : key == "THICKNESS" && !parseNumber<double>(value);
    if (isWrong)
      refuseEntry(entry, std::string(key) + " is \"" + std::string(value) + "\" (legal: a number)");
  }

  [[noreturn]] void refuseEntry(std::int64_t entry, const std::string& what) const {
    throw Fault(kArgument, "", std::string(layout_.name) + "[" + std::to_string(entry) + "]: " + what);
  }

  const BlockColumns& columns_;
  const embedded::BlockLayout& layout_;
  EntryWords& out_;
  std::int64_t nextText_ = 0;
};

FileContent contentOf(const std::vector<BlockColumns>& blocks) {
  FileContent content;
  const auto each = [&blocks](int block, std::size_t column, std::size_t width, const auto& add) {
    const auto words = blocks[static_cast<std::size_t>(block)].words(column);
    for (std::size_t i = 0; i < words.size(); i += width) add(words[i]);
  };
  for (std::size_t block = 0; block < blocks.size(); ++block)
    content.entries[block] = blocks[block].entries();
  each(kElementsPlastic, 1, 1, [&](std::int32_t a) { content.plastic.add(a); });
  each(kElementsMoldBase, 1, 1, [&](std::int32_t a) { content.addMoldMaterial(a); });
  each(kElementsCoolChannel, 1, 1, [&](std::int32_t a) { content.channel.add(a); });
  each(kSensors, 1, 1, [&](std::int32_t kind) { content.addSensor(kind); });
  each(kMoldMetal, 1, 1, [&](std::int32_t is) { content.moldPoints += is != 0 ? 1 : 0; });
  each(kChannelSurface, 1, 1, [&](std::int32_t is) { content.channelSurfacePoints += is != 0 ? 1 : 0; });
  each(kChannelLayout, 1, 7, [&](std::int32_t is) { content.layoutPoints += is != 0 ? 1 : 0; });
  return content;
}

struct Header {
  std::vector<std::int32_t> words;
  int version = 0;
  std::vector<std::string> strings;
};

JsonMesh meshOf(const Header& header, const std::vector<BlockColumns>& blocks) {
  JsonMesh mesh;
  std::ranges::copy(header.words, mesh.header.words.begin());
  mesh.header.source = header.strings[0];
  mesh.header.dateTime = header.strings[1];
  mesh.header.unit = header.strings[2];
  mesh.header.remark = header.strings[3];
  for (int block = 0; block < kBlockCount; ++block) {
    const auto index = static_cast<std::size_t>(block);
    mesh.counts[index] = blocks[index].entries();
    Packer(blocks[index], block, mesh.blocks[index]).run(kPacking[index]);
  }
  return mesh;
}

void setCounts(OFEHeader& header, const std::vector<BlockColumns>& blocks) {
  for (const FieldCount& row : headerCounts(contentOf(blocks)))
    header[row.field] = static_cast<std::int32_t>(row.count);
}

// Only counts that are others than before: some writers count in a way of their own.
void setChangedCounts(OFEHeader& header, const std::vector<BlockColumns>& blocks,
                      const std::vector<BlockColumns>& before) {
  const auto now = headerCounts(contentOf(blocks)), then = headerCounts(contentOf(before));
  for (std::size_t i = 0; i < now.size(); ++i)
    if (now[i].count != then[i].count) header[now[i].field] = static_cast<std::int32_t>(now[i].count);
}

void writeMesh(const std::string& path, const JsonMesh& mesh, int version) {
  OFEIO_Manipulator file;
  file.header = mesh.header;
  if (file.beginWriting(path.c_str(), version, 0) != 1) throw Fault(kTarget, path, file.errorText());
  for (int block = 0; block < kBlockCount; ++block) {
    view::WordCursor entry(mesh.words(block));
    for (std::int64_t no = 0; no < mesh.count(block); ++no)
      if (view::blockShape(block).write(file, entry) < 0) throw Fault(kArgument, "", file.errorText());
  }
  if (file.endWriting() != 1) throw Fault(kTarget, path, file.errorText());
}

// A number that the arrays hold is the caller's, not the target's.
void checkMesh(const JsonMesh& mesh) {
  static const std::string name = "mesh";
  try {
    view::checkNumbers(mesh, name);
    view::checkRelations(mesh, name);
  } catch (const Failure& failure) {
    throw Fault(kArgument, "", faultOf(failure.what(), {name, ""}).what());
  }
}

void checkHeader(const Header& header) {
  if (header.words.size() != OFEHeader::kWords || header.strings.size() != 4)
    throw Fault(kArgument, "",
                "header: has " + std::to_string(header.words.size()) + " words and " +
                    std::to_string(header.strings.size()) + " texts (legal: 160 and 4)");
  if (!OFEIO_Manipulator::isWritableVersion(header.version))
    throw Fault(kArgument, "",
                "header.version: " + std::to_string(header.version) +
                    " (legal: " + OFEIO_Manipulator::writableVersionsText() + ")");
  const float scale = std::bit_cast<float>(header.words[m_HEADER_ScaleFactor]);
  if (!(scale - scale == 0)) throw Fault(kArgument, "", "header.words[29]: the scale factor is not finite");
}

std::vector<std::string> stringsOf(const py::sequence& strings) {
  std::vector<std::string> result;
  for (const auto& text : strings) result.push_back(py::cast<std::string>(text));
  return result;
}

std::vector<BlockColumns> allColumns(const py::dict& blocks) {
  std::vector<BlockColumns> columns;
  std::size_t used = 0;
  for (int block = 0; block < kBlockCount; ++block) {
    const auto& layout = layoutAt(block);
    const bool given = blocks.contains(layout.name);
    used += given ? 1 : 0;
    columns.emplace_back(layout, given ? py::object(blocks[layout.name]) : py::none());
  }
  if (used != blocks.size())
    throw Fault(kArgument, "", "blocks: a name among them is no block of an OFE file");
  return columns;
}

void writeMeshFile(const Path& path, const Input<std::int32_t>& words, int version,
                   const py::sequence& strings, const py::dict& blocks, bool updateCounts,
                   const std::optional<py::dict>& before) {
  const Header header{{words.data(), words.data() + words.size()}, version, stringsOf(strings)};
  checkHeader(header);
  const auto columns = allColumns(blocks);
  const auto columnsBefore = before ? allColumns(*before) : std::vector<BlockColumns>{};
  const std::string name = path.string();
  unlocked({"", name}, [&] {
    JsonMesh mesh = meshOf(header, columns);
    if (updateCounts && before)
      setChangedCounts(mesh.header, columns, columnsBefore);
    else if (updateCounts)
      setCounts(mesh.header, columns);
    checkMesh(mesh);
    writeMesh(name, mesh, version);
  });
}

}  // namespace

void addWriting(py::module_& module) {
  module.def(
      "write_mesh", &writeMeshFile, py::arg("path"), py::arg("words").noconvert(), py::arg("version"),
      py::arg("strings"), py::arg("blocks"), py::arg("update_counts"), py::arg("before"),
      "Writes an OFE file from dicts of columns as read_mesh gives them (C-contiguous arrays of exactly "
      "the column's\ntype; shapes (n,) or (n, values per entry); blocks that are left out are empty). "
      "words: int32 of shape (160,); update_counts brings the counts among them up to date, with before, a "
      "dict of blocks,\nonly those that differ from its counts. The target appears complete or not at all. "
      "Raises Error.");
}

}  // namespace orvmesh::python
