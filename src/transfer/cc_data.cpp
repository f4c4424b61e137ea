#include "orvmesh/cc_data.h"

#include <cstddef>

// Makes what is missing, and makes anew what was made here for fewer entries; an array of the caller's stays.
template <class T>
void COrvCCData::create(std::shared_ptr<T[]>& array, int count, Made& made) {
  const bool tooSmall = array && array.get() == made.array && made.count < count;
  if (array && !tooSmall) return;
  array = std::shared_ptr<T[]>(new T[static_cast<std::size_t>(count) + 1]());
  made = {array.get(), count};
}

void COrvCCData::CreateNodeMemory() {
  create(m_NodeID, m_Dim, m_NodeMade[0]);
  for (int i = 0; i < 3; ++i) create(m_NodeData[i], m_Dim, m_NodeMade[1 + i]);
  create(m_NodeDataExtra, m_Dim, m_NodeMade[4]);
}

void COrvCCData::CreateSurfaceMemory() {
  create(m_SurfaceID, m_NSurface, m_SurfaceMade[0]);
  for (int i = 0; i < 3; ++i) create(m_SurfaceData[i], m_NSurface, m_SurfaceMade[1 + i]);
  create(m_SurfaceDataExtra, m_NSurface, m_SurfaceMade[4]);
}
