#include "transfer/blocks/layers.h"

#include <algorithm>

#include "base/checked.h"
#include "base/ranges.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

// From here on layers carry a flag, and heater layers are numbered after the others.
constexpr int kFirstFlagVersion = 2012;
constexpr const char* kNoName = "";

std::int32_t heaterLayers(const COrvSolverMeshWriter& worker) {
  return worker.found.heaters ? worker.found.heaters->heaterGroups : 0;
}

std::int32_t countOf(const std::vector<LayerMaterial>& layers) {
  return static_cast<std::int32_t>(layers.size());
}

// Materials may share a layer: the source's own count of layers stands, where it has one.
std::int32_t layersOf(const COrvSolverMeshWriter& worker, OFEHeaderField field,
                      const std::vector<LayerMaterial>& layers) {
  const std::int32_t count = worker.sourceHeader()[field];
  return count != 0 ? count : countOf(layers);
}

std::int32_t largestLayer(const std::vector<LayerMaterial>& layers) {
  const auto isBelow = [](const LayerMaterial& a, const LayerMaterial& b) { return a.layerId < b.layerId; };
  const auto largest = std::max_element(layers.begin(), layers.end(), isBelow);
  return largest == layers.end() ? 0 : largest->layerId;
}

}  // namespace

std::int32_t insertLayerMaterial(std::int32_t material) {
  if (2 <= material && material < 5000) return material + 5000;
  return material > 6000 ? material - 4000 : material;
}

void WriteOfeMoldMetalLayerBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Mold Metal Layer");
  const auto& layers = worker.model().moldMetalLayers;
  const std::int32_t layerCount = layersOf(worker, m_HEADER_NLayerMM, layers);
  worker.trace("NLayerMM = ", layerCount, ",NMatM = ", layers.size());
  worker.setCounts(m_HEADER_NLayerMM, {layerCount});  // without heater layers (quirk 25)
  if (!layers.empty()) worker.setCounts(m_HEADER_NMatM, {countOf(layers)});
  const bool flagged = worker.model().formatVersion >= kFirstFlagVersion;
  int index = 0;
  for (const LayerMaterial& layer : layers) {
    worker.writer.writeMoldMetalLayerBlockEntry(layer.materialId, layer.layerId, kNoName, 0, 0, 0,
                                                flagged ? layer.additionalFlag : 0);
    if (flagged)
      worker.trace(++index, ",MI MatID=", layer.materialId, ",LayerID=", layer.layerId,
                   ",LayerName=", layer.name, ",iadditionalFlag=", layer.additionalFlag);
  }
  const std::int32_t lastLayer = flagged ? largestLayer(layers) : 0;
  for (std::int32_t k = 1; k <= heaterLayers(worker); ++k) {
    const std::int32_t material = k + kHeaterMaterial;
    if (!flagged) worker.trace(k, ",Heater MatID=", material, ",LayerID=", k);
    worker.writer.writeMoldMetalLayerBlockEntry(material, wrappingSum(lastLayer, k), kNoName, 0, 0, 0, 0);
  }
}

void WriteOfeMoldMetalLayerToPartInsertLayerBin(COrvSolverMeshWriter& worker) {
  worker.trace("/// WriteOfeMoldMetalLayerToPartInsertLayerBin///");
  worker.banner("Writing Mold Metal Layer");
  const auto& layers = worker.model().moldMetalLayers;
  const bool flagged = worker.model().formatVersion >= kFirstFlagVersion;
  for (const LayerMaterial& layer : layers)
    worker.writer.writePartInsertLayerBlockEntry(insertLayerMaterial(layer.materialId), layer.layerId,
                                                 kNoName, 0, 0, 0, flagged ? layer.additionalFlag : 0);
}

void WriteOfePartInsertLayerBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Part Insert Layer");
  const auto& layers = worker.model().partInsertLayers;
  worker.setCounts(m_HEADER_NLayerPI, {layersOf(worker, m_HEADER_NLayerPI, layers)});
  for (const LayerMaterial& layer : layers)
    worker.writer.writePartInsertLayerBlockEntry(layer.materialId, layer.layerId, kNoName, 0, 0, 0, 0);
}

void WriteOfeCoolantChannelLayerBin(COrvSolverMeshWriter& worker) {
  worker.trace("/// WriteOfeCoolantChannelLayerBin///");
  worker.banner("Writing Coolant Channel Layer");
  for (const LayerMaterial& layer : worker.model().channelLayers)
    worker.writer.writeCoolantChannelLayerBlockEntry(layer.materialId, layer.layerId, kNoName);
}

}  // namespace orvmesh::transfer
