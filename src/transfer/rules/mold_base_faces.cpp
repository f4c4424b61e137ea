#include "transfer/rules/mold_base_faces.h"

#include <algorithm>
#include <limits>
#include <memory>
#include <utility>

#include "base/face_tag.h"
#include "platform/contact_surface.h"
#include "transfer/blocks/mesh_blocks.h"
#include "transfer/rules/face_drawings.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

constexpr int kFirstTaggedVersion = 2009;

// The part of a double that fits a 32-bit number, toward zero.
std::int32_t truncated(double value) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (!(value > Limits::min())) return Limits::min();
  return value < Limits::max() ? static_cast<std::int32_t>(value) : Limits::max();
}

// The builder reads the file anew: an element that the model does not know is none.
FaceContact askBuilder(COFEPatch_ElementSurface& builder, const MeshModel& model,
                       const std::int32_t (&nodes)[4]) {
  int asked[4];
  std::copy_n(nodes, 4, asked);
  FaceContact contact;
  int matched[4] = {};
  const int kind = builder.GetIfMolbaseFaceContact(asked, contact.element, matched);
  if (kind == FaceContact::Part && model.elemP.holds(contact.element)) contact.kind = FaceContact::Part;
  if (kind == FaceContact::Channel && model.elemC.holds(contact.element)) contact.kind = FaceContact::Channel;
  std::copy_n(matched, 4, contact.nodes.begin());
  return contact;
}

void reportCounts(COrvSolverMeshWriter& worker, const FaceClassCounts& counts) {
  worker.print("Total SurfElemt=", worker.writer.header[m_HEADER_NElemS], " )");
  worker.print("count_Part     =", counts.part);
  worker.print(", count_Air    =", counts.air);
  worker.print(", count_Coolant=", counts.coolant);
  worker.print(", count_Outlet =", counts.outlet);
  worker.print("");
  worker.print("  count_interfaceID_1=", counts.interface[1]);
  worker.print(", count_interfaceID_2=", counts.interface[2]);
  worker.print("  ( count_MB_Part   =", counts.moldPart);
  worker.print("    count_MB_Coolant=", counts.moldCoolant);
  worker.print("    count_MB_Air    =", counts.moldAir, " ) ");
  worker.print(", count_interfaceID_3=", counts.interface[3]);
  worker.print(", count_interfaceID_4=", counts.interface[4]);
}

void writeClassifiedFaces(COrvSolverMeshWriter& worker, MoldBaseFaceRule& rule, FaceDrawings* drawings) {
  const SurfaceTable& surfaces = worker.model().surfaces;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    const ClassifiedFace classified = rule.classify(surfaces[s]);
    if (drawings != nullptr) {
      drawings->draw(FaceDrawings::AllFaces, classified.face.nodes);
      drawings->draw(classified.drawing, classified.face.nodes);
    }
    if (classified.dropped != nullptr) {
      worker.noteDropped(classified.dropped);
      continue;
    }
    writeFace(classified.face, worker);
    if (worker.numbers) worker.numbers->surfaceWritten(s);
  }
}

}  // namespace

MoldBaseFaceRule::MoldBaseFaceRule(const COrvSolverMeshWriter& worker, ContactQuestion contact)
    : worker_(worker),
      contact_(std::move(contact)),
      diameters_(worker.model().diameters),
      tagged_(worker.model().formatVersion >= kFirstTaggedVersion) {}

ClassifiedFace MoldBaseFaceRule::classify(const SurfaceElement& stored) {
  Face face = asStored(stored);
  if (!tagged_) face.tag = 0;
  if (1 <= stored.interfaceId && stored.interfaceId <= 4 && stored.interfaceId != 1)
    ++counts_.interface[static_cast<std::size_t>(stored.interfaceId)];
  switch (stored.interfaceId) {
    case 1:
      return partFace(stored, face);
    case 2:
      return moldFace(stored, face);
    case 3:
      return channelFace(stored, face);
    case 4:
      ++counts_.outlet;
      return {face, FaceDrawings::ChannelEnd};
    default:
      return {face, FaceDrawings::UnknownInterface};
  }
}

