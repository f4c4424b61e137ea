#include "platform/ofv_mesh.h"

#include <algorithm>
#include <cmath>

#include "base/checked.h"
#include "base/ranges.h"
#include "base/text_number.h"

namespace orvmesh {
namespace {

std::string number(std::size_t n) { return std::to_string(n); }

std::string outside(const char* what, std::size_t i, const std::string& field, const std::string& value,
                    const std::string& legal) {
  return std::string(what) + " " + number(i + 1) + ": " + field + " is " + value + " (legal: " + legal + ")";
}
std::string outside(const char* what, std::size_t i, const std::string& field, std::int64_t value,
                    std::int64_t first, std::int64_t last) {
  return outside(what, i, field, std::to_string(value),
                 std::to_string(first) + " to " + std::to_string(last));
}

std::string differs(const char* what, std::size_t size, const char* other, std::size_t otherSize) {
  return number(size) + " " + what + " for " + number(otherSize) + " " + other;
}

std::string tooMany(const char* what, std::size_t count) {
  return number(count) + " " + what + " (legal: at most 2147483647)";
}

// Every value within the range; what and field say whose they are.
std::string faultOfRange(std::span<const std::int32_t> values, const char* what, const char* field,
                         std::int32_t first, std::int32_t last) {
  const auto at = std::find_if(values.begin(), values.end(),
                               [=](std::int32_t value) { return value < first || value > last; });
  if (at == values.end()) return {};
  return outside(what, static_cast<std::size_t>(at - values.begin()), field, *at, first, last);
}

// The place of a number that an earlier entry has, too; the size of the list when each is there once.
std::size_t findRepeated(std::span<const std::int32_t> values) {
  std::vector<std::size_t> order(values.size());
  for (std::size_t i = 0; i < order.size(); ++i) order[i] = i;
  std::sort(order.begin(), order.end(), [&](std::size_t a, std::size_t b) {
    return values[a] != values[b] ? values[a] < values[b] : a < b;
  });
  const auto at = std::adjacent_find(order.begin(), order.end(),
                                     [&](std::size_t a, std::size_t b) { return values[a] == values[b]; });
  return at == order.end() ? values.size() : at[1];
}

std::string faultOfOffsets(const OFVMesh& mesh) {
  const auto offsets = mesh.faceOffsets;
  const std::size_t faces = mesh.owner.size();
  if (offsets.size() != faces + 1) return differs("face offsets", offsets.size(), "faces", faces);
  if (offsets.front() != 0)
    return "the first face offset is " + std::to_string(offsets.front()) + " (legal: 0)";
  for (std::size_t f = 0; f < faces; ++f)
    if (offsets[f + 1] < offsets[f] || offsets[f + 1] - offsets[f] < 3)
      return outside("face", f, "its number of points",
                     "from " + std::to_string(offsets[f]) + " to " + std::to_string(offsets[f + 1]),
                     "3 or more");
  if (static_cast<std::uint64_t>(offsets.back()) != mesh.faceNodes.size())
    return "the faces have " + std::to_string(offsets.back()) + " points, the list " +
           number(mesh.faceNodes.size());
  return {};
}

std::string faultOfFaceNodes(const OFVMesh& mesh) {
  const std::int32_t last = mesh.pointCount();
  const auto nodes = mesh.faceNodes;
  const auto at = std::find_if(nodes.begin(), nodes.end(), [=](std::int32_t n) { return n < 1 || n > last; });
  if (at == nodes.end()) return {};
  const auto place = static_cast<std::int64_t>(at - nodes.begin());
  const auto after = std::upper_bound(mesh.faceOffsets.begin(), mesh.faceOffsets.end(), place);
  const auto face = static_cast<std::size_t>(after - mesh.faceOffsets.begin()) - 1;
  return outside("face", face, "point " + std::to_string(place - mesh.faceOffsets[face] + 1), *at, 1, last);
}

}  // namespace

std::string faultOfPoints(const OFVMesh& mesh) {
  if (mesh.xyz.size() % 3 != 0) return number(mesh.xyz.size()) + " coordinates (legal: 3 for each point)";
  if (mesh.xyz.size() / 3 > kMaxEntities) return tooMany("points", mesh.xyz.size() / 3);
  const auto at =
      std::find_if_not(mesh.xyz.begin(), mesh.xyz.end(), [](double x) { return std::isfinite(x); });
  if (at == mesh.xyz.end()) return {};
  const auto i = static_cast<std::size_t>(at - mesh.xyz.begin());
  std::string value;
  appendExact(value, *at);
  return outside("point", i / 3, std::string(1, "xyz"[i % 3]), value, "a finite number");
}

std::string faultOfCavities(const OFVMesh& mesh) {
  const auto numbers = mesh.cavityNumber;
  if (numbers.size() > kMaxEntities) return tooMany("cavities", numbers.size());
  if (mesh.cavityKind.size() != numbers.size())
    return differs("kinds", mesh.cavityKind.size(), "cavities", numbers.size());
  if (const std::size_t i = findRepeated(numbers); i < numbers.size())
    return outside("cavity", i, "its number", std::to_string(numbers[i]), "one that no cavity before it has");
  return faultOfRange(mesh.cavityKind, "cavity", "its kind", kCavityOther, kCavityChannel);
}

std::string faultOfCells(const OFVMesh& mesh) {
  if (mesh.cellCavity.size() > kMaxEntities) return tooMany("cells", mesh.cellCavity.size());
  return faultOfRange(mesh.cellCavity, "cell", "its cavity", 1, mesh.cavityCount());
}

std::string faultOfFaces(const OFVMesh& mesh) {
  if (mesh.owner.size() > kMaxEntities) return tooMany("faces", mesh.owner.size());
  if (mesh.neighbour.size() != mesh.owner.size())
    return differs("neighbours", mesh.neighbour.size(), "faces", mesh.owner.size());
  const std::int32_t cells = mesh.cellCount();
  for (const auto& fault : {faultOfOffsets(mesh), faultOfRange(mesh.owner, "face", "its owner", 1, cells),
                            faultOfRange(mesh.neighbour, "face", "its neighbour", 0, cells)})
    if (!fault.empty()) return fault;
  for (std::size_t f = 0; f < mesh.owner.size(); ++f)
    if (mesh.owner[f] == mesh.neighbour[f])
      return outside("face", f, "its neighbour", std::to_string(mesh.owner[f]),
                     "another cell than its owner");
  return faultOfFaceNodes(mesh);
}

std::string faultOfInlets(const OFVMesh& mesh) {
  const auto inlets = mesh.inletID;
  if (inlets.size() > kMaxEntities) return tooMany("inlets", inlets.size());
  if (mesh.inletGroup.size() != inlets.size())
    return differs("channel groups", mesh.inletGroup.size(), "inlets", inlets.size());
  if (const std::size_t i = findRepeated(inlets); i < inlets.size())
    return outside("inlet", i, "its ID", std::to_string(inlets[i]), "one that no inlet before it has");
  return faultOfRange(mesh.inletGroup, "inlet", "its channel group", 0, kLastGroup);
}

CellFaces facesOfCells(const OFVMesh& mesh) {
  CellFaces found;
  const auto place = [](std::int32_t cell) { return static_cast<std::size_t>(cell); };
  // One place further on than the first pass counts, so that the second pass can move the starts.
  std::vector<std::int64_t>& starts = found.offsets;
  starts.resize(mesh.cellCavity.size() + 2);
  for (const auto cells : {mesh.owner, mesh.neighbour})
    for (const std::int32_t cell : cells)
      if (cell != 0) ++starts[place(cell) + 1];
  for (std::size_t c = 1; c < starts.size(); ++c) starts[c] += starts[c - 1];
  found.faces.resize(static_cast<std::size_t>(starts.back()));
  for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
    const auto face = static_cast<std::int32_t>(f) + 1;
    found.faces[static_cast<std::size_t>(starts[place(mesh.owner[f])]++)] = face;
    if (mesh.neighbour[f] != 0)
      found.faces[static_cast<std::size_t>(starts[place(mesh.neighbour[f])]++)] = -face;
  }
  starts.pop_back();
  return found;
}

}  // namespace orvmesh
