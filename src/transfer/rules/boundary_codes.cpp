#include "transfer/rules/boundary_codes.h"

#include <cstring>

#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

void writeConditions(COrvSolverMeshWriter& worker, const char* banner, std::span<const BoundaryCode> codes) {
  worker.banner(banner);
  const auto& conditions = worker.model().conditions;
  worker.setCounts(m_HEADER_NBoundaryCondition, {conditions.count()});
  int type = 0;  // carried from condition to condition on purpose (quirk 10)
  for (std::int32_t i = 1; i <= conditions.count(); ++i) {
    const BoundaryCondition condition = conditions[i];
    type = boundaryType(codes, condition.code, type);
    worker.writer.writeBoundaryConditionBlockEntry(condition.entityNo, type,
                                                   static_cast<float>(condition.value));
  }
}

}  // namespace

int boundaryType(std::span<const BoundaryCode> codes, const char* code, int previousType) {
  for (const BoundaryCode& row : codes)
    if (std::strcmp(row.code, code) == 0) return row.type;
  return previousType;
}

void WriteOfeBCBin(COrvSolverMeshWriter& worker) {
  worker.trace("/// WriteOfeBCBin ///");
  writeConditions(worker, "Writing BC Bin", kBoundaryCodes);
}

void WriteOfeBCBin_CChannel(COrvSolverMeshWriter& worker) {
  writeConditions(worker, "Writing BC CChannel", kChannelBoundaryCodes);
}

std::string describeBoundaryCodes(std::span<const BoundaryCode> codes) {
  std::string text;
  for (const BoundaryCode& row : codes)
    text += "| " + std::string(row.code) + " | " + std::to_string(row.type) + " |\n";
  return text;
}

}  // namespace orvmesh::transfer