ClassifiedFace MoldBaseFaceRule::partFace(const SurfaceElement& stored, Face face) {
  if (stored.contactCode == 0) return {face, FaceDrawings::PartUnmatched, "part faces that touch nothing"};
  if (stored.boundaryType == 1 || stored.boundaryType >= 6)
    return {face, FaceDrawings::PartOtherType, "part faces of type 1 or above 5 (hot runner and gates)"};
  ++counts_.part;
  ++counts_.interface[1];
  face.boundaryType = 0;
  return {face, FaceDrawings::PartWritten};
}

ClassifiedFace MoldBaseFaceRule::moldFace(const SurfaceElement& stored, Face face) {
  const FaceContact contact = contact_(face.nodes);
  face.interfaceId = 1;
  if (contact.kind == FaceContact::Nothing) {
    ++counts_.air;
    ++counts_.moldAir;
    face.boundaryType = 5;
    return {face, FaceDrawings::Air};
  }
  // The face changes sides: what it touched owns it now.
  face.contactCode = stored.ownerCode;
  if (contact.kind == FaceContact::Part) {
    ++counts_.part;
    ++counts_.moldPart;
    face.ownerCode = worker_.model().elemP.material(contact.element);
    face.boundaryType = 0;
    return {face, FaceDrawings::TouchesPart};
  }
  ++counts_.coolant;
  ++counts_.moldCoolant;
  face.ownerCode = worker_.model().elemC.material(contact.element);
  tagChannel(face, worker_.model().elemC.group(contact.element), contact.nodes.data());
  return {face, FaceDrawings::OnChannel};
}

ClassifiedFace MoldBaseFaceRule::channelFace(const SurfaceElement& stored, Face face) {
  ++counts_.coolant;
  face.interfaceId = 1;
  // By the stored tag, also where older versions drop it (quirk 23).
  tagChannel(face, channelGroup(stored, worker_), face.nodes);
  return {face, FaceDrawings::OnChannel};
}

void MoldBaseFaceRule::tagChannel(Face& face, std::int32_t group, const std::int32_t* diameterNodes) const {
  face.tag = coolantTag(group);
  // The solver reads the channel's size where other faces name their element (quirk 24).
  face.elementNo = truncated(diameters_.find(diameterNodes) * 100.0);
  face.boundaryType = 1;
}

void WriteOfeElemSurfBin_OnlyMoldbase(COrvSolverMeshWriter& worker) {
  const auto traceStep = [&](const auto&... text) {
    worker.trace("WriteOfeElemSurfBin_OnlyMoldbase() ", text...);
  };
  worker.trace("/// WriteOfeElemSurfBin_OnlyMoldbase ///");
  worker.banner("Writing Elem Surface Moldbase");
  traceStep("1");
  if (worker.stlDiagnostics && !worker.drawings)
    worker.drawings = std::make_shared<FaceDrawings>(worker.model().nodes, inverseLengthFactor(worker));
  FaceDrawings* const drawings = worker.stlDiagnostics ? worker.drawings.get() : nullptr;
  traceStep("2 create surface relation from ", worker.path());
  COFEPatch_ElementSurface builder;
  if (builder.CreateContactSurface(worker.path().c_str()) != 1) worker.noteLost("contact faces");
  traceStep("3");
  MoldBaseFaceRule rule(worker,
                        [&](const auto& nodes) { return askBuilder(builder, worker.model(), nodes); });
  writeClassifiedFaces(worker, rule, drawings);
  traceStep("4");
  if (drawings != nullptr) {
    reportCounts(worker, rule.counts());
    drawings->write(worker.path());
  }
  traceStep("5");
}

}  // namespace orvmesh::transfer
