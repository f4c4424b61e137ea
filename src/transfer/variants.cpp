#include "transfer/variants.h"

#include <array>

#include "transfer/blocks/channel_blocks.h"
#include "transfer/blocks/geometry_blocks.h"
#include "transfer/blocks/layers.h"
#include "transfer/blocks/mesh_blocks.h"
#include "transfer/blocks/sensors.h"
#include "transfer/blocks/surface_conditions.h"
#include "transfer/open_target.h"
#include "transfer/rules/boundary_codes.h"
#include "transfer/rules/face_rules.h"
#include "transfer/rules/mold_base_faces.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

template <const ElementBlock& Block>
constexpr Step elements(const char* title) {
  return {title, [](COrvSolverMeshWriter& worker) { writeElements(Block, worker); }, "see below", &Block};
}

constexpr Step kNodes{"nodes", writeNodes, "every node"};
constexpr Step kConditions{"boundaryConditions", WriteOfeBCBin, "every condition"};
constexpr Step kDiameters{
    "coolantChannelDiameters", WriteOfeElemCCLBin,
    "every entry that touches no heater node; an entry of fewer nodes ends with those of "
    "the entry before"};
constexpr Step kLines{"coolantChannelLines", WriteOfeElemCCLineBin, "both ends of every line"};
constexpr Step kLayout{"coolantChannelLayout", WriteOfeBeamElemCCLBin,
                       "every point, then every segment at the place of the last point"};
constexpr Step kBadMold{"badElementsMoldBase", writeBadMoldBase, "renumbered"};
constexpr Step kBadChannel{"badElementsCoolChannel", writeBadChannel, "renumbered"};
constexpr Step kJoinedSensors{"sensors", writeJoinedSensors,
                              "part, then inserts as part; the other mold sensors as kinds 4 and 5, or as 1 "
                              "and 2 when source field 2 is "
                              "not 0; elements and surfaces renumbered"};
constexpr Step kMoldInserts{"moldMetal", WriteOfeMoldInsertDataBin, "every point, then every face"};
constexpr Step kSurfaceConditions{"surfaceBoundaryConditions", WriteOfeSurfElemBCBin,
                                  "lists of surfaces that have a new number"};
constexpr Step kThicknessNames{"surfaceBoundaryConditionNames", WriteOfeSurfElemBCNameBin,
                               "every name; type 7 with THICKNESS"};
constexpr Step kMoldLayers{"moldMetalLayers", WriteOfeMoldMetalLayerBin,
                           "every material, then one layer per heater group; flags from version 2012 on"};
constexpr Step kInsertLayers{"partInsertLayers", WriteOfePartInsertLayerBin, "every material"};
constexpr Step kChannelLayers{"coolantChannelLayers", WriteOfeCoolantChannelLayerBin, "every material"};
constexpr Step kChannelSurface{"coolingChannelSurface", WriteOfeCoolingChannelSurfaceBin,
                               "every point, then every face"};

constexpr std::array kChannelSteps{
    kNodes,
    elements<kElements_Channel>("elementsPlastic"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_CChannel,
         "interface 3 and 4, as interface 1; ends tagged with their inlet, walls with the tag of the end "
         "before"},
    Step{"boundaryConditions", WriteOfeBCBin_CChannel, "every condition, EM and EC swapped"},
};

constexpr std::array kHotRunnerSteps{
    kNodes,
    elements<kElementsP_HotRunner>("elementsPlastic"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_HotRunner,
         "interface 1 of type 1, 2, 4, 5, 13 or with gate bits; gates renumbered, lost gates dropped"},
    kConditions,
    kSurfaceConditions,
    Step{"surfaceBoundaryConditionNames", WriteOfeSurfElemBCNameBin_HotRunner,
         "every name with its branch; branch number 0 repeats the one before"},
    Step{"partingDirection", writePartingDirection, "one entry"},
};

constexpr std::array kStreamLineSteps{
    kNodes,
    elements<kElementsP_StreamLine>("elementsPlastic"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_StreamLine,
         "every face, the contact code in both places; part faces of type 5 become type 7"},
};

constexpr std::array kMoldBaseSteps{
    kNodes,
    Step{"elementsPlastic", WriteOfeElemPBin_OnlyMoldbase, "see below", &kElementsP_MoldBase},
    Step{"elementSurfaces", WriteOfeElemSurfBin_OnlyMoldbase,
         "as interface 1 by what they touch: part, channel (tag of the group, 100 diameters as element) or "
         "air; "
         "part faces without contact or of type 1, 6 and above dropped"},
    kConditions,
    Step{"sensors", WriteOfeSensorBin_OnlyMoldbase,
         "mold element sensors as kind 1, mold node sensors as kind 2"},
    kLayout,
    Step{"partInsertLayers", WriteOfeMoldMetalLayerToPartInsertLayerBin,
         "every mold metal material m: 2..4999 as m + 5000, above 6000 as m - 4000"},
    kChannelLayers,
};

