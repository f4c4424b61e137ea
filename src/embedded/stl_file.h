#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace orvmesh::embedded {

// A binary STL drawing in memory: triangles of floats.
class StlDrawing {
 public:
  struct Point {
    float x, y, z;
  };

  void triangle(const Point& a, const Point& b, const Point& c);
  bool empty() const { return corners_.empty(); }
  // Writes the file, whole or not at all. False when it cannot be written; one without triangles is written
  // on demand only.
  bool write(const std::string& path, bool evenEmpty = false) const;

 private:
  std::vector<Point> corners_;  // three per triangle
};

}  // namespace orvmesh::embedded
