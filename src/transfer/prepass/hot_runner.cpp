#include "transfer/prepass/hot_runner.h"

#include <algorithm>

#include "base/face_tag.h"
#include "base/ranges.h"

namespace orvmesh::transfer {
namespace {

void setNumber(std::vector<std::int32_t>& numbers, std::int32_t group, std::int32_t number) {
  const auto i = static_cast<std::size_t>(group);
  if (numbers.size() <= i) numbers.resize(i + 1, -1);
  numbers[i] = number;
}

bool isGateFace(const SurfaceElement& face, const GateNumbers& gates) {
  if (face.interfaceId != 1 || (face.boundaryType != 4 && face.boundaryType != 9)) return false;
  if (isCommonGateTag(face.tag)) return GateNumbers::find(gates.common, tagGroup(face.tag)) >= 1;
  return isHotColdGateTag(face.tag);
}

}  // namespace

bool ownerGroupIn(const MeshModel& model, const SurfaceElement& face, const NumberRange& range) {
  return face.interfaceId == 1 && model.elemP.holds(face.elementNo) &&
         range.holds(model.elemP.group(face.elementNo));
}

HotRunnerNodes countHotRunnerNodes(const MeshModel& model) {
  std::vector<std::int32_t> entries;
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    if (!model.surfaces.hasList(s) || !ownerGroupIn(model, model.surfaces[s], kHotRunnerGroup)) continue;
    const auto list = model.surfaces.list(s);
    entries.insert(entries.end(), list.begin(), list.end());
  }
  HotRunnerNodes nodes;
  nodes.entries = static_cast<std::int32_t>(entries.size());
  std::sort(entries.begin(), entries.end());
  nodes.distinct = static_cast<std::int32_t>(std::unique(entries.begin(), entries.end()) - entries.begin());
  return nodes;
}

GateNumbers numberGates(const MeshModel& model, const GateInfo& gates) {
  GateNumbers numbers;
  std::int32_t next = 0;
  for (const auto& gate : gates.commonGates)
    if (gate.flag == 1) setNumber(numbers.common, gate.group, ++next);
  for (const auto& gate : gates.hotColdGates) setNumber(numbers.hotCold, gate.group, ++next);
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s)
    numbers.gateFaces += isGateFace(model.surfaces[s], numbers);
  return numbers;
}

OneBasedArray<std::int32_t> numberHotRunnerElements(const ElementTable& plastic) {
  OneBasedArray<std::int32_t> numbers(plastic.count());
  std::int32_t next = 0;
  for (std::int32_t e = 1; e <= plastic.count(); ++e)
    if (kHotRunnerGroup.holds(plastic.group(e))) numbers[e] = ++next;
  return numbers;
}

}  // namespace orvmesh::transfer
