#include <algorithm>
#include <cmath>

#include "base/element_volume.h"
#include "base/face_buckets.h"
#include "base/text_number.h"
#include "platform/ofv_mesh.h"

namespace orvmesh {
namespace {

std::string number(std::size_t n) { return std::to_string(n); }

Vector pointAt(const OFVMesh& mesh, std::int32_t n) {
  const double* p = mesh.xyz.data() + 3 * (static_cast<std::size_t>(n) - 1);
  return {p[0], p[1], p[2]};
}

std::string faultOfRepeatedPoints(const OFVMesh& mesh) {
  std::vector<std::int32_t> sorted;
  for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
    const auto nodes = mesh.nodes(f);
    sorted.assign(nodes.begin(), nodes.end());
    std::sort(sorted.begin(), sorted.end());
    const auto twice = std::adjacent_find(sorted.begin(), sorted.end());
    if (twice != sorted.end())
      return "face " + number(f + 1) + ": point " + std::to_string(*twice) + " is there twice (legal: once)";
  }
  return {};
}

// Bucket and key hold the least three points and rest their number, so that few polygons share them.
void addEntry(std::span<const std::int32_t> nodes, std::size_t face, const auto& use) {
  std::int32_t least[3] = {};
  std::partial_sort_copy(nodes.begin(), nodes.end(), std::begin(least), std::end(least));
  const auto word = [](std::int32_t n) { return static_cast<std::uint32_t>(n); };
  use(word(least[0]),
      BucketEntry{std::uint64_t{word(least[1])} << 32 | word(least[2]),
                  static_cast<std::uint32_t>(nodes.size()), static_cast<std::uint32_t>(face)});
}

// Of faces with as many points, three of them in common, the first two that have all in common.
std::string faultOfCandidates(const OFVMesh& mesh, std::span<const BucketEntry> entries) {
  struct Face {
    std::vector<std::int32_t> nodes;
    std::uint32_t face;
    bool operator<(const Face& other) const {
      return nodes != other.nodes ? nodes < other.nodes : face < other.face;
    }
  };
  std::vector<Face> faces;
  faces.reserve(entries.size());
  for (const BucketEntry& entry : entries) {
    const auto nodes = mesh.nodes(entry.item);
    Face& face = faces.emplace_back(Face{{nodes.begin(), nodes.end()}, entry.item});
    std::sort(face.nodes.begin(), face.nodes.end());
  }
  std::sort(faces.begin(), faces.end());
  const auto twin = std::adjacent_find(faces.begin(), faces.end(),
                                       [](const Face& a, const Face& b) { return a.nodes == b.nodes; });
  if (twin == faces.end()) return {};
  return "face " + number(twin[1].face + 1UL) + " has the same points as face " + number(twin->face + 1UL) +
         " (legal: one face, which names both cells)";
}

std::string faultOfTwins(const OFVMesh& mesh) {
  std::string fault;
  forEachGroup(
      mesh.pointCount(),
      [&](const auto& use) {
        for (std::size_t f = 0; f < mesh.owner.size(); ++f) addEntry(mesh.nodes(f), f, use);
      },
      [&](std::uint32_t, std::span<const BucketEntry> entries) {
        if (entries.size() > 1 && fault.empty()) fault = faultOfCandidates(mesh, entries);
      });
  return fault;
}

struct FaceSize {
  Vector area{};
  double lengthSquared = 0;  // of the longest line from the first point
};

// From the first point on, so that the place of the mesh in space costs no digits.
FaceSize sizeOf(const OFVMesh& mesh, std::span<const std::int32_t> nodes) {
  FaceSize size;
  const Vector origin = pointAt(mesh, nodes[0]);
  Vector before{};
  for (const std::int32_t n : nodes.subspan(1)) {
    const Vector line = pointAt(mesh, n) - origin;
    size.area = size.area + 0.5 * cross(before, line);
    size.lengthSquared = std::max(size.lengthSquared, dot(line, line));
    before = line;
  }
  return size;
}

// A number for the edges of a face: those of faces that pass one edge in opposite senses cancel, and nothing
// else does but once in 2^64. Unsigned, as it overflows.
std::uint64_t edgesOf(std::span<const std::int32_t> nodes) {
  std::uint64_t sum = 0;
  std::int32_t from = nodes.back();
  for (const std::int32_t to : nodes) {
    const auto [first, last] = std::minmax(from, to);
    std::uint64_t edge =
        std::uint64_t{static_cast<std::uint32_t>(first)} << 32 | static_cast<std::uint32_t>(last);
    edge = (edge ^ edge >> 30) * 0xbf58476d1ce4e5b9U;  // the finalizer of splitmix64
    edge = (edge ^ edge >> 27) * 0x94d049bb133111ebU;
    edge ^= edge >> 31;
    sum += from < to ? edge : 0 - edge;
    from = to;
  }
  return sum;
}

// A cell without a face can have area vectors that add up to zero, as a tube has: every edge must be passed
// once in each sense. The sum is then zero wherever the points lie, but for rounding; the second tolerance is
// for cells so thin that their faces are nothing beside their length.
constexpr double kFaceTolerance = 1e-9;
constexpr double kLengthTolerance = 1e-14;
constexpr double kVolumeTolerance = 1e-12;  // of the cube over the mesh's longest side
constexpr std::int32_t kLeastFaces = 4;

struct CellSum {
  Vector area{};
  double largestSquared = 0;
  double lengthSquared = 0;
  std::uint64_t edges = 0;
  std::int32_t faces = 0;

