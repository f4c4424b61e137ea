#pragma once

#include <cstddef>
#include <cstdint>
#include <utility>

#include "base/face_tables.h"
#include "platform/mesh_records.h"

namespace orvmesh::transfer {

// Calls use.template operator()<N>(nodes) for every element in order, N being its node count if elements of
// that count have faces, else 0.
template <class Use>
void eachElement(const ElementTable& table, Use&& use) {
  const auto call = [&use](std::size_t nodeCount, const std::int32_t* nodes) {
    switch (nodeCount) {
      case 4:
        return use.template operator()<4>(nodes);
      case 5:
        return use.template operator()<5>(nodes);
      case 6:
        return use.template operator()<6>(nodes);
      case 8:
        return use.template operator()<8>(nodes);
      default:
        return use.template operator()<0>(nodes);
    }
  };
  const auto count = static_cast<std::size_t>(table.count());
  const std::int32_t* nodes = table.connectivity.data();
  if (!table.offsets.empty()) {
    for (std::size_t i = 0; i < count; ++i)
      call(static_cast<std::size_t>(table.offsets[i + 1] - table.offsets[i]), nodes + table.offsets[i]);
  } else if (table.nodesPerElement == 4) {  // nearly always, and worth a loop without the switch
    for (std::size_t i = 0; i < count; ++i) use.template operator()<4>(nodes + 4 * i);
  } else {
    const auto each = static_cast<std::size_t>(table.nodesPerElement);
    for (std::size_t i = 0; i < count; ++i) call(each, nodes + each * i);
  }
}

inline constexpr int kMostFaceNodes = 4;

template <int N>
inline constexpr std::size_t kFacesOf = facesOf(N).size();

// Calls use(nodes) for the faces of one element in the order of their table, nodes being an array of 3 or 4.
template <int N, class Use>
void eachFaceOf(const std::int32_t* nodes, Use&& use) {
  [&]<std::size_t... Face>(std::index_sequence<Face...>) {
    [[maybe_unused]] const auto one = [&]<std::size_t F>() {
      constexpr LocalFace face = facesOf(N)[F];
      std::int32_t own[face.nodeCount] = {};
      for (int k = 0; k < face.nodeCount; ++k) own[k] = nodes[face.nodes[k]];
      use(own);
    };
    (one.template operator()<Face>(), ...);
  }
  (std::make_index_sequence<kFacesOf<N>>{});
}

}  // namespace orvmesh::transfer
