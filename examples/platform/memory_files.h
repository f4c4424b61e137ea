#pragma once

#include <array>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "platform/header_counts.h"
#include "platform/ofeio.h"
#include "platform/ofv_mesh.h"

// A platform whose OFE and OFV files are objects in memory, known by their paths for the life of the process.
namespace memory_platform {

// One argument of a block's write operation over all its entries.
struct Column {
  std::vector<std::int32_t> ints;
  std::vector<float> floats;
  std::vector<std::string> texts;
  std::vector<std::int64_t> ends{0};  // of each entry's part of ints or floats, where an entry has several
};
struct Block {
  std::int32_t entries = 0;
  std::vector<Column> columns;
  std::vector<std::optional<OFEIO_Dictionary>> dictionaries;
};
struct OfeFile {
  OFEHeader header;
  int version = 0;
  std::array<Block, orvmesh::kBlockCount> blocks;
};

struct OfvFile {
  std::vector<double> xyz;
  std::vector<std::int64_t> offsets;
  std::vector<std::int32_t> nodes, owner, neighbour, cellCavity, cavityNumber, cavityKind, inlet, group;

  orvmesh::OFVMesh mesh() const {
    return {xyz, offsets, nodes, owner, neighbour, cellCavity, cavityNumber, cavityKind, inlet, group};
  }
};

using File = std::variant<std::shared_ptr<const OfeFile>, std::shared_ptr<const OfvFile>>;
inline std::map<std::string, File>& files() {
  static std::map<std::string, File> all;
  return all;
}

// Null when there is no such file of this type.
template <class T>
std::shared_ptr<const T> find(const char* path) {
  const auto at = path == nullptr ? files().end() : files().find(path);
  if (at == files().end()) return nullptr;
  const auto* const file = std::get_if<std::shared_ptr<const T>>(&at->second);
  return file == nullptr ? nullptr : *file;
}

}  // namespace memory_platform