constexpr std::array kPartInsertSteps{
    kNodes,
    elements<kElementsP_PartInsert>("elementsPlastic"),
    elements<kElementsM_PartInsert>("elementsMoldBase"),
    elements<kElementsC_PartInsert>("elementsCoolChannel"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_PI,
         "faces that no contact record names, then a part face per record of kind other than 0 and 3"},
    kConditions,
    kDiameters,
    kBadMold,
    kBadChannel,
    kLines,
    kJoinedSensors,
    kMoldInserts,
    kLayout,
    kSurfaceConditions,
    kThicknessNames,
    kMoldLayers,
    kInsertLayers,
    kChannelLayers,
    kChannelSurface,
};

constexpr std::array kPartInsertAndChannelSteps{
    kNodes,
    elements<kElementsP_PartInsert>("elementsPlastic"),
    elements<kElementsM_PartInsertAndChannel>("elementsMoldBase"),
    elements<kElementsC_PartInsertAndChannel>("elementsCoolChannel"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_PIAndChannel,
         "the same without heater walls; heater ends become mold faces of type 1"},
    kConditions,
    kDiameters,
    Step{"badElementsPlastic", writeBadPlastic, "renumbered"},
    kBadMold,
    kBadChannel,
    kLines,
    kJoinedSensors,
    kMoldInserts,
    kLayout,
    kSurfaceConditions,
    kThicknessNames,
    kMoldLayers,
    kInsertLayers,
    kChannelLayers,
    kChannelSurface,
};

void traceNothing(COrvSolverMeshWriter&) {}

}  // namespace

const Variant kChannelOnly{"channels",   "TransferMesh_OnlyChannel", true,  kChannelHeader,
                           traceNothing, OpenReport::None,           false, kChannelSteps};
const Variant kHotRunnerOnly{"hot-runner", "TransferMesh_OnlyHotRunner",
                             true,         kHotRunnerHeader,
                             traceNothing, OpenReport::None,
                             false,        kHotRunnerSteps};
const Variant kStreamLine{"stream-line", "TransferMesh_StreamLineMesh",
                          true,          kStreamLineHeader,
                          traceNothing,  OpenReport::None,
                          false,         kStreamLineSteps};
const Variant kMoldBaseOnly{"moldbase",
                            "TransferMesh_OnlyMoldbase",
                            false,
                            kMoldBaseHeader,
                            traceMoldBaseHeader,
                            OpenReport::LineWithPath,
                            true,
                            kMoldBaseSteps,
                            "/// WriteData_OnlyMoldbase OK ///"};
const Variant kPartInsert{"part-inserts", "TransferMesh_CombinePI", false, kPartInsertHeader,
                          traceNothing,   OpenReport::Line,         true,  kPartInsertSteps};
const Variant kPartInsertAndChannel{"part-inserts-channels",
                                    "TransferMesh_CombinePIAndChannel",
                                    false,
                                    kPartInsertAndChannelHeader,
                                    traceChannelHeader,
                                    OpenReport::None,
                                    true,
                                    kPartInsertAndChannelSteps};

std::span<const Variant* const> allVariants() {
  static constexpr std::array<const Variant*, 6> kAll{
      &kChannelOnly, &kHotRunnerOnly, &kStreamLine, &kMoldBaseOnly, &kPartInsert, &kPartInsertAndChannel};
  return kAll;
}

int writeVariant(const Variant& variant, COrvSolverMeshWriter& worker, const char* target) {
  if (variant.announces) worker.banner("Writing Binary OFE data");
  worker.headerRule = &variant.header;
  applyHeaderRule(variant.header, worker);
  variant.traceHeader(worker);
  const int opened = openTarget(worker, target);
  if (opened != 1 && variant.openReport == OpenReport::Line) worker.print("Can not write OFE File");
  if (opened != 1 && variant.openReport == OpenReport::LineWithPath)
    worker.print("Can not write OFE File at", target);
  // A target that did not open takes nothing, and every block is still offered (quirk 12).
  for (const Step& step : variant.steps) step.run(worker);
  if (!variant.carriesSensors) dropSensors(worker);
  if (variant.closingTrace != nullptr) worker.trace(variant.closingTrace);
  return worker.stops() ? 0 : worker.writer.endWriting();
}

}  // namespace orvmesh::transfer
