#pragma once

#include <array>
#include <span>
#include <string>

class COrvSolverMeshWriter;

// The two-letter codes of boundary conditions and the numbers they are written as.
namespace orvmesh::transfer {

struct BoundaryCode {
  const char* code;
  int type;
};

inline constexpr std::array<BoundaryCode, 6> kBoundaryCodes{
    {{"EM", 1}, {"EC", 2}, {"OM", 3}, {"PR", 4}, {"MW", 5}, {"SM", 6}}};
// EM and EC the other way round (quirk 8).
inline constexpr std::array<BoundaryCode, 6> kChannelBoundaryCodes{
    {{"EM", 2}, {"EC", 1}, {"OM", 3}, {"PR", 4}, {"MW", 5}, {"SM", 6}}};

// The type of a code; a code that the table does not know repeats the type before it.
int boundaryType(std::span<const BoundaryCode> codes, const char* code, int previousType);

void WriteOfeBCBin(COrvSolverMeshWriter& worker);
void WriteOfeBCBin_CChannel(COrvSolverMeshWriter& worker);

std::string describeBoundaryCodes(std::span<const BoundaryCode> codes);

}  // namespace orvmesh::transfer
