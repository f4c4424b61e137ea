#pragma once

// A point in space; handed across the exported interface.
struct CPoint3d {
  double x = 0;
  double y = 0;
  double z = 0;
};
