#include "platform/draw_stl.h"

#include <algorithm>
#include <cmath>

#include "embedded/stl_file.h"

using orvmesh::embedded::StlDrawing;

namespace {

StlDrawing::Point pointAt(double x, double y, double z) {
  return {static_cast<float>(x), static_cast<float>(y), static_cast<float>(z)};
}

}  // namespace

struct COrvDrawSTLTool::Implementation {
  const float* x = nullptr;
  const float* y = nullptr;
  const float* z = nullptr;
  StlDrawing drawing;

  StlDrawing::Point at(int node) const { return {x[node], y[node], z[node]}; }
};

COrvDrawSTLTool::COrvDrawSTLTool() : implementation_(std::make_unique<Implementation>()) {}
COrvDrawSTLTool::~COrvDrawSTLTool() = default;

void COrvDrawSTLTool::SetNode(float*& x, float*& y, float*& z) {
  implementation_->x = x;
  implementation_->y = y;
  implementation_->z = z;
}

void COrvDrawSTLTool::SetFace20(int nodeCount, int* nodes) {
  const Implementation& i = *implementation_;
  if (i.x == nullptr || nodeCount < 3 || nodeCount > 4) return;
  implementation_->drawing.triangle(i.at(nodes[1]), i.at(nodes[2]), i.at(nodes[3]));
  if (nodeCount == 4 && nodes[4] != nodes[3])
    implementation_->drawing.triangle(i.at(nodes[1]), i.at(nodes[3]), i.at(nodes[4]));
}

int COrvDrawSTLTool::OutputFile(const char* path) { return implementation_->drawing.write(path) ? 1 : 0; }

struct COrvDrawVectorTool::Implementation {
  StlDrawing drawing;
};

COrvDrawVectorTool::COrvDrawVectorTool() : implementation_(std::make_unique<Implementation>()) {}
COrvDrawVectorTool::~COrvDrawVectorTool() = default;

// Viewers leave triangles without area out: the third corner stands off the middle of the line by a
// hundredth of its length, at a right angle to it.
void COrvDrawVectorTool::SetLine10(double x1, double y1, double z1, double x2, double y2, double z2) {
  const double along[3] = {x2 - x1, y2 - y1, z2 - z1};
  const double length = std::hypot(along[0], along[1], along[2]);
  const int least = static_cast<int>(
      std::min_element(along, along + 3, [](double a, double b) { return std::abs(a) < std::abs(b); }) -
      along);
  double axis[3] = {};
  axis[least] = 1;
  double side[3] = {along[1] * axis[2] - along[2] * axis[1], along[2] * axis[0] - along[0] * axis[2],
                    along[0] * axis[1] - along[1] * axis[0]};
  const double width = std::hypot(side[0], side[1], side[2]);
  for (double& s : side) s = width > 0 ? s / width * length / 100 : 0;
  implementation_->drawing.triangle(
      pointAt(x1, y1, z1), pointAt(x2, y2, z2),
      pointAt((x1 + x2) / 2 + side[0], (y1 + y2) / 2 + side[1], (z1 + z2) / 2 + side[2]));
}

int COrvDrawVectorTool::OutputFile_STL(const char* path) {
  return implementation_->drawing.write(path, true) ? 1 : 0;
}
