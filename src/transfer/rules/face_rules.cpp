#include "transfer/rules/face_rules.h"

#include <algorithm>

#include "base/face_tag.h"
#include "base/ranges.h"
#include "transfer/prepass/hot_runner.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

// Boundary types that a hot-runner mesh keeps: 1, 2, 4, 5, 13.
constexpr std::uint32_t kHotRunnerTypes = 0x2036;
constexpr bool isHotRunnerType(std::int32_t type) {
  return 0 <= type && type < 14 && ((kHotRunnerTypes >> type) & 1U) != 0;
}

constexpr std::int32_t kGateType = 7;

std::optional<Face> dropped(const char* what, FaceCarry& carry) {
  carry.dropped = what;
  return std::nullopt;
}

std::optional<Face> channelEnd(Face face, const SurfaceElement& stored, const COrvSolverMeshWriter& worker,
                               FaceCarry& carry) {
  const bool inlet = stored.contactCode == 1;
  const bool hose = stored.contactCode == 0;
  face.contactCode = 1;
  face.boundaryType = inlet ? 1 : hose ? 7 : 0;
  face.tag = inlet ? coolantTag(channelGroup(stored, worker)) : stored.tag;
  carry.lastEndTag = face.tag;
  return face;
}

// Tag and type of a hot-runner face of any type but 1; nothing when its gate or its element is not part of
// the mesh.
std::optional<Face> retaggedHotRunnerFace(Face face, const SurfaceElement& stored,
                                          const COrvSolverMeshWriter& worker, FaceCarry& carry) {
  const GateNumbers& gates = worker.found.gates;
  const std::int32_t group = tagGroup(stored.tag);
  if (isCommonGateTag(stored.tag)) {
    const std::int32_t number = GateNumbers::find(gates.common, group);
    if (number < 1) return dropped("gate faces without a number among the hot runner's gates", carry);
    face.tag = withGroup(stored.tag, number);
    face.boundaryType = kGateType;
  } else if (isHotColdGateTag(stored.tag)) {
    // Written whatever the look-up gives (quirk 15).
    face.tag = withGroup(stored.tag, GateNumbers::find(gates.hotCold, group));
    face.boundaryType = kGateType;
  } else if (stored.boundaryType == 5) {
    if (!ownerGroupIn(worker.model(), stored, kHotRunnerFaceGroup))
      return dropped("surface elements of type 5 outside the hot runner", carry);
    face.tag = 8;
  } else {
    face.tag = 1;
    face.boundaryType = 0;
  }
  return face;
}

// Every surface element through the rule. wanted(s) leaves surfaces out beforehand; written(s, n) learns that
// surface s was written as the n-th face.
template <class Wanted, class Written>
void writeFaces(COrvSolverMeshWriter& worker, FaceRule rule, Wanted wanted, Written written) {
  const SurfaceTable& surfaces = worker.model().surfaces;
  FaceCarry carry;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    if (!wanted(s)) continue;
    const auto face = rule(surfaces[s], worker, carry);
    if (!face) {
      worker.noteDropped(carry.dropped);
      continue;
    }
    written(s, ++carry.written);
    writeFace(*face, worker);
    if (worker.numbers) worker.numbers->surfaceWritten(s);
  }
}

void writeAllFaces(COrvSolverMeshWriter& worker, FaceRule rule) {
  writeFaces(
      worker, rule, [](std::int32_t) { return true; }, [](std::int32_t, std::int32_t) {});
}

void writeContactFaces(COrvSolverMeshWriter& worker) {
  for (const ContactFaceRecord& record : worker.contactFaces())
    if (const auto face = contactFace(record)) writeFace(*face, worker);
}

void writeJoinedFaces(COrvSolverMeshWriter& worker, FaceRule rule) {
  worker.banner("Writing ElemSurf PI");
  const auto marks = markContactSurfaces(worker.contactFaces(), worker.model().surfaces.count(),
                                         worker.console, worker.consoleInput);
  const auto isWritten = [&](std::int32_t s) {
    if (marks[s] == 0) return true;
    worker.noteDropped("surface elements between part and insert, now inside the part");
    return false;
  };
  writeFaces(worker, rule, isWritten, [](std::int32_t, std::int32_t) {});
  writeContactFaces(worker);
}

}  // namespace

Face asStored(const SurfaceElement& face) {
  Face out{{face.nodes[0], face.nodes[1], face.nodes[2], face.nodes[3]},
           face.interfaceId,
           face.ownerCode,
           face.contactCode,
           face.boundaryType,
           face.elementNo,
           face.tag};
  for (int i = 1; i < 4; ++i)
    if (out.nodes[i] == 0) out.nodes[i] = out.nodes[i - 1];
  return out;
}

std::optional<Face> contactFace(const ContactFaceRecord& record) {
  if (record.faceType == 0 || record.faceType == 3) return std::nullopt;
  Face face{{}, 1, record.faceOwner, record.faceType, 0, 0, 1};
  std::copy_n(record.nodes + 1, 4, face.nodes);
  return face;
}

