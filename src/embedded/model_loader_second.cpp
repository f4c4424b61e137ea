#include <algorithm>
#include <cmath>
#include <limits>
#include <optional>

#include "embedded/model_loader.h"
#include "embedded/range_check.h"

// The second part of an OFE file: everything after the bad elements, as records in model units.
namespace orvmesh::embedded {
namespace {

constexpr const char* kPosition[] = {"x", "y", "z"};

// Entries up to the last one that is not 0.
std::int32_t usedNodes(std::span<const std::int32_t> nodes) {
  std::size_t used = nodes.size();
  while (used > 0 && nodes[used - 1] == 0) --used;
  return static_cast<std::int32_t>(used);
}

// The nearest integer to 10000 times the value; nothing when an int32 does not hold it.
std::optional<std::int32_t> tenThousandths(double value) {
  const double scaled = value * 10000.0;
  if (!(std::abs(scaled) <= std::numeric_limits<std::int32_t>::max())) return std::nullopt;
  return static_cast<std::int32_t>(std::llround(scaled));
}

}  // namespace

bool ModelLoader::loadDiameters() {
  constexpr Block kBlock = Block::CoolantChannelDiameters;
  const auto view = file_.block(kBlock);
  if (!view) return false;
  static constexpr const char* kNames[] = {"diameter"};
  if (!allFinite(kBlock, view->values<float>(1), kNames)) return false;
  model_.diameters.reserve(static_cast<std::size_t>(view->count()));
  for (std::int32_t i = 0; i < view->count(); ++i) {
    const std::int32_t* const nodes = view->at<std::int32_t>(0, i, 8);
    const std::span used(nodes, static_cast<std::size_t>(usedNodes({nodes, 8})));
    if (const auto at = findOutside(used, 1, model_.nodes.count()); at != kNoneFound)
      return violation(kBlock, static_cast<std::size_t>(i), "node " + std::to_string(at + 1), used[at], 1,
                       model_.nodes.count());
    ChannelDiameter& entry = model_.diameters.emplace_back();
    entry.nodeCount = static_cast<std::int32_t>(used.size());
    std::copy(used.begin(), used.end(), entry.nodes);
    entry.diameter = *view->at<float>(1, i, 1) * model_.lengthFactor;
  }
  return true;
}

bool ModelLoader::loadLines() {
  constexpr Block kBlock = Block::CoolantChannelLines;
  const auto view = file_.block(kBlock);
  if (!view) return false;
  static constexpr const char* kNames[] = {"x", "y", "z", "diameter"};
  if (!allFinite(kBlock, view->values<float>(0), kNames)) return false;
  if (view->count() % 2 != 0)
    return fail("coolantChannelLines has " + std::to_string(view->count()) +
                " entries (legal: an even number, two ends for each line)");
  model_.lines.resize(static_cast<std::size_t>(view->count() / 2));
  for (std::int32_t i = 0; i < view->count(); ++i) {
    ChannelLineEnd& end = model_.lines[static_cast<std::size_t>(i / 2)].ends[i % 2];
    const float* const values = view->at<float>(0, i, 4);
    for (int k = 0; k < 4; ++k) end.values[k] = static_cast<float>(values[k] * model_.lengthFactor);
    std::copy_n(view->at<std::int32_t>(1, i, 4), 4, end.codes);
  }
  return true;
}

bool ModelLoader::loadLayout() {
  constexpr Block kBlock = Block::CoolantChannelLayout;
  const auto view = file_.block(kBlock);
  if (!view) return false;
  static constexpr const char* kNames[] = {"x",        "y",        "z",        "diameter A", "diameter B",
                                           "value 13", "value 14", "value 15", "value 16",   "value 17",
                                           "value 18", "value 19", "value 20"};
  if (!allFinite(kBlock, view->values<float>(0), kNames)) return false;
  const double factor = model_.lengthFactor;
  std::int32_t points = 0;
  std::int32_t coarse = 0;
  for (std::int32_t i = 0; i < view->count(); ++i) points += *view->at<std::int32_t>(1, i, 7) != 0 ? 1 : 0;
  for (std::int32_t i = 0; i < view->count(); ++i) {
    const float* const values = view->at<float>(0, i, 13);
    const std::int32_t* const codes = view->at<std::int32_t>(1, i, 7);
    if (codes[0] != 0)
      model_.beamPoints.push_back({values[0] * factor, values[1] * factor, values[2] * factor, codes[1]});
    else if (!loadBeam(static_cast<std::size_t>(i), values, codes, points, coarse))
      return false;
  }
  if (coarse > 0)
    warnings_.push_back(
        "coolantChannelLayout: " + std::to_string(coarse) +
        " values change by more than 0.1 % as ten-thousandths of model units, which is how they "
        "are kept");
  return true;
}

bool ModelLoader::loadBeam(std::size_t entry, const float values[13], const std::int32_t codes[7],
                           std::int32_t points, std::int32_t& coarse) {
  constexpr Block kBlock = Block::CoolantChannelLayout;
  // A layout without points names none.
  for (const int end : {0, 1})
    if (points > 0 && (codes[2 + end] < 1 || codes[2 + end] > points))
      return violation(kBlock, entry, end == 0 ? "end point A" : "end point B", codes[2 + end], 1, points);
  // Ten values in ten-thousandths: the two diameters, which are lengths, and the last eight.
  std::int32_t scaled[10];
  for (int k = 0; k < 10; ++k) {
    const double value = k < 2 ? values[3 + k] * model_.lengthFactor : static_cast<double>(values[3 + k]);
    const auto rounded = tenThousandths(value);
    if (!rounded)
      return violation(kBlock, entry, "value " + std::to_string(k < 2 ? 8 + k : 11 + k), exactText(value),
                       "-214748 to 214748 in model units");
    scaled[k] = *rounded;
    if (std::abs(*rounded - value * 10000.0) > 0.001 * std::abs(value * 10000.0)) ++coarse;
  }
  BeamSegment& beam = model_.beamSegments.emplace_back();
  beam.segValue = scaled[1];
  beam.segCode = codes[4];
  const std::int32_t first[] = {scaled[0], codes[2], codes[3], codes[5], codes[6]};
  std::copy_n(scaled + 2, 8, std::copy(std::begin(first), std::end(first), beam.values));
  return true;
}

bool ModelLoader::loadSensors() {
  const auto view = file_.block(Block::Sensors);
  if (!view || !allFinite(Block::Sensors, view->values<float>(2), kPosition)) return false;
  const double factor = model_.lengthFactor;
  const auto kinds = view->values<std::int32_t>(1);
  if (const auto at = findOutside(kinds, 1, 6); at != kNoneFound)
    return violation(Block::Sensors, at, "type", kinds[at], 1, 6);
  for (std::int32_t i = 0; i < view->count(); ++i) {
    const float* const p = view->at<float>(2, i, 3);
    auto& list = model_.sensors[kinds[static_cast<std::size_t>(i)] - 1];
    Sensor& sensor = list.emplace_back(Sensor{p[0] * factor, p[1] * factor, p[2] * factor, {}});
    std::copy_n(view->at<std::int32_t>(0, i, 4), 4, sensor.ids);
  }
  return true;
}

bool ModelLoader::loadAllGeometry() {
  return loadGeometry(Block::MoldMetal, model_.moldInsert) &&
         loadGeometry(Block::CoolingChannelSurface, model_.channelSurface);
}

bool ModelLoader::loadGeometry(Block block, Geometry& geometry) {
  const auto view = file_.block(block);
  if (!view || !allFinite(block, view->values<float>(2), kPosition)) return false;
  const double factor = model_.lengthFactor;
  for (std::int32_t i = 0; i < view->count(); ++i) {
    if (*view->at<std::int32_t>(1, i, 1) == 0) continue;
    const float* const p = view->at<float>(2, i, 3);
    geometry.points.push_back({p[0] * factor, p[1] * factor, p[2] * factor});
  }
  // A face numbers the points of its block or the mesh's nodes; which of them is left to whoever uses it.
  const auto lastNode = std::max(model_.nodes.count(), static_cast<std::int32_t>(geometry.points.size()));
  for (std::int32_t i = 0; i < view->count(); ++i) {
    if (*view->at<std::int32_t>(1, i, 1) != 0) continue;
    const std::int32_t* const codes = view->at<std::int32_t>(3, i, 2);
    GeometryFace face{0, {}, codes[0], codes[1]};
    if (!loadGeometryFace(block, static_cast<std::size_t>(i), view->at<std::int32_t>(0, i, 4), lastNode,
                          face))
      return false;
    geometry.faces.push_back(face);
  }
  return true;
}

bool ModelLoader::loadGeometryFace(Block block, std::size_t entry, const std::int32_t nodes[4],
                                   std::int32_t lastNode, GeometryFace& face) {
  face.nodeCount = std::max(1, usedNodes({nodes, 4}));
  std::copy_n(nodes, face.nodeCount, face.nodes);
  const auto used = std::span<const std::int32_t>(nodes, static_cast<std::size_t>(face.nodeCount));
  const auto at = findOutside(used, 1, lastNode);
  return at == kNoneFound || violation(block, entry, "node " + std::to_string(at + 1), used[at], 1, lastNode);
}

bool ModelLoader::loadLists() {
  constexpr Block kBlock = Block::SurfaceBoundaryConditions;
  const auto view = file_.block(kBlock);
  if (!view) return false;
  if (view->count() == 0) return true;
  SurfaceTable& table = model_.surfaces;
  table.listOf.resize(static_cast<std::size_t>(table.count()) + 1);
  table.lists.reserve(static_cast<std::size_t>(view->count()));
  for (std::int32_t i = 0; i < view->count(); ++i) {
    const auto entry = static_cast<std::size_t>(i);
    const std::int32_t surface = *view->at<std::int32_t>(column::kPoolValues, i, 1);
    if (surface < 1 || surface > table.count())
      return violation(kBlock, entry, "surfaceNo", surface, 1, table.count());
    std::int32_t& place = table.listOf[static_cast<std::size_t>(surface)];
    if (place != 0)
      return violation(kBlock, entry, "surfaceNo", std::to_string(surface),
                       "each surface once, entry " + std::to_string(place) + " has it");
    table.lists.push_back(view->piece<std::int32_t>(i));
    place = i + 1;
  }
  return true;
}

bool ModelLoader::loadNames() {
  const auto view = file_.block(Block::SurfaceBoundaryConditionNames);
  if (!view) return false;
  std::int64_t nextText = 0;
  for (std::int32_t i = 0; i < view->count(); ++i)
    if (!loadNameEntry(*view, i, nextText)) return false;
  return true;
}

bool ModelLoader::loadNameEntry(const BlockView& view, std::int32_t entry, std::int64_t& nextText) {
  constexpr Block kBlock = Block::SurfaceBoundaryConditionNames;
  const std::int32_t* const typeAndSize = view.at<std::int32_t>(column::kPoolValues, entry, 2);
  SurfaceBCName name{std::string(view.text(nextText++)), typeAndSize[0], 0, 0, 0, entry};
  double thickness = 0;
  const std::pair<std::string_view, std::int32_t*> numbers[] = {{"BRANCH_ID", &name.branchId},
                                                                {"BRANCH_OUTLET_ID", &name.branchOutletId},
                                                                {"BRANCH_NUMBER", &name.branchNumber}};
  for (std::int32_t i = 0; i < typeAndSize[1]; ++i) {
    const std::string_view key = view.text(nextText++);
    const std::string_view text = view.text(nextText++);
    const auto wrong = [&](const char* legal) {
      return violation(kBlock, static_cast<std::size_t>(entry), std::string(key),
                       '"' + std::string(text) + '"', legal);
    };
    if (key == "THICKNESS") {
      const auto value = parseNumber<double>(text);
      if (!value || !std::isfinite(*value * model_.lengthFactor)) return wrong("a finite number");
      thickness = *value;
    }
    for (const auto& [numberKey, target] : numbers) {
      if (key != numberKey) continue;
      const auto value = parseNumber<std::int32_t>(text);
      if (!value) return wrong("an integer of 32 bits");
      *target = *value;
    }
  }
  model_.bcNames.push_back(std::move(name));
  model_.bcValues.push_back(thickness * model_.lengthFactor);
  return true;
}

bool ModelLoader::loadAllLayers() {
  return loadLayers(Block::MoldMetalLayers, model_.moldMetalLayers, 6) &&
         loadLayers(Block::PartInsertLayers, model_.partInsertLayers, 6) &&
         loadLayers(Block::CoolantChannelLayers, model_.channelLayers, 2);
}

bool ModelLoader::loadLayers(Block block, std::vector<LayerMaterial>& layers, int width) {
  const auto view = file_.block(block);
  if (!view) return false;
  for (std::int32_t i = 0; i < view->count(); ++i) {
    const std::int32_t* const values = view->at<std::int32_t>(column::kPoolValues, i, width);
    layers.push_back({values[0], values[1], width == 6 ? values[5] : 0, std::string(view->text(i))});
  }
  return true;
}

bool ModelLoader::loadDirection() {
  const auto view = file_.block(Block::PartingDirection);
  if (!view || !allFinite(Block::PartingDirection, view->values<float>(0), kPosition)) return false;
  if (view->count() > 1)
    return fail("partingDirection has " + std::to_string(view->count()) + " entries (legal: 0 or 1)");
  model_.hasPartingDirection = view->count() == 1;
  if (model_.hasPartingDirection) std::copy_n(view->at<float>(0, 0, 3), 3, model_.partingDirection);
  return true;
}

}  // namespace orvmesh::embedded
