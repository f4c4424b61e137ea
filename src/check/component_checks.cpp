#include <algorithm>
#include <unordered_set>

#include "base/ranges.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

// Parts of Code::emptyComponent: 1 to 3 the element lists, then the layer lists.
constexpr int kMoldLayers = 4, kInsertLayers = 5, kChannelLayers = 6;

// How many surfaces and sensors lie on an element list.
struct Mentions {
  std::int64_t surfaces[kBlocks] = {};
  std::int64_t sensors[kBlocks] = {};
};

Mentions mentionsIn(const MeshModel& model) {
  Mentions mentions;
  for (const std::int32_t interfaceId : model.surfaces.interfaceId)
    if (const std::size_t block = ownerBlock(interfaceId); block != kBlocks) ++mentions.surfaces[block];
  for (int kind = 0; kind < 5; ++kind)
    mentions.sensors[kind < 3 ? kPlastic : kMold] += static_cast<std::int64_t>(model.sensors[kind].size());
  return mentions;
}

std::string mentionText(std::int64_t surfaces, std::int64_t sensors) {
  std::string text = "no elements;";
  if (surfaces > 0) text += ' ' + std::to_string(surfaces) + " surface elements";
  if (surfaces > 0 && sensors > 0) text += " and";
  if (sensors > 0) text += ' ' + std::to_string(sensors) + " sensors";
  return text + " lie on it";
}

// The materials of the elements, as layers name them: the mold's, and what plastic elements that were mold
// inserts keep as their group; coolant groups, heater groups + kHeaterMaterial.
struct Materials {
  std::unordered_set<std::int32_t> metal, channels;

  explicit Materials(const MeshModel& model) {
    addEach(model.elemM.fieldA, metal);
    addEach(model.elemP.fieldB, metal);
    for (std::int32_t e = 1; e <= model.elemC.count(); ++e)
      channels.insert(model.elemC.group(e) +
                      (model.elemC.material(e) == kChannelKindCoolant ? 0 : kHeaterMaterial));
    // Heaters that were joined with the mold.
    for (const std::int32_t material : metal)
      if (material > kHeaterMaterial) channels.insert(material);
  }

 private:
  static void addEach(std::span<const std::int32_t> numbers, std::unordered_set<std::int32_t>& set) {
    for (std::size_t i = 0; i < numbers.size(); ++i)
      if (i == 0 || numbers[i] != numbers[i - 1]) set.insert(numbers[i]);
  }
};

void checkLayers(const std::vector<LayerMaterial>& layers, const std::unordered_set<std::int32_t>& present,
                 int part, const char* kind, Collector& found) {
  for (std::size_t k = 0; k < layers.size(); ++k) {
    if (present.contains(layers[k].materialId)) continue;
    found.add(Code::emptyComponent, part, [&] {
      return Entity{kind,
                    static_cast<std::int64_t>(k) + 1,
                    "no element has its material " + std::to_string(layers[k].materialId),
                    {}};
    });
  }
}

}  // namespace

void checkComponents(const MeshModel& model, bool lone, Collector& found) {
  const Mentions mentions = mentionsIn(model);
  for (std::size_t block = 0; block < kBlocks; ++block) {
    if (tableOf(model, block).count() > 0) continue;
    const std::int64_t surfaces = mentions.surfaces[block], sensors = mentions.sensors[block];
    if (surfaces + sensors > 0) {
      found.add(Code::emptyComponent, static_cast<int>(block) + 1, [&] {
        return Entity{kBlockNames[block], 0, mentionText(surfaces, sensors), {}};
      });
    } else if (lone) {
      found.add(Code::absentComponent, static_cast<int>(block) + 1, [&] {
        return Entity{kBlockNames[block], 0, {}, {}};
      });
    }
  }
  if (elementCount(model) == 0)
    found.add(Code::emptyComponent, 0, [] { return Entity{"whole mesh", 0, "no volume elements", {}}; });
  const bool anyLayer =
      !model.moldMetalLayers.empty() || !model.partInsertLayers.empty() || !model.channelLayers.empty();
  if (!anyLayer) return;
  const Materials materials(model);
  checkLayers(model.moldMetalLayers, materials.metal, kMoldLayers, "mold metal layer", found);
  checkLayers(model.partInsertLayers, materials.metal, kInsertLayers, "part insert layer", found);
  checkLayers(model.channelLayers, materials.channels, kChannelLayers, "coolant channel layer", found);
}

}  // namespace orvmesh::check
