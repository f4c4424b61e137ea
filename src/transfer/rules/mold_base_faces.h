#pragma once

#include <array>
#include <functional>

#include "platform/mesh_records.h"
#include "transfer/prepass/diameter_index.h"
#include "transfer/rules/face_rules.h"

// The faces of the mold-base mesh, sorted by what they touch.
namespace orvmesh::transfer {

// What a mold face touches.
struct FaceContact {
  enum Kind : int { Nothing = 0, Part = 1, Channel = 3 } kind = Nothing;
  std::int32_t element = 0;             // of the part or the channel
  std::array<std::int32_t, 4> nodes{};  // its face, in its own numbers
};
using ContactQuestion = std::function<FaceContact(const std::int32_t (&nodes)[4])>;

// How many faces fell into each class.
struct FaceClassCounts {
  int part = 0, air = 0, coolant = 0, outlet = 0;
  std::array<int, 5> interface {};  // by interface ID 1 to 4
  int moldPart = 0, moldCoolant = 0, moldAir = 0;
};

// A face, the class it was drawn into, and how the list of losses names it (null: it is written).
struct ClassifiedFace {
  Face face;
  int drawing;
  const char* dropped = nullptr;
};

// Decides one face. contact is asked about faces of interface 2 only.
class MoldBaseFaceRule {
 public:
  MoldBaseFaceRule(const COrvSolverMeshWriter& worker, ContactQuestion contact);
  ClassifiedFace classify(const SurfaceElement& stored);
  const FaceClassCounts& counts() const { return counts_; }

 private:
  ClassifiedFace partFace(const SurfaceElement& stored, Face face);
  ClassifiedFace moldFace(const SurfaceElement& stored, Face face);
  ClassifiedFace channelFace(const SurfaceElement& stored, Face face);
  void tagChannel(Face& face, std::int32_t group, const std::int32_t* diameterNodes) const;

  const COrvSolverMeshWriter& worker_;
  ContactQuestion contact_;
  DiameterIndex diameters_;
  bool tagged_;  // the source is new enough for its tags to count
  FaceClassCounts counts_;
};

void WriteOfeElemSurfBin_OnlyMoldbase(COrvSolverMeshWriter& worker);

}  // namespace orvmesh::transfer
