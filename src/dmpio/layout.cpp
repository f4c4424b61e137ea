#include "dmpio/layout.h"

namespace orvmesh::dmpio {
namespace {

// Required oddities that look like slips: the headings of the face-to-line map and of the surface maps differ
// between the columns, the cool channel map of the block form is counted by the face-to-line value and shuts
// that map out, the surface maps are counted by it, too, and two write operations refuse with 0, the place of
// a first entry (quirks 32 to 35 and 37).
constexpr std::array<BlockRow, kBlocks> kRows{{
    // clang-format off
  {20000, Shape::Pair,   kNodeCount,        kNodeCount,
   "[NODE MAP]\n", "[NODE MAP]\n", "[NODE MAP]",
   0, 0, "nodeMap"},
  {30000, Shape::One,    kPlasticCount,     kPlasticCount,
   "[ELEMENT PLASTIC MAP]\n", "[ELEMENT PLASTIC MAP]\n", "[ELEMENT PLASTIC MAP]",
   0, -1, "elementPlasticMap"},
  {40000, Shape::One,    kMoldBaseCount,    kMoldBaseCount,
   "[ELEMENT MOLDBASE MAP]\n", "[ELEMENT MOLDBASE MAP]\n", "[ELEMENT MOLDBASE MAP]",
   0, -1, "elementMoldBaseMap"},
  {50000, Shape::One,    kCoolChannelCount, kFaceToLineCount,
   "[ELEMENT COOL CHANNEL MAP]\n", "[ELEMENT COOL CHANNEL MAP]\n", "[ELEMENT COOL CHANNEL MAP]",
   setOf(kFaceToLineMap), -1, "elementCoolChannelMap"},
  {60000, Shape::Pair,   kCoolantEndCount,  kCoolantEndCount,
   "[ELEMENT COOLANT END MAP]\n", "[ELEMENT COOLANT END MAP]\n", "[ELEMENT COOLANT END MAP]",
   0, 0, "elementCoolantEndMap"},
  {61000, Shape::One,    kFaceToLineCount,  kFaceToLineCount,
   "[ELEMENT COOL FACE TO LINE]\n", "[ELEMENT COOL FACE TO LINE MAP]\n", "[ELEMENT COOL FACE TO LINE MAP]",
   0, -1, "elementCoolFaceToLineMap"},
  {62000, Shape::Groups, kLineToFaceCount,  kLineToFaceCount,
   "[ELEMENT COOL LINE TO FACE MAP]\n", "[ELEMENT COOL LINE TO FACE MAP]\n", "[ELEMENT COOL LINE TO FACE MAP]",
   0, -1, "elementCoolLineToFaceMap"},
  {63000, Shape::One,    kSensorCount,      kSensorCount,
   "[SENSOR MAP]\n", "[SENSOR MAP]\n", "[SENSOR MAP]",
   0, -1, "sensorMap"},
  {64000, Shape::One,    kFaceToLineCount,  kFaceToLineCount,
   "[ELEMENT SURFACE MAP]\n", "[ELEMENT SURFACE MAP]]\n", "[ELEMENT SURFACE MAP]",
   0, -1, "elementSurfaceMap"},
  {64100, Shape::One,    kFaceToLineCount,  kFaceToLineCount,
   "[ELEMENT SURFACE 103104 MAP]\n", "[ELEMENT SURFACE 103104 MAP]]\n", "[ELEMENT SURFACE 103104 MAP]",
   0, -1, "elementSurface103104Map"},
    // clang-format on
}};

constexpr bool isAscending() {
  for (std::size_t i = 1; i < kRows.size(); ++i)
    if (kRows[i].id <= kRows[i - 1].id) return false;
  return kRows.front().id > kHeaderId && kRows.back().id < kAfterLastId;
}
static_assert(isAscending());

}  // namespace

const std::array<BlockRow, kBlocks> kBlockRows = kRows;

}  // namespace orvmesh::dmpio
