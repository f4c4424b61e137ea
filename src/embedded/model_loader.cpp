#include "embedded/model_loader.h"

#include <algorithm>
#include <array>
#include <limits>

#include "base/ranges.h"
#include "embedded/range_check.h"

namespace orvmesh::embedded {
namespace {

constexpr const char* kAxes[] = {"x", "y", "z"};

}  // namespace

bool ModelLoader::load() {
  static constexpr Step kSteps[] = {
      &ModelLoader::loadHeader,    &ModelLoader::loadNodes,       &ModelLoader::loadAllElements,
      &ModelLoader::loadSurfaces,  &ModelLoader::loadConditions,  &ModelLoader::loadAllBad,
      &ModelLoader::loadDiameters, &ModelLoader::loadLines,       &ModelLoader::loadLayout,
      &ModelLoader::loadSensors,   &ModelLoader::loadAllGeometry, &ModelLoader::loadLists,
      &ModelLoader::loadNames,     &ModelLoader::loadAllLayers,   &ModelLoader::loadDirection};
  return run(kSteps);
}

bool ModelLoader::loadContactSides() {
  static constexpr Step kSteps[] = {&ModelLoader::loadHeader, &ModelLoader::loadNodes,
                                    &ModelLoader::loadPlastic, &ModelLoader::loadChannels,
                                    &ModelLoader::loadSurfaces};
  return run(kSteps);
}

bool ModelLoader::run(std::span<const Step> steps) {
  for (const Step step : steps)
    if (!(this->*step)()) return fail(file_.errorText());
  return true;
}

bool ModelLoader::fail(std::string text) {
  if (error_.empty()) error_ = std::move(text);
  return false;
}

bool ModelLoader::violation(Block block, std::size_t entry, const std::string& field,
                            const std::string& value, const std::string& legal) {
  return fail(std::string(layoutOf(block).name) + " entry " + std::to_string(entry + 1) + ": " + field +
              " is " + value + " (legal: " + legal + ")");
}

bool ModelLoader::violation(Block block, std::size_t entry, const std::string& field, std::int64_t value,
                            std::int64_t first, std::int64_t last) {
  return violation(block, entry, field, std::to_string(value), rangeText(first, last));
}

bool ModelLoader::allFinite(Block block, std::span<const float> values, std::span<const char* const> names) {
  const std::size_t at = findNotFinite(values);
  return at == kNoneFound || violation(block, at / names.size(), names[at % names.size()],
                                       exactText(values[at]), "a finite number");
}

bool ModelLoader::loadHeader() {
  model_.header = file_.header();
  model_.formatVersion = model_.header[m_HEADER_Version];
  const float factor = model_.header.floatField(m_HEADER_ScaleFactor);
  if (isNotFinite(factor))
    return fail("header field 29, the scale factor, is " + exactText(factor) + " (legal: a finite number)");
  model_.lengthFactor = factor == 0 ? 1 : factor;
  model_.secondLengthFactor = model_.header.floatField(30);
  return true;
}

bool ModelLoader::loadNodes() {
  const auto view = file_.block(Block::Nodes);
  if (!view) return false;
  model_.nodes.xyz = view->values<float>(0);
  model_.nodes.factor = model_.lengthFactor;
  return allFinite(Block::Nodes, model_.nodes.xyz, kAxes);
}

bool ModelLoader::loadAllElements() {
  if (!loadPlastic() || !loadElements(Block::ElementsMoldBase, model_.elemM) || !loadChannels()) return false;
  constexpr std::int32_t kLastMaterial = kHeaterMaterial + kLastGroup;
  const auto materials = model_.elemM.fieldA;
  if (const auto at = findOutside(materials, std::numeric_limits<std::int32_t>::min(), kLastMaterial);
      at != kNoneFound)
    return violation(Block::ElementsMoldBase, at, "material", std::to_string(materials[at]),
                     "at most " + std::to_string(kLastMaterial));
  const auto groups = model_.elemC.fieldB;
  if (const auto at = findOutside(groups, 0, kLastGroup); at != kNoneFound)
    return violation(Block::ElementsCoolChannel, at, "group", groups[at], 0, kLastGroup);
  listMoldMaterials();
  return true;
}

bool ModelLoader::loadElements(Block block, ElementTable& table) {
  const auto view = file_.block(block);
  if (!view) return false;
  table.connectivity = view->values<std::int32_t>(column::kConnectivity);
  table.offsets = view->values<std::int64_t>(column::kOffsets);
  table.nodesPerElement = view->commonNodeCount();
  table.fieldA = view->values<std::int32_t>(column::kFieldA);
  table.fieldB = view->values<std::int32_t>(column::kFieldB);
  table.value = view->values<float>(column::kValue);
  return checkConnectivity(block, table);
}

bool ModelLoader::checkConnectivity(Block block, const ElementTable& table) {
  const std::int32_t nodeCount = model_.nodes.count();
  const std::size_t at = findOutside(table.connectivity, 1, nodeCount);
  if (at == kNoneFound) return true;
  std::size_t entry = 0;
  std::size_t first = 0;
  if (table.offsets.empty()) {
    entry = at / static_cast<std::size_t>(table.nodesPerElement);
    first = entry * static_cast<std::size_t>(table.nodesPerElement);
  } else {
    const auto after =
        std::upper_bound(table.offsets.begin(), table.offsets.end(), static_cast<std::int64_t>(at));
    entry = static_cast<std::size_t>(after - table.offsets.begin()) - 1;
    first = static_cast<std::size_t>(table.offsets[entry]);
  }
  return violation(block, entry, "node " + std::to_string(at - first + 1), table.connectivity[at], 1,
                   nodeCount);
}

void ModelLoader::listMoldMaterials() {
  auto& list = model_.blockToMaterial;
  const auto makeDistinct = [&list] {
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
  };
  std::size_t limit = 4096;
  for (const std::int32_t material : model_.elemM.fieldA) {
    if (!list.empty() && list.back() == material) continue;
    list.push_back(material);
    if (list.size() < limit) continue;
    makeDistinct();
    limit = std::max(limit, 2 * list.size());
  }
  makeDistinct();
}

bool ModelLoader::loadSurfaces() {
  const auto view = file_.block(Block::ElementSurfaces);
  if (!view) return false;
  SurfaceTable& table = model_.surfaces;
  table.nodes = view->values<std::int32_t>(column::kSurfaceNodes);
  table.interfaceId = view->values<std::int32_t>(column::kInterfaceId);
  table.ownerCode = view->values<std::int32_t>(column::kOwnerCode);
  table.contactCode = view->values<std::int32_t>(column::kContactCode);
  table.boundaryType = view->values<std::int32_t>(column::kBoundaryType);
  table.elementNo = view->values<std::int32_t>(column::kElementNo);
  table.tag = view->values<std::int32_t>(column::kTag);
  const std::int32_t nodeCount = model_.nodes.count();
  for (std::size_t i = 0; i < table.nodes.size(); ++i) {
    const std::int32_t node = table.nodes[i];
    const std::int32_t least = i % 4 == 3 ? 0 : 1;
    if (node < least || node > nodeCount)
      return violation(Block::ElementSurfaces, i / 4, "node " + std::to_string(i % 4 + 1), node, least,
                       nodeCount);
  }
  warnOfForeignElements();
  return true;
}

// Combined files keep the element numbers of the meshes they were made from, so that this is no fault.
void ModelLoader::warnOfForeignElements() {
  const SurfaceTable& table = model_.surfaces;
  const std::array<const ElementTable*, 5> lists{nullptr, &model_.elemP, &model_.elemM, &model_.elemC,
                                                 &model_.elemC};
  std::size_t count = 0;
  std::size_t first = 0;
  for (std::size_t i = 0; i < table.elementNo.size(); ++i) {
    const std::int32_t interfaceId = table.interfaceId[i];
    if (interfaceId < 1 || interfaceId > 4 || table.elementNo[i] == 0 ||
        lists[static_cast<std::size_t>(interfaceId)]->holds(table.elementNo[i]))
      continue;
    if (count++ == 0) first = i;
  }
  if (count > 0) warnOfOutsiders(Block::ElementSurfaces, count, first, table.elementNo[first]);
}

void ModelLoader::warnOfOutsiders(Block block, std::size_t count, std::size_t first, std::int32_t element) {
  warnings_.push_back(std::string(layoutOf(block).name) + ": " + std::to_string(count) +
                      " entries name an element outside their list (the first is entry " +
                      std::to_string(first + 1) + ", element " + std::to_string(element) + ")");
}

bool ModelLoader::loadConditions() {
  const auto view = file_.block(Block::BoundaryConditions);
  if (!view) return false;
  model_.conditions.entityNo = view->values<std::int32_t>(0);
  model_.conditions.type = view->values<std::int32_t>(1);
  model_.conditions.value = view->values<float>(2);
  return true;
}

bool ModelLoader::loadAllBad() {
  return loadBad(Block::BadElementsPlastic, model_.badP, model_.elemP.count()) &&
         loadBad(Block::BadElementsMoldBase, model_.badM, model_.elemM.count()) &&
         loadBad(Block::BadElementsCoolChannel, model_.badC, model_.elemC.count());
}

bool ModelLoader::loadBad(Block block, BadElementTable& table, std::int32_t elementCount) {
  const auto view = file_.block(block);
  if (!view) return false;
  table.elementNo = view->values<std::int32_t>(0);
  table.code = view->values<std::int32_t>(1);
  const auto isOutside = [=](std::int32_t e) { return e < 1 || e > elementCount; };
  const auto first = std::find_if(table.elementNo.begin(), table.elementNo.end(), isOutside);
  if (first != table.elementNo.end())
    warnOfOutsiders(block, static_cast<std::size_t>(std::count_if(first, table.elementNo.end(), isOutside)),
                    static_cast<std::size_t>(first - table.elementNo.begin()), *first);
  return true;
}

}  // namespace orvmesh::embedded
