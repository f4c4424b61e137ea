#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string_view>
#include <unordered_set>
#include <vector>

#include "platform/mesh_records.h"

namespace orvmesh {

// Every block of an OFE file, in the order in which they are printed and written.
enum BlockId : int {
  kNodes,
  kElementsPlastic,
  kElementsMoldBase,
  kElementsCoolChannel,
  kElementSurfaces,
  kBoundaryConditions,
  kBadElementsPlastic,
  kBadElementsMoldBase,
  kBadElementsCoolChannel,
  kChannelDiameters,
  kChannelLines,
  kChannelLayout,
  kSensors,
  kMoldMetal,
  kChannelSurface,
  kSurfaceConditions,
  kSurfaceConditionNames,
  kMoldMetalLayers,
  kPartInsertLayers,
  kChannelLayers,
  kPartingDirection,
  kBlockCount
};

struct NamedField {
  const char* name;
  OFEHeaderField field;
};
// The header's named words, ascending.
std::span<const NamedField> namedFields();
// The name of a header word; empty where it has none.
std::string_view nameOfField(int field);

class DistinctNumbers {
 public:
  void add(std::int32_t number) {
    if (number == last_ && !numbers_.empty()) return;
    last_ = number;
    numbers_.insert(number);
  }
  std::int64_t count() const { return static_cast<std::int64_t>(numbers_.size()); }

 private:
  std::unordered_set<std::int32_t> numbers_;
  std::int32_t last_ = 0;
};

// What a file holds, as far as header words count it.
struct FileContent {
  std::array<std::int64_t, kBlockCount> entries{};
  std::array<std::int64_t, 6> sensors{};  // of kinds 1 to 6
  std::int64_t layoutPoints = 0, moldPoints = 0, channelSurfacePoints = 0;
  // Distinct values of field A, per element block; of the mold elements those in the part-insert range as
  // well.
  DistinctNumbers plastic, mold, channel, inserts;

  void addMoldMaterial(std::int32_t material);
  void addSensor(std::int32_t kind);
};
FileContent contentOf(const MeshModel& model);

struct FieldCount {
  int field;
  std::int64_t count;
  const char* what;  // is counted
};
// Every header word that counts something, ascending, with what it counts in the file.
std::vector<FieldCount> headerCounts(const FileContent& content);

}  // namespace orvmesh
