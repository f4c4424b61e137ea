#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <vector>

namespace orvmesh::check {

// Errors and warnings are things to mend; notes are not.
enum class Severity : std::uint8_t { error, warning, note };
const char* nameOf(Severity severity);

enum class Code : std::uint8_t {
  indexOutOfRange,
  illegalValue,
  invertedElement,
  zeroVolume,
  duplicateElement,
  crowdedFace,
  surfaceOffMesh,
  surfaceNotOfOwner,
  surfaceWithoutOwner,
  openChannel,
  channelEnds,
  unknownMaterial,
  headerCount,
  emptyComponent,
  sensorOutside,
  coincidentNodes,
  unusedNode,
  separateNodes,
  absentComponent,
};

// What a code means: one row of the table that `orvmesh check --explain` prints.
struct Rule {
  Code code;
  const char* name;
  Severity severity;
  const char* meaning;
  const char* advice;
};
std::span<const Rule> allRules();
const Rule& ruleOf(Code code);

// One thing that a finding is about.
struct Entity {
  const char* kind;     // "mold element"
  std::int64_t number;  // in the file, from 1; 0 where the thing has none
  std::string detail;
  std::optional<std::array<double, 3>> position;  // model units
};

// The entities of one code that differ in nothing but their number. What `part` counts depends on the code:
// the interface of surfaces, the word of header counts, the component or layer list of empty components, the
// kind of sensors (+ kUnsplitSensors where the header says that they are not split by component).
struct Row {
  Code code;
  int part;
  std::uint64_t count = 0;
  std::vector<Entity> entities = {};  // the first few
};
inline constexpr int kUnsplitSensors = 10;

class Collector {
 public:
  static constexpr std::size_t kShown = 5;

  // make() gives the Entity; it is called for the few that are shown.
  template <class Make>
  void add(Code code, int part, Make make) {
    Row& row = rowOf(code, part);
    if (row.entities.size() < kShown) row.entities.push_back(make());
    ++row.count;
  }
  const std::vector<Row>& rows() const { return rows_; }

 private:
  Row& rowOf(Code code, int part);

  std::vector<Row> rows_;
  std::size_t last_ = 0;
};

}  // namespace orvmesh::check
