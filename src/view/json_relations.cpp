#include <algorithm>
#include <bit>
#include <cmath>
#include <limits>

#include "base/text_number.h"
#include "view/json_complaint.h"
#include "view/json_mesh.h"

// What entries of the small blocks must be to one another, so that the file can be read.
namespace orvmesh::view {
namespace {

std::string rangeText(std::int64_t most) {
  return most < 1 ? "none, there is nothing to name" : "1 to " + std::to_string(most);
}

// A segment of the layout names two of its points, where it has any, and is kept in ten-thousandths.
class LayoutCheck {
 public:
  LayoutCheck(const JsonMesh& mesh, const std::string& name) : mesh_(mesh), name_(name) {
    forEachRow(mesh, kChannelLayout,
               [&](std::int64_t, auto values) { points_ += values.front() != 0 ? 1 : 0; });
    const float factor = mesh.header.floatField(m_HEADER_ScaleFactor);
    lengthFactor_ = factor == 0 ? 1 : factor;
  }
  void run() const {
    forEachRow(mesh_, kChannelLayout, [&](std::int64_t no, auto values) {
      if (values.front() == 0) checkSegment(no, values);
    });
  }

 private:
  void checkSegment(std::int64_t no, std::span<const std::int32_t> values) const {
    for (const std::size_t end : {5U, 6U})
      if (points_ > 0 && (values[end] < 1 || values[end] > points_))
        refuseAt(no, end, std::to_string(values[end]), "1 to " + std::to_string(points_));
    for (const std::size_t diameter : {7U, 8U}) checkFloat(no, diameter, values, lengthFactor_);
    for (std::size_t place = 12; place < values.size(); ++place) checkFloat(no, place, values, 1);
  }
  void checkFloat(std::int64_t no, std::size_t place, std::span<const std::int32_t> values,
                  double factor) const {
    const auto value = std::bit_cast<float>(values[place]);
    if (std::abs(value * factor * 10000) <= std::numeric_limits<std::int32_t>::max()) return;
    std::string found;
    appendExact(found, value);
    refuseAt(no, place, found, "-214748 to 214748 in model units");
  }
  [[noreturn]] void refuseAt(std::int64_t no, std::size_t place, const std::string& found,
                             const std::string& legal) const {
    refuse(name_, jsonPath(blockShape(kChannelLayout), no, {}, static_cast<std::int64_t>(place)), found,
           legal);
  }

  const JsonMesh& mesh_;
  const std::string& name_;
  std::int64_t points_ = 0;
  double lengthFactor_ = 1;
};

std::int64_t pointsOf(const JsonMesh& mesh, int block) {
  std::int64_t points = 0;
  forEachArgument(mesh, block, [&](std::int64_t, const Argument& argument, auto values) {
    if (argument.key == std::string_view("isPoint") && values.front() != 0) ++points;
  });
  return points;
}

// A face names points of its block or nodes of the mesh; zeros after its last node are no nodes.
void checkFaces(const JsonMesh& mesh, const std::string& name, int block) {
  const std::int64_t last = std::max(mesh.count(kNodes), pointsOf(mesh, block));
  bool isFace = false;
  forEachArgument(mesh, block, [&](std::int64_t no, const Argument& argument, auto values) {
    if (argument.key == std::string_view("isPoint")) isFace = values.front() == 0;
    if (argument.key != std::string_view("nodes") || !isFace) return;
    std::size_t used = values.size();
    while (used > 1 && values[used - 1] == 0) --used;
    for (std::size_t place = 0; place < used; ++place)
      if (values[place] < 1 || values[place] > last)
        refuse(name, jsonPath(blockShape(block), no, argument.key, static_cast<std::int64_t>(place)),
               std::to_string(values[place]), rangeText(last));
  });
}

void checkSurfaceLists(const JsonMesh& mesh, const std::string& name) {
  std::vector<bool> seen(static_cast<std::size_t>(mesh.count(kElementSurfaces)) + 1);
  forEachArgument(mesh, kSurfaceConditions, [&](std::int64_t no, const Argument& argument, auto values) {
    if (argument.legal != Legal::Surface) return;
    const auto surface = static_cast<std::size_t>(values.front());
    if (seen[surface])
      refuse(name, jsonPath(blockShape(kSurfaceConditions), no, argument.key, -1),
             std::to_string(surface) + " for the second time", "each surface once");
    seen[surface] = true;
  });
}

}  // namespace

void checkRelations(const JsonMesh& mesh, const std::string& name) {
  LayoutCheck(mesh, name).run();
  checkFaces(mesh, name, kMoldMetal);
  checkFaces(mesh, name, kChannelSurface);
  if (mesh.count(kSurfaceConditions) > 0) checkSurfaceLists(mesh, name);
}

}  // namespace orvmesh::view
