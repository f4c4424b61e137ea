#include "transfer/blocks/surface_conditions.h"

#include <string>

#include "base/text_number.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

constexpr int kThicknessType = 7;

std::string thicknessText(const MeshModel& model, const SurfaceBCName& name) {
  std::string text;
  appendDefault(text, model.bcValues[static_cast<std::size_t>(name.valueIndex)] / model.lengthFactor);
  return text;
}

const std::vector<SurfaceBCName>& beginNames(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Write Ofe SurfElem BC Name Bin");
  const auto& names = worker.model().bcNames;
  worker.setCounts(m_HEADER_NSurfaceBCName, {static_cast<std::int32_t>(names.size())});
  return names;
}

void writeName(COrvSolverMeshWriter& worker, const SurfaceBCName& name, const OFEIO_Dictionary* dictionary) {
  worker.writer.writeSurfaceElementBoundaryConditionNameBlockEntry(name.name.c_str(), name.type, dictionary);
}

}  // namespace

void WriteOfeSurfElemBCBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing Surface Element Boundary Condition");
  const SurfaceTable& surfaces = worker.model().surfaces;
  if (!worker.found.surfaceNumbering) return;
  const auto& numbers = worker.found.surfaceNumbering->newNumber;
  std::int32_t written = 0;
  for (std::int32_t s = 1; s <= surfaces.count(); ++s) {
    if (!surfaces.hasList(s) || numbers[s] == 0) continue;
    ++written;
    const auto list = surfaces.list(s);
    worker.writer.writeSurfaceElementBoundaryConditionBlockEntry(numbers[s], static_cast<int>(list.size()),
                                                                 list.data());
  }
  worker.setCounts(m_HEADER_NSurfaceBC, {written});
}

void WriteOfeSurfElemBCNameBin(COrvSolverMeshWriter& worker) {
  for (const SurfaceBCName& name : beginNames(worker)) {
    OFEIO_Dictionary dictionary;
    const bool hasThickness = name.type == kThicknessType;
    if (hasThickness) dictionary.AddEntry("THICKNESS", thicknessText(worker.model(), name).c_str());
    writeName(worker, name, hasThickness ? &dictionary : nullptr);
  }
}

void WriteOfeSurfElemBCNameBin_HotRunner(COrvSolverMeshWriter& worker) {
  OFEIO_Dictionary dictionary;
  std::int32_t branchNumber = 0;  // a zero repeats the last non-zero one on purpose (quirk 20)
  int index = 0;
  for (const SurfaceBCName& name : beginNames(worker)) {
    if (name.branchNumber != 0) branchNumber = name.branchNumber;
    dictionary.AddEntry("BRANCH_ID", std::to_string(name.branchId).c_str());
    dictionary.AddEntry("BRANCH_OUTLET_ID", std::to_string(name.branchOutletId).c_str());
    dictionary.AddEntry("BRANCH_NUMBER", std::to_string(branchNumber).c_str());
    worker.trace(++index, "m_oOFE.m_pElemSurfBCName[iBC]=", name.name,
                 ",m_oOFE.m_pElemSurfBCType[iBC]=", name.type);
    writeName(worker, name, &dictionary);
  }
}

}  // namespace orvmesh::transfer
