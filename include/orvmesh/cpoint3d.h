#pragma once

// A point in space.
struct CPoint3d {
  double x = 0;
  double y = 0;
  double z = 0;
};
