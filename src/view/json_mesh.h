#pragma once

#include <array>
#include <bitset>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>

#include "platform/ofe_header.h"
#include "view/block_table.h"

namespace orvmesh::view {

// The content of a JSON text: every value has its type, entries are complete.
struct JsonMesh {
  OFEHeader header;
  std::bitset<OFEHeader::kWords> given;  // the header fields that the text states
  std::array<EntryWords, kBlockCount> blocks;
  std::array<std::int64_t, kBlockCount> counts{};

  const EntryWords& words(int block) const { return blocks[static_cast<std::size_t>(block)]; }
  std::int64_t count(int block) const { return counts[static_cast<std::size_t>(block)]; }
};

// Takes an argument off an entry: the values of numbers and lists of numbers, nothing of texts.
std::span<const std::int32_t> takeArgument(const Argument& argument, WordCursor& entry);

// Calls visit(entry, argument, values) for each argument of each entry of a block of objects.
template <class Visit>
void forEachArgument(const JsonMesh& mesh, int block, const Visit& visit) {
  WordCursor entry(mesh.words(block));
  for (std::int64_t no = 0; no < mesh.count(block); ++no)
    for (const Argument& argument : blockShape(block).arguments)
      visit(no, argument, takeArgument(argument, entry));
}

// Calls visit(entry, values) for each entry of a block of arrays without texts.
template <class Visit>
void forEachRow(const JsonMesh& mesh, int block, const Visit& visit) {
  WordCursor entry(mesh.words(block));
  const std::size_t places = std::string_view(blockShape(block).row).size();
  for (std::int64_t no = 0; no < mesh.count(block); ++no) visit(no, entry.takeInts(places));
}

// Refuses numbers out of the range that the rest of the text gives them: nodes and elements that do not
// exist, unknown kinds. Throws Failure(name, ...) with the JSON path.
void checkNumbers(const JsonMesh& mesh, const std::string& name);
// Refuses what else readers refuse: layout segments and faces without their points, surfaces with two lists.
// For a mesh whose numbers are checked.
void checkRelations(const JsonMesh& mesh, const std::string& name);

}  // namespace orvmesh::view
