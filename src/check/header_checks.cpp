#include <algorithm>
#include <unordered_set>

#include "base/ranges.h"
#include "check/checkers.h"
#include "platform/header_counts.h"

namespace orvmesh::check {
namespace {

using Count = std::int64_t;
using NumberSet = std::unordered_set<std::int32_t>;

NumberSet distinct(std::span<const std::int32_t> numbers) {
  NumberSet set;
  for (std::size_t i = 0; i < numbers.size(); ++i)
    if (i == 0 || numbers[i] != numbers[i - 1]) set.insert(numbers[i]);
  return set;
}
Count sizeOf(const auto& list) { return static_cast<Count>(list.size()); }

void tell(int field, std::int32_t value, const std::string& holds, Collector& found) {
  found.add(Code::headerCount, field, [&] {
    return Entity{"header field", field, "is " + std::to_string(value) + ", the file holds " + holds, {}};
  });
}

// Some programs count the kinds of channels here, some their groups: either will do, as will both together.
void checkChannelMaterials(const MeshModel& model, Collector& found) {
  NumberSet groups[3];  // of coolant, of heaters, of both
  for (std::int32_t e = 1; e <= model.elemC.count(); ++e) {
    groups[model.elemC.material(e) == kChannelKindCoolant ? 0 : 1].insert(model.elemC.group(e));
    groups[2].insert(model.elemC.group(e));
  }
  const Count kinds = sizeOf(distinct(model.elemC.fieldA));
  const Count each = sizeOf(groups[0]) + sizeOf(groups[1]);
  const std::int32_t value = model.header[m_HEADER_NMatC];
  if (value == kinds || value == each || value == sizeOf(groups[2])) return;
  tell(m_HEADER_NMatC, value,
       std::to_string(kinds) + " kinds and " + std::to_string(each) + " channel groups", found);
}

}  // namespace

void checkHeaderCounts(const MeshModel& model, Collector& found) {
  for (const FieldCount& row : headerCounts(contentOf(model)))
    if (row.field != m_HEADER_NMatC && model.header[row.field] != row.count)
      tell(row.field, model.header[row.field], std::to_string(row.count) + ' ' + row.what, found);
  checkChannelMaterials(model, found);
}

void checkReferences(const MeshModel& model, Collector& found) {
  const auto check = [&](std::span<const std::int32_t> numbers, const char* kind, const char* what,
                         std::int32_t last) {
    for (std::size_t k = 0; k < numbers.size(); ++k) {
      if (1 <= numbers[k] && numbers[k] <= last) continue;
      found.add(Code::indexOutOfRange, 0, [&] {
        return Entity{kind,
                      static_cast<std::int64_t>(k) + 1,
                      std::string(what) + " is " + std::to_string(numbers[k]) + " (legal: 1 to " +
                          std::to_string(last) + ")",
                      {}};
      });
    }
  };
  check(model.conditions.entityNo, "boundary condition", "its node", model.nodes.count());
  const BadElementTable* const bad[] = {&model.badP, &model.badM, &model.badC};
  constexpr const char* kKinds[] = {"bad plastic element", "bad mold element", "bad channel element"};
  for (std::size_t block = 0; block < kBlocks; ++block)
    check(bad[block]->elementNo, kKinds[block], "its number", tableOf(model, block).count());
}

}  // namespace orvmesh::check