  void add(const FaceSize& face, std::uint64_t faceEdges, double sign) {
    area = area + sign * face.area;
    edges += sign > 0 ? faceEdges : 0 - faceEdges;
    largestSquared = std::max(largestSquared, dot(face.area, face.area));
    lengthSquared = std::max(lengthSquared, face.lengthSquared);
    ++faces;
  }
  // False for numbers that left the doubles as well.
  bool isClosed() const {
    const double rest = std::sqrt(dot(area, area));
    const double tolerance = kFaceTolerance * std::sqrt(largestSquared) + kLengthTolerance * lengthSquared;
    return std::isfinite(tolerance) && rest <= tolerance;
  }
};

std::string faultOfClosure(const OFVMesh& mesh) {
  std::vector<CellSum> cells(mesh.cellCavity.size() + 1);
  for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
    const FaceSize size = sizeOf(mesh, mesh.nodes(f));
    const std::uint64_t edges = edgesOf(mesh.nodes(f));
    cells[static_cast<std::size_t>(mesh.owner[f])].add(size, edges, 1);
    cells[static_cast<std::size_t>(mesh.neighbour[f])].add(size, edges, -1);
  }
  for (std::size_t c = 1; c < cells.size(); ++c) {
    if (cells[c].faces < kLeastFaces)
      return "cell " + number(c) + ": its number of faces is " + std::to_string(cells[c].faces) +
             " (legal: 4 or more)";
    if (cells[c].edges != 0)
      return "cell " + number(c) +
             " is not closed: an edge lacks one of its two faces, or one of these is turned the wrong way";
    if (!cells[c].isClosed())
      return "cell " + number(c) + " is not closed: the area vectors of its faces do not add up to zero";
  }
  return {};
}

// By cavities: single cells that are nothing but rounding may lie either way.
std::string faultOfTurn(const OFVMesh& mesh) {
  double length = 0;
  for (std::size_t i = 3; i < mesh.xyz.size(); ++i)
    length = std::max(length, std::abs(mesh.xyz[i] - mesh.xyz[i % 3]));
  const double tolerance = kVolumeTolerance * length * length * length;
  const std::vector<double> volumes = cavityVolumes(mesh);
  const auto at =
      std::find_if(volumes.begin(), volumes.end(), [=](double volume) { return volume < -tolerance; });
  if (at == volumes.end()) return {};
  std::string text =
      "cavity " + number(static_cast<std::size_t>(at - volumes.begin()) + 1) + ": its volume is ";
  appendDefault(text, *at);
  return text + " (legal: not negative; points go counter-clockwise seen from outside the owner)";
}

// Of the pyramid between the face, as a fan of triangles, and the origin.
double pyramidVolume(const OFVMesh& mesh, std::span<const std::int32_t> nodes, const Vector& origin) {
  double sixths = 0;
  const Vector first = pointAt(mesh, nodes[0]) - origin;
  for (std::size_t k = 2; k < nodes.size(); ++k)
    sixths += determinant(first, pointAt(mesh, nodes[k - 1]) - origin, pointAt(mesh, nodes[k]) - origin);
  return sixths / 6;
}

}  // namespace

std::vector<double> cavityVolumes(const OFVMesh& mesh) {
  std::vector<double> volumes(mesh.cavityNumber.size());
  const auto volumeOf = [&](std::int32_t cell) -> double& {
    const std::int32_t cavity = mesh.cellCavity[static_cast<std::size_t>(cell) - 1];
    return volumes[static_cast<std::size_t>(cavity) - 1];
  };
  for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
    const double volume = pyramidVolume(mesh, mesh.nodes(f), pointAt(mesh, 1));
    volumeOf(mesh.owner[f]) += volume;
    if (mesh.neighbour[f] != 0) volumeOf(mesh.neighbour[f]) -= volume;
  }
  return volumes;
}

std::string faultOfRelations(const OFVMesh& mesh) {
  for (const auto check : {faultOfRepeatedPoints, faultOfTwins, faultOfClosure, faultOfTurn})
    if (auto fault = check(mesh); !fault.empty()) return fault;
  return {};
}

}  // namespace orvmesh
