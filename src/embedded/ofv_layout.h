#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

#include "platform/ofv_mesh.h"

namespace orvmesh::embedded {

// The blocks of an OFV file; docs/formats/ofv.md is the page. Writer and reader go by this table.
enum OfvBlock : std::size_t {
  kOfvFormat,
  kOfvPoints,
  kOfvCavities,
  kOfvCells,
  kOfvFaces,
  kOfvInlets,
  kOfvBlockCount
};

struct OfvBlockLayout {
  std::int64_t id;
  const char* name;
  std::string_view columns;  // their types in order
};
inline constexpr std::array<OfvBlockLayout, kOfvBlockCount> kOfvLayout{{{5100, "format", "I"},
                                                                        {5200, "points", "D"},
                                                                        {5300, "cavities", "II"},
                                                                        {5400, "cells", "I"},
                                                                        {5500, "faces", "LIII"},
                                                                        {5600, "inlets", "II"}}};
inline constexpr std::int32_t kOfvVersion = 1;

}  // namespace orvmesh::embedded
