#include <orvmesh/cooling_channel_surface.h>

#include <exception>
#include <iostream>

#include "channel/channel_surface.h"

using orvmesh::channel::ChannelSurface;
using Class = COrvMeshTrans_GetCoolingChannelFromElementSurface;

Class::COrvMeshTrans_GetCoolingChannelFromElementSurface() = default;
Class::~COrvMeshTrans_GetCoolingChannelFromElementSurface() = default;
Class::COrvMeshTrans_GetCoolingChannelFromElementSurface(const Class&) = default;
Class& Class::operator=(const Class&) = default;

int Class::SetOFEFile(const char* path) try {
  const auto surface = std::make_shared<ChannelSurface>();
  m_ErrorMessage.clear();
  const int result =
      readChannelSurface(path, {&std::cout, m_Verbose != 0 ? &std::cout : nullptr}, *surface, m_ErrorMessage);
  std::cout.flush();
  if (result > 0) m_Surface = surface;
  return result > 0 ? 1 : result;
} catch (const std::exception&) {
  m_ErrorMessage = "out of memory";
  return 0;
}

void Class::GetBrisk_STL_NNodeCCL(int& n) const { n = m_Surface ? m_Surface->nodeCount() : 0; }
void Class::GetBrisk_STL_NElemtCCL(int& n) const { n = m_Surface ? m_Surface->faceCount() : 0; }
void Class::GetBrisk_STL_NCCGroups(int& n) const { n = m_Surface ? m_Surface->groups : 0; }

void Class::GetBrisk_STL_CCNodeData(CPoint3d* pts) const {
  if (!m_Surface || pts == nullptr) return;
  const float* at = m_Surface->xyz.data();
  for (std::int32_t k = 1; k <= m_Surface->nodeCount(); ++k, at += 3) pts[k] = {at[0], at[1], at[2]};
}

void Class::GetBrisk_STL_CCNodeData(double* x, double* y, double* z) const {
  if (!m_Surface || x == nullptr || y == nullptr || z == nullptr) return;
  const float* at = m_Surface->xyz.data();
  for (std::int32_t k = 1; k <= m_Surface->nodeCount(); ++k, at += 3) {
    x[k] = at[0];
    y[k] = at[1];
    z[k] = at[2];
  }
}

void Class::GetBrisk_STL_CCLElemData(int** elems) const {
  if (!m_Surface || elems == nullptr) return;
  for (std::int32_t i = 1; i <= m_Surface->faceCount(); ++i) {
    if (elems[i] == nullptr) continue;
    const auto face = static_cast<std::size_t>(i) - 1;
    elems[i][0] = m_Surface->vertexCount[face];
    for (std::size_t k = 0; k < 4; ++k) elems[i][1 + k] = m_Surface->nodes[4 * face + k];
    elems[i][5] = m_Surface->group[face];
  }
}

void Class::GetBrisk_STL_CCLElemData(int* group, int* kind) const {
  if (!m_Surface || group == nullptr || kind == nullptr) return;
  std::copy(m_Surface->group.begin(), m_Surface->group.end(), group + 1);
  std::copy(m_Surface->kind.begin(), m_Surface->kind.end(), kind + 1);
}

// Fills nothing (quirk 55).
void Class::GetBrisk_CCSurfNode2GlobalNodeID(int*) const {}

int Class::GetBrisk_STL_MarkerPoint_TotalPointNumber() const {
  return m_Surface ? m_Surface->markers.count() : 0;
}

void Class::GetBrisk_STL_MarkerPoint_PointCoordinate_Link(int*& kind, double*& x, double*& y, double*& z,
                                                          double*& diameter) const {
  if (GetBrisk_STL_MarkerPoint_TotalPointNumber() <= 0) return;
  auto& markers = m_Surface->markers;
  kind = markers.kind.data();
  x = markers.x.data();
  y = markers.y.data();
  z = markers.z.data();
  diameter = markers.diameter.data();
}

const char* Class::GetErrorMessage_Link() const { return m_ErrorMessage.c_str(); }
