#pragma once

#include "orvmesh/export.h"

// An axis-aligned box that grows to take in points; empty when constructed (maxima -1e20, minima 1e20).
class ORVMESH_API CCheckBoundingBox {
 public:
  // Both take in a point, by one and the same rule; per axis: a value not below the maximum becomes the
  // maximum, else one not above the minimum becomes the minimum. So a call moves one bound of an axis at the
  // most: after its first point the box has no minimum yet and holds nothing, and points in ascending order
  // never give it one. Values that are no numbers change nothing.
  void SetMaxBoundingBox(double x, double y, double z);
  void SetMinBoundingBox(double x, double y, double z);
  // Moves both bounds of every axis outwards by percent / 100 of its extent; a negative percent shrinks it.
  void EnlargeBox(int percent);
  // Bounds included.
  bool IfInBoundingBox(double x, double y, double z) const;

 private:
  void SetBoundingBox(double x, double y, double z);

  double m_Max[3] = {-1e20, -1e20, -1e20};
  double m_Min[3] = {1e20, 1e20, 1e20};
};
