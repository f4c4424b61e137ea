#pragma once

#include <cstdint>
#include <iosfwd>
#include <optional>
#include <vector>

#include "base/one_based.h"
#include "platform/mesh_records.h"

class COrvSolverMeshWriter;

// How each variant keeps, drops, renumbers and re-tags the faces of the source.
namespace orvmesh::transfer {

// A face as it is written: four nodes always, a triangle repeats its third.
struct Face {
  std::int32_t nodes[4];
  std::int32_t interfaceId;
  std::int32_t ownerCode;
  std::int32_t contactCode;
  std::int32_t boundaryType;
  std::int32_t elementNo;
  std::uint32_t tag;
};

// Everything that passes from one face to the next.
struct FaceCarry {
  std::uint32_t lastEndTag = 0;  // tag computed for the channel end before
  std::int32_t written = 0;
  const char* dropped = "";  // what the face is that the rule dropped, as the list of losses names it
};

// The face to write, or nothing when it is dropped.
using FaceRule = std::optional<Face> (*)(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                         FaceCarry& carry);

std::optional<Face> channelFace(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                FaceCarry& carry);
std::optional<Face> partInsertFace(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                   FaceCarry& carry);
std::optional<Face> partInsertAndChannelFace(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                             FaceCarry& carry);
std::optional<Face> hotRunnerFace(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                  FaceCarry& carry);
std::optional<Face> streamLineFace(const SurfaceElement& face, const COrvSolverMeshWriter& worker,
                                   FaceCarry& carry);

// The part face that a contact record becomes; nothing for one that is interior.
std::optional<Face> contactFace(const ContactFaceRecord& record);

// The face as stored, its nodes completed: a node 2 to 4 that is 0 repeats the one before it.
Face asStored(const SurfaceElement& face);

void writeFace(const Face& face, COrvSolverMeshWriter& worker);

// Group of a channel face for its tag: the inlet number of the tagged group when there is one, else
// boundaryType.
std::int32_t channelGroup(const SurfaceElement& face, const COrvSolverMeshWriter& worker);

// The surfaces that contact records name. A number beyond the list is reported and waits for a key, as the
// programs around this library expect; it marks nothing.
OneBasedArray<std::uint8_t> markContactSurfaces(const std::vector<ContactFaceRecord>& records,
                                                std::int32_t surfaces, std::ostream& console,
                                                std::istream& consoleInput);

void WriteOfeElemSurfBin_CChannel(COrvSolverMeshWriter& worker);
void WriteOfeElemSurfBin_PI(COrvSolverMeshWriter& worker);
void WriteOfeElemSurfBin_PIAndChannel(COrvSolverMeshWriter& worker);
void WriteOfeElemSurfBin_HotRunner(COrvSolverMeshWriter& worker);
void WriteOfeElemSurfBin_StreamLine(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
