#include "transfer/variants.h"

#include <array>

#include "transfer/blocks/mesh_blocks.h"
#include "transfer/open_target.h"
#include "transfer/rules/boundary_codes.h"
#include "transfer/rules/face_rules.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

template <const ElementBlock& Block>
constexpr Step elements(const char* title) {
  return {title, [](COrvSolverMeshWriter& worker) { writeElements(Block, worker); }, "see below", &Block};
}

constexpr Step kNodes{"nodes", writeNodes, "every node"};
constexpr Step kConditions{"boundaryConditions", WriteOfeBCBin, "every condition"};

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
    kConditions,
};

constexpr std::array kPartInsertSteps{
    kNodes,
    elements<kElementsP_PartInsert>("elementsPlastic"),
    elements<kElementsM_PartInsert>("elementsMoldBase"),
    elements<kElementsC_PartInsert>("elementsCoolChannel"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_PI,
         "faces that no contact record names, then a part face per record of kind other than 0 and 3"},
    kConditions,
    Step{"badElementsMoldBase", writeBadMoldBase, "renumbered"},
    Step{"badElementsCoolChannel", writeBadChannel, "renumbered"},
};

constexpr std::array kPartInsertAndChannelSteps{
    kNodes,
    elements<kElementsP_PartInsert>("elementsPlastic"),
    elements<kElementsM_PartInsertAndChannel>("elementsMoldBase"),
    elements<kElementsC_PartInsertAndChannel>("elementsCoolChannel"),
    Step{"elementSurfaces", WriteOfeElemSurfBin_PIAndChannel,
         "the same without heater walls; heater ends become mold faces of type 1"},
    kConditions,
    Step{"badElementsPlastic", writeBadPlastic, "renumbered"},
    Step{"badElementsMoldBase", writeBadMoldBase, "renumbered"},
    Step{"badElementsCoolChannel", writeBadChannel, "renumbered"},
};

void traceNothing(COrvSolverMeshWriter&) {}

}  // namespace

const Variant kChannelOnly{"channels",   "TransferMesh_OnlyChannel", true,         kChannelHeader,
                           traceNothing, OpenReport::None,           kChannelSteps};
const Variant kHotRunnerOnly{
    "hot-runner",   "TransferMesh_OnlyHotRunner", true, kHotRunnerHeader, traceNothing, OpenReport::None,
    kHotRunnerSteps};
const Variant kStreamLine{
    "stream-line",   "TransferMesh_StreamLineMesh", true, kStreamLineHeader, traceNothing, OpenReport::None,
    kStreamLineSteps};
const Variant kMoldBaseOnly{"moldbase",          "TransferMesh_OnlyMoldbase", false,         kMoldBaseHeader,
                            traceMoldBaseHeader, OpenReport::LineWithPath,    kMoldBaseSteps};
const Variant kPartInsert{"part-inserts", "TransferMesh_CombinePI", false,           kPartInsertHeader,
                          traceNothing,   OpenReport::Line,         kPartInsertSteps};
const Variant kPartInsertAndChannel{"part-inserts-channels",
                                    "TransferMesh_CombinePIAndChannel",
                                    false,
                                    kPartInsertAndChannelHeader,
                                    traceChannelHeader,
                                    OpenReport::None,
                                    kPartInsertAndChannelSteps};

std::span<const Variant* const> allVariants() {
  static constexpr std::array<const Variant*, 6> kAll{
      &kChannelOnly, &kHotRunnerOnly, &kStreamLine, &kMoldBaseOnly, &kPartInsert, &kPartInsertAndChannel};
  return kAll;
}

int writeVariant(const Variant& variant, COrvSolverMeshWriter& worker, const char* target) {
  if (variant.announces) worker.banner("Writing Binary OFE data");
  applyHeaderRule(variant.header, worker);
  variant.traceHeader(worker);
  const int opened = openTarget(worker, target);
  if (opened != 1 && variant.openReport == OpenReport::Line) worker.print("Can not write OFE File");
  if (opened != 1 && variant.openReport == OpenReport::LineWithPath)
    worker.print("Can not write OFE File at", target);
  // A target that did not open takes nothing, and every block is still offered (quirk 12).
  for (const Step& step : variant.steps) step.run(worker);
  if (&variant == &kMoldBaseOnly) worker.trace("/// WriteData_OnlyMoldbase OK ///");
  return worker.writer.endWriting();
}

}  // namespace orvmesh::transfer
