#include <orvmesh/check_bounding_box.h>

void CCheckBoundingBox::SetMaxBoundingBox(double x, double y, double z) { SetBoundingBox(x, y, z); }
void CCheckBoundingBox::SetMinBoundingBox(double x, double y, double z) { SetBoundingBox(x, y, z); }

void CCheckBoundingBox::SetBoundingBox(double x, double y, double z) {
  const double point[] = {x, y, z};
  for (int axis = 0; axis < 3; ++axis) {
    // One bound per call (quirk 50).
    if (point[axis] >= m_Max[axis])
      m_Max[axis] = point[axis];
    else if (m_Min[axis] >= point[axis])
      m_Min[axis] = point[axis];
  }
}

void CCheckBoundingBox::EnlargeBox(int percent) {
  const double part = percent * 0.01;
  for (int axis = 0; axis < 3; ++axis) {
    const double distance = (m_Max[axis] - m_Min[axis]) * part;
    m_Max[axis] += distance;
    m_Min[axis] -= distance;
  }
}

bool CCheckBoundingBox::IfInBoundingBox(double x, double y, double z) const {
  const double point[] = {x, y, z};
  for (int axis = 0; axis < 3; ++axis)
    if (!(m_Min[axis] <= point[axis] && point[axis] <= m_Max[axis])) return false;
  return true;
}
