#pragma once

#include <orvmesh/mesh_format_transfer.h>

#include <cstdint>
#include <span>

#include "dmpio/number_maps.h"

namespace orvmesh::test {

// Of 1-based entries all but the unused first.
inline std::span<const std::int32_t> withoutFirst(const int* values, int count) {
  return count == 0 ? std::span<const std::int32_t>{}
                    : std::span(values + 1, static_cast<std::size_t>(count));
}

// Entry i - 1 is the number that number i of the source has in the target.
inline std::span<const std::int32_t> numbersOf(const COrvMeshFormatTransfer& transfer, TargetNumbering of) {
  int count = 0;
  const int* const values = transfer.GetTargetNumbers_Link(of, count);
  return withoutFirst(values, count);
}

// What a dump of the transfer records; valid until the object's next operation.
inline dmpio::NumberMaps numberMapsOf(const COrvMeshFormatTransfer& transfer) {
  int count = 0;
  const int* const ends = transfer.GetChannelEnds_Link(count);
  const auto of = [&](TargetNumbering what) { return numbersOf(transfer, what); };
  return {of(TargetNumbering_Node),
          of(TargetNumbering_ElementPlastic),
          of(TargetNumbering_ElementMoldBase),
          of(TargetNumbering_ElementCoolChannel),
          of(TargetNumbering_ElementSurface),
          of(TargetNumbering_Sensor),
          withoutFirst(ends, count)};
}

}  // namespace orvmesh::test
