#include "view/json_mesh.h"

#include <algorithm>

#include "base/checked.h"
#include "base/ranges.h"
#include "view/json_complaint.h"

namespace orvmesh::view {
namespace {

constexpr std::int64_t kLeastInt = std::numeric_limits<std::int32_t>::min();
constexpr std::int64_t kMostInt = std::numeric_limits<std::int32_t>::max();

struct Range {
  std::int64_t least, most;

  bool holds(std::int64_t n) const { return least <= n && n <= most; }
  std::string text() const {
    return most < least ? "none, there is nothing to name"
                        : std::to_string(least) + " to " + std::to_string(most);
  }
};

Range rangeOf(Legal legal, const JsonMesh& mesh) {
  switch (legal) {
    case Legal::Node:
    case Legal::SurfaceNodes:
      return {1, mesh.count(kNodes)};
    case Legal::Surface:
      return {1, mesh.count(kElementSurfaces)};
    case Legal::MoldMaterial:
      return {kLeastInt, kHeaterMaterial + kLastGroup};
    case Legal::ChannelGroup:
      return {0, kLastGroup};
    case Legal::SensorKind:
      return {1, 6};
    case Legal::Any:
      break;
  }
  return {kLeastInt, kMostInt};
}

void checkArguments(const JsonMesh& mesh, const std::string& name, int block) {
  constexpr std::size_t kMaybePlace = 3;
  const BlockShape& shape = blockShape(block);
  forEachArgument(mesh, block, [&](std::int64_t no, const Argument& argument, auto values) {
    if (argument.legal == Legal::Any) return;
    Range range = rangeOf(argument.legal, mesh);
    for (std::size_t place = 0; place < values.size(); ++place) {
      if (argument.legal == Legal::SurfaceNodes && place == kMaybePlace) range.least = 0;
      if (range.holds(values[place])) continue;
      const std::int64_t index = argument.list ? static_cast<std::int64_t>(place) : -1;
      refuse(name, jsonPath(shape, no, argument.key, index), std::to_string(values[place]), range.text());
    }
  });
}

void checkCount(const JsonMesh& mesh, const std::string& name, int block) {
  const std::string found = std::to_string(mesh.count(block)) + " entries";
  if (mesh.count(block) > static_cast<std::int64_t>(kMaxEntities))
    refuse(name, blockShape(block).key, found, "up to " + std::to_string(kMaxEntities));
  if (block == kChannelLines && mesh.count(block) % 2 != 0)
    refuse(name, blockShape(block).key, found, "an even number, two ends for each line");
}

}  // namespace

std::span<const std::int32_t> takeArgument(const Argument& argument, WordCursor& entry) {
  if (argument.list) return argument.fixedLength() ? entry.takeInts(argument.length()) : entry.takeList();
  if (argument.type == ValueType::Text) {
    entry.takeText();
    return {};
  }
  if (argument.type != ValueType::Dictionary) return entry.takeInts(1);
  for (std::int32_t texts = 2 * (entry.takeInt() - 1); texts > 0; --texts) entry.takeText();
  return {};
}

void checkNumbers(const JsonMesh& mesh, const std::string& name) {
  for (int block = 0; block < kBlockCount; ++block) {
    const BlockShape& shape = blockShape(block);
    checkCount(mesh, name, block);
    if (std::ranges::any_of(shape.arguments, [](const auto& a) { return a.legal != Legal::Any; }))
      checkArguments(mesh, name, block);
  }
}

}  // namespace orvmesh::view