void writeFace(const Face& face, COrvSolverMeshWriter& worker) {
  worker.writer.writeElementSurfaceBlockEntry(face.nodes, face.interfaceId, face.ownerCode, face.contactCode,
                                              face.boundaryType, face.elementNo, static_cast<int>(face.tag));
}

std::int32_t channelGroup(const SurfaceElement& face, const COrvSolverMeshWriter& worker) {
  const std::int32_t group = tagGroup(face.tag);
  const auto& inlets = worker.found.inlets;
  if (kTaggedGroup.holds(group) && static_cast<std::size_t>(group) < inlets.size())
    return inlets[static_cast<std::size_t>(group)];
  return face.boundaryType;
}

OneBasedArray<std::uint8_t> markContactSurfaces(const std::vector<ContactFaceRecord>& records,
                                                std::int32_t surfaces, std::ostream& console,
                                                std::istream& consoleInput) {
  OneBasedArray<std::uint8_t> marks(surfaces);
  int index = 0;
  for (const ContactFaceRecord& record : records) {
    ++index;
    if (record.surfaceNo > surfaces) {
      console << index << "SurID=" << record.surfaceNo << std::endl;
      (void)consoleInput.get();
    } else if (record.surfaceNo > 0) {
      marks[record.surfaceNo] = 1;
    }
  }
  return marks;
}

std::optional<Face> channelFace(const SurfaceElement& stored, const COrvSolverMeshWriter& worker,
                                FaceCarry& carry) {
  if (stored.interfaceId != 3 && stored.interfaceId != 4)
    return dropped("surface elements that are no channel faces", carry);
  Face face = asStored(stored);
  face.interfaceId = 1;
  face.ownerCode = 1;
  if (stored.interfaceId == 4) return channelEnd(face, stored, worker, carry);
  // A wall face repeats the tag of the channel end before it on purpose (quirk 6).
  face.boundaryType = 0;
  face.tag = carry.lastEndTag;
  return face;
}

std::optional<Face> partInsertFace(const SurfaceElement& stored, const COrvSolverMeshWriter&, FaceCarry&) {
  return asStored(stored);
}

std::optional<Face> partInsertAndChannelFace(const SurfaceElement& stored, const COrvSolverMeshWriter& worker,
                                             FaceCarry& carry) {
  if (stored.interfaceId == 3 && stored.ownerCode == 2)
    return dropped("surface elements of heater walls, now inside the mold", carry);
  Face face = asStored(stored);
  const auto& heaters = worker.found.heaters;
  if (stored.interfaceId == 4 && heaters && heaters->isHeaterElement(stored.elementNo)) {
    face.interfaceId = 2;
    face.boundaryType = 1;
  }
  return face;
}

std::optional<Face> hotRunnerFace(const SurfaceElement& stored, const COrvSolverMeshWriter& worker,
                                  FaceCarry& carry) {
  if (stored.interfaceId != 1) return dropped("surface elements of mold and channels", carry);
  const bool gateBits = tagBit(stored.tag, 1) && tagBit(stored.tag, 2);
  if (!isHotRunnerType(stored.boundaryType) && !gateBits)
    return dropped("surface elements of the part", carry);
  Face face = asStored(stored);
  const auto& numbers = worker.found.hotRunnerElements;
  const bool known = 1 <= stored.elementNo && stored.elementNo <= numbers.count();
  face.elementNo = known ? numbers[stored.elementNo] : 0;
  return stored.boundaryType == 1 ? face : retaggedHotRunnerFace(face, stored, worker, carry);
}

std::optional<Face> streamLineFace(const SurfaceElement& stored, const COrvSolverMeshWriter&, FaceCarry&) {
  Face face = asStored(stored);
  face.ownerCode = stored.contactCode;  // the stored owner code is not written (quirk 7)
  if (stored.interfaceId == 1 && stored.boundaryType == 5) face.boundaryType = 7;
  return face;
}

void WriteOfeElemSurfBin_CChannel(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Elem Surface CChannel");
  writeAllFaces(worker, channelFace);
}

void WriteOfeElemSurfBin_PI(COrvSolverMeshWriter& worker) { writeJoinedFaces(worker, partInsertFace); }

void WriteOfeElemSurfBin_PIAndChannel(COrvSolverMeshWriter& worker) {
  writeJoinedFaces(worker, partInsertAndChannelFace);
}

void WriteOfeElemSurfBin_HotRunner(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Elem Surface Hot runner");
  auto& numbering = worker.found.surfaceNumbering;
  if (!numbering) {
    numbering.emplace();
    numbering->newNumber = OneBasedArray<std::int32_t>(worker.model().surfaces.count());
  }
  writeFaces(
      worker, hotRunnerFace, [](std::int32_t) { return true; },
      [&](std::int32_t s, std::int32_t n) { numbering->newNumber[s] = n; });
}

void WriteOfeElemSurfBin_StreamLine(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Elem Surface CChannel");
  writeAllFaces(worker, streamLineFace);
}

}  // namespace orvmesh::transfer
