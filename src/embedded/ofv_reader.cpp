#include "platform/ofv_reader.h"

#include "embedded/block_reader.h"
#include "embedded/ofv_layout.h"

using namespace orvmesh;
using namespace orvmesh::embedded;

struct COrvOFVReader::Implementation {
  BlockReader file;
  std::array<const BlockEntry*, kOfvBlockCount> blocks{};
  OFVMesh mesh;
  std::string error;

  bool fail(const std::string& text) {
    if (error.empty()) error = text;
    return false;
  }
  template <class T>
  std::span<const T> column(OfvBlock block, std::size_t index) const {
    return file.values<T>(*blocks[block], index);
  }

  bool checkBlock(std::size_t block);
  bool read(const char* path);
  void lookInto();
};

bool COrvOFVReader::Implementation::checkBlock(std::size_t block) {
  const OfvBlockLayout& layout = kOfvLayout[block];
  const std::string name = "block " + std::to_string(layout.id) + ", the " + layout.name + ", ";
  const BlockEntry* const entry = blocks[block] = file.find(layout.id);
  if (entry == nullptr) return fail("is no OFV file: " + name + "is missing");
  std::string types;
  for (const ColumnRecord& column : entry->columns) types += static_cast<char>(column.type);
  if (types != layout.columns)
    return fail(name + "has columns of the types \"" + types + "\" (legal: \"" + std::string(layout.columns) +
                "\")");
  for (std::size_t c = 0; c < types.size(); ++c)
    if (!file.verify(*entry, c)) return fail(file.errorText());
  return true;
}

void COrvOFVReader::Implementation::lookInto() {
  mesh.xyz = column<double>(kOfvPoints, 0);
  mesh.cavityNumber = column<std::int32_t>(kOfvCavities, 0);
  mesh.cavityKind = column<std::int32_t>(kOfvCavities, 1);
  mesh.cellCavity = column<std::int32_t>(kOfvCells, 0);
  mesh.faceOffsets = column<std::int64_t>(kOfvFaces, 0);
  mesh.faceNodes = column<std::int32_t>(kOfvFaces, 1);
  mesh.owner = column<std::int32_t>(kOfvFaces, 2);
  mesh.neighbour = column<std::int32_t>(kOfvFaces, 3);
  mesh.inletID = column<std::int32_t>(kOfvInlets, 0);
  mesh.inletGroup = column<std::int32_t>(kOfvInlets, 1);
}

bool COrvOFVReader::Implementation::read(const char* path) {
  if (!file.open(path)) return fail(file.errorText());
  for (std::size_t block = 0; block < kOfvBlockCount; ++block)
    if (!checkBlock(block)) return false;
  if (file.blocks().size() != kOfvBlockCount)
    return fail("has " + std::to_string(file.blocks().size()) +
                " blocks (legal: " + std::to_string(kOfvBlockCount) + ")");
  const auto version = column<std::int32_t>(kOfvFormat, 0);
  if (version.size() != 1 || version[0] != kOfvVersion)
    return fail("has another format version (known: " + std::to_string(kOfvVersion) + ")");
  lookInto();
  for (const auto check : {faultOfPoints, faultOfCavities, faultOfCells, faultOfFaces, faultOfInlets})
    if (const auto fault = check(mesh); !fault.empty()) return fail(fault);
  return true;
}

COrvOFVReader::COrvOFVReader() : implementation_(std::make_unique<Implementation>()) {}
COrvOFVReader::~COrvOFVReader() = default;

int COrvOFVReader::open(const char* path) {
  implementation_ = std::make_unique<Implementation>();
  if (path == nullptr) return implementation_->fail("no path was given") ? 1 : 0;
  if (implementation_->read(path)) return 1;
  implementation_->mesh = {};
  return 0;
}

const OFVMesh& COrvOFVReader::mesh() const { return implementation_->mesh; }
const std::string& COrvOFVReader::errorText() const { return implementation_->error; }

bool COrvOFVReader::isOFV(const char* path) {
  BlockReader file;
  return path != nullptr && file.open(path) && file.find(kOfvLayout[kOfvFormat].id) != nullptr;
}
