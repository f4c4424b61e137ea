// Nearest points, drawings, file copies and the locale.
#include <algorithm>
#include <array>
#include <cmath>
#include <cstring>
#include <filesystem>
#include <locale>
#include <numeric>
#include <stdexcept>
#include <vector>

#include "base/atomic_file.h"
#include "base/element_volume.h"
#include "memory_files.h"
#include "platform/draw_stl.h"
#include "platform/file_copy.h"
#include "platform/locale.h"
#include "platform/octree.h"

using namespace orvmesh;

struct COrv3DOctreeMimic::Implementation {
  std::vector<Vector> points;
};
COrv3DOctreeMimic::COrv3DOctreeMimic() : implementation_(std::make_unique<Implementation>()) {}
COrv3DOctreeMimic::~COrv3DOctreeMimic() = default;

void COrv3DOctreeMimic::SetNodeDimension(int count) {
  implementation_->points.assign(static_cast<std::size_t>(std::max(count, 0)) + 1, {NAN, NAN, NAN});
}
void COrv3DOctreeMimic::SetNodeData(int i, double x, double y, double z) {
  if (1 <= i && static_cast<std::size_t>(i) < implementation_->points.size())
    implementation_->points[static_cast<std::size_t>(i)] = {x, y, z};
}
void COrv3DOctreeMimic::Init() {}  // nothing to prepare: every search looks at every point

int COrv3DOctreeMimic::Search(double x, double y, double z, int count, int* ids, double* dists) {
  std::vector<std::pair<double, int>> found;
  for (std::size_t i = 1; i < implementation_->points.size(); ++i) {
    const Vector line = implementation_->points[i] - Vector{x, y, z};
    const double distance = std::hypot(line[0], line[1], line[2]);
    if (std::isfinite(distance)) found.emplace_back(distance, static_cast<int>(i));
  }
  std::sort(found.begin(), found.end());
  const int given = std::min(count, static_cast<int>(found.size()));
  for (int k = 1; k <= given; ++k) {
    dists[k] = found[static_cast<std::size_t>(k) - 1].first;
    ids[k] = found[static_cast<std::size_t>(k) - 1].second;
  }
  return std::max(given, 0);
}

namespace {

// Triangles on their way into a binary STL file.
struct Drawing {
  std::vector<std::array<Vector, 3>> triangles;

  int write(const char* path) const {
    orvmesh::AtomicFile file;
    if (path == nullptr || triangles.empty() || !file.open(path)) return 0;
    const std::array<char, 80> head{"binary STL"};
    const auto count = static_cast<std::uint32_t>(triangles.size());
    file.append(head.data(), head.size());
    file.append(&count, sizeof count);
    for (const auto& [a, b, c] : triangles) {
      const Vector across = cross(b - a, c - a);
      const double length = std::sqrt(dot(across, across));
      std::array<char, 50> record{};
      char* at = record.data();
      for (const Vector& v : {length > 0 ? (1 / length) * across : Vector{}, a, b, c})
        for (const double x : v) {
          const auto value = static_cast<float>(x);
          std::memcpy(at, &value, sizeof value);
          at += sizeof value;
        }
      file.append(record.data(), record.size());
    }
    return file.commit() ? 1 : 0;
  }
};

}  // namespace

struct COrvDrawSTLTool::Implementation : Drawing {
  std::array<const float*, 3> axes{};
  Vector at(int node) const { return {axes[0][node], axes[1][node], axes[2][node]}; }
};
COrvDrawSTLTool::COrvDrawSTLTool() : implementation_(std::make_unique<Implementation>()) {}
COrvDrawSTLTool::~COrvDrawSTLTool() = default;
void COrvDrawSTLTool::SetNode(float*& x, float*& y, float*& z) { implementation_->axes = {x, y, z}; }
void COrvDrawSTLTool::SetFace20(int nodeCount, int* nodes) {
  Implementation& self = *implementation_;
  if (self.axes[0] == nullptr || nodeCount < 3 || nodeCount > 4) return;
  for (int k = 3; k <= nodeCount; ++k)
    if (k == 3 || nodes[4] != nodes[3])
      self.triangles.push_back({self.at(nodes[1]), self.at(nodes[k - 1]), self.at(nodes[k])});
}
int COrvDrawSTLTool::OutputFile(const char* path) { return implementation_->write(path); }

struct COrvDrawVectorTool::Implementation : Drawing {};
COrvDrawVectorTool::COrvDrawVectorTool() : implementation_(std::make_unique<Implementation>()) {}
COrvDrawVectorTool::~COrvDrawVectorTool() = default;
// A triangle on the line, a hundredth of its length wide.
void COrvDrawVectorTool::SetLine10(double x1, double y1, double z1, double x2, double y2, double z2) {
  const Vector a{x1, y1, z1}, b{x2, y2, z2}, along = b - a;
  const Vector axis = std::abs(along[0]) < std::abs(along[1]) ? Vector{1, 0, 0} : Vector{0, 1, 0};
  const Vector side = cross(along, axis);
  const double width = std::sqrt(dot(side, side)), length = std::sqrt(dot(along, along));
  implementation_->triangles.push_back({a, b, 0.5 * (a + b) + (width > 0 ? length / width / 100 : 0) * side});
}
int COrvDrawVectorTool::OutputFile_STL(const char* path) { return implementation_->write(path); }

bool CopyFileA(const char* from, const char* to, bool failIfExists) {
  using namespace memory_platform;
  if (from == nullptr || to == nullptr) return false;
  if (const auto file = files().find(from); file != files().end()) {
    if (failIfExists && files().contains(to)) return false;
    const File copy = file->second;
    files()[to] = copy;
    return true;
  }
  std::error_code error;
  using std::filesystem::copy_options;
  return std::filesystem::copy_file(
             from, to, failIfExists ? copy_options::none : copy_options::overwrite_existing, error) &&
         !error;
}

std::string COrvLocale::GetSystemDefaultLocale() {
  try {
    return std::locale("").name();
  } catch (const std::runtime_error&) {
    return "C";
  }
}
