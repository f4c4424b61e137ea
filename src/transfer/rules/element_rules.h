#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "base/ranges.h"

class COrvSolverMeshWriter;

// Which volume elements a variant writes, into which block, and under which material and group.
namespace orvmesh::transfer {

enum class ElementList : std::uint8_t { Plastic, Mold, Channel };
const char* elementListName(ElementList list);

// Elements whose field lies inside (or outside) a range.
struct ElementPick {
  enum Field : std::uint8_t { Any, A, B } field = Any;
  bool inside = true;
  NumberRange range{0, 0};
};

// A material or group as it is written: a field of the element plus a number, or the number alone.
struct Mark {
  enum From : std::uint8_t { Number, A, B, MoldBaseOfA } from;
  std::int32_t plus = 0;
};

struct ElementPass {
  ElementList from;
  ElementPick pick;
  ElementList to;
  Mark material;
  Mark group;
};

struct ElementBlock {
  const char* banner;
  std::span<const ElementPass> passes;
};

// Material of a mold element in the mold-base mesh.
std::int32_t moldBaseMaterial(std::int32_t material);

extern const ElementBlock kElements_Channel;      // channel only
extern const ElementBlock kElementsP_PartInsert;  // both part-insert variants
extern const ElementBlock kElementsP_HotRunner;
extern const ElementBlock kElementsP_StreamLine;
extern const ElementBlock kElementsM_PartInsert;
extern const ElementBlock kElementsM_PartInsertAndChannel;
extern const ElementBlock kElementsC_PartInsert;
extern const ElementBlock kElementsC_PartInsertAndChannel;
extern const ElementBlock kElementsP_MoldBase;

void writeElements(const ElementBlock& block, COrvSolverMeshWriter& worker);
std::string describeElementBlock(const ElementBlock& block);

// The mold elements as plastic elements, with the diagnostics of that variant.
void WriteOfeElemPBin_OnlyMoldbase(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
