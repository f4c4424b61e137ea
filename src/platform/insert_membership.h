#pragma once

#include "base/one_based.h"
#include "platform/mesh_records.h"

namespace orvmesh {

// Where mold elements go when the inserts among them (material 5002..10001) are joined with the part.
class InsertMembership {
 public:
  InsertMembership(const MeshModel& model, bool needsElements, bool needsNodes);

  bool holdsElement(std::int32_t e) const;
  bool holdsNode(std::int32_t n) const;
  // Place of an element among the inserts, or among the others when it is none; 0 when there is no such
  // element.
  std::int32_t ordinal(std::int32_t e) const;

 private:
  const ElementTable& mold_;
  OneBasedArray<std::int32_t> ordinal_;
  OneBasedArray<std::uint8_t> nodes_;
};

}  // namespace orvmesh
