#include "channel/surface_pieces.h"

#include <algorithm>
#include <cmath>
#include <numeric>
#include <utility>

#include "base/element_volume.h"
#include "base/face_buckets.h"

namespace orvmesh::channel {
namespace {

constexpr std::int32_t kEnds = 4;

// Sets of faces; of each face whether it must be turned to look the same way as its set's first one.
class FaceSets {
 public:
  struct Place {
    std::uint32_t root;
    bool isTurned;
  };

  explicit FaceSets(std::size_t faces) : parent_(faces), isTurned_(faces) {
    std::iota(parent_.begin(), parent_.end(), 0U);
  }
  Place find(std::uint32_t face) {
    bool isTurned = false;
    for (; parent_[face] != face; face = parent_[face]) {
      // Halves the way up; the grandparent's turn is that of both steps.
      const std::uint32_t up = parent_[face];
      isTurned_[face] = isTurned_[face] != (parent_[up] != up && isTurned_[up]);
      parent_[face] = parent_[up];
      isTurned = isTurned != isTurned_[face];
    }
    return {face, isTurned};
  }
  // False when the two were joined before and look otherwise.
  bool join(std::uint32_t a, std::uint32_t b, bool lookAlike) {
    const Place first = find(a), second = find(b);
    const bool isTurned = (first.isTurned != second.isTurned) == lookAlike;
    if (first.root == second.root) return !isTurned;
    const auto [low, high] = std::minmax(first.root, second.root);
    parent_[high] = low;
    isTurned_[high] = isTurned;
    return true;
  }

 private:
  std::vector<std::uint32_t> parent_;
  std::vector<bool> isTurned_;
};

// A face as its edges see it: which face, and whether it runs from the lower node to the higher.
struct EdgeSide {
  explicit EdgeSide(const BucketEntry& entry) : face(entry.item / 2), isUpwards(entry.item % 2 != 0) {}
  std::uint32_t face;
  bool isUpwards;
};

class PieceFinder {
 public:
  PieceFinder(const ChannelSurface& surface, std::span<const std::uint32_t> groupOf, std::size_t groups)
      : surface_(surface),
        groupOf_(groupOf),
        pieces_(groups),
        isTwisted_(groups),
        sides_(groupOf.size()),
        ends_(groupOf.size()) {}

  std::vector<SurfacePieces> find() {
    forEachGroup(
        surface_.nodeCount(), [this](auto use) { eachEdge(use); },
        [this](std::uint32_t node, std::span<const BucketEntry> faces) { addEdge(node, faces); });
    countEnds();
    for (std::size_t g = 0; g < pieces_.size(); ++g)
      pieces_[g].isClosed = pieces_[g].openEdges == 0 && pieces_[g].crowdedEdges == 0 && !isTwisted_[g];
    addVolumes();
    return std::move(pieces_);
  }

 private:
  std::uint32_t faceCount() const { return static_cast<std::uint32_t>(groupOf_.size()); }
  std::span<const std::int32_t> cornersOf(std::uint32_t face) const {
    return std::span(surface_.nodes)
        .subspan(4 * std::size_t{face}, static_cast<std::size_t>(surface_.vertexCount[face]));
  }

  template <class Use>
  void eachEdge(Use use) const {
    for (std::uint32_t face = 0; face < faceCount(); ++face) {
      const auto corners = cornersOf(face);
      for (std::size_t k = 0; k < corners.size(); ++k) {
        const auto from = static_cast<std::uint32_t>(corners[k]);
        const auto to = static_cast<std::uint32_t>(corners[(k + 1) % corners.size()]);
        if (from == to || from == 0 || to == 0) continue;
        const std::uint64_t key = std::uint64_t{groupOf_[face]} << 32 | std::max(from, to);
        use(std::min(from, to), BucketEntry{key, 0, 2 * face + (from < to ? 1 : 0)});
      }
    }
  }

  void addEdge(std::uint32_t node, std::span<const BucketEntry> faces) {
    const EdgeSide first(faces[0]);
    const std::uint32_t group = groupOf_[first.face];
    SurfacePieces& pieces = pieces_[group];
    if (faces.size() == 1 && pieces.openEdges++ == 0) {
      pieces.openEdge[0] = static_cast<std::int32_t>(node);
      pieces.openEdge[1] = static_cast<std::int32_t>(faces[0].key & 0xFFFFFFFFU);
    }
    if (faces.size() > 2) ++pieces.crowdedEdges;
    for (std::size_t i = 1; i < faces.size(); ++i) {
      const EdgeSide side(faces[i]);
      // Faces that look the same way run along their common edge in opposite directions.
      if (!sides_.join(first.face, side.face, first.isUpwards != side.isUpwards)) isTwisted_[group] = true;
      for (std::size_t j = 0; j < i; ++j) joinEnds(EdgeSide(faces[j]).face, side.face);
    }
  }

  void joinEnds(std::uint32_t a, std::uint32_t b) {
    if (surface_.interfaceId[a] == kEnds && surface_.interfaceId[b] == kEnds &&
        surface_.endCode[a] == surface_.endCode[b] &&
        (surface_.kind[a] == kHoseFace) == (surface_.kind[b] == kHoseFace))
      ends_.join(a, b, true);
  }

  void countEnds() {
    for (std::uint32_t face = 0; face < faceCount(); ++face) {
      if (surface_.interfaceId[face] != kEnds || ends_.find(face).root != face) continue;
      SurfacePieces& pieces = pieces_[groupOf_[face]];
      if (surface_.kind[face] == kHoseFace)
        ++pieces.hoses;
      else if (surface_.endCode[face] != 0)
        ++(surface_.endCode[face] == 1 ? pieces.inlets : pieces.outlets);
    }
  }

  void addVolumes() {
    std::vector<double> volumes(faceCount());
    for (std::uint32_t face = 0; face < faceCount(); ++face) {
      if (!pieces_[groupOf_[face]].isClosed) continue;
      const auto [root, isTurned] = sides_.find(face);
      volumes[root] += (isTurned ? -1 : 1) * volumeUnder(face, pointOf(surface_.xyz.data(), rootNode(root)));
    }
    for (std::uint32_t face = 0; face < faceCount(); ++face)
      pieces_[groupOf_[face]].volume += std::abs(volumes[face]);
  }
  // Volumes are taken about a point of the piece itself: far from the origin the differences would drown.
  std::int32_t rootNode(std::uint32_t root) const { return std::max(cornersOf(root)[0], 1); }

  double volumeUnder(std::uint32_t face, const Vector& about) const {
    const auto corners = cornersOf(face);
    std::array<Vector, 4> p{};
    for (std::size_t k = 0; k < corners.size(); ++k) {
      if (corners[k] == 0) return 0;
      p[k] = pointOf(surface_.xyz.data(), corners[k]) - about;
    }
    if (corners.size() == 3) return determinant(p[0], p[1], p[2]) / 6;
    return (determinant(p[0], p[1], p[2]) + determinant(p[0], p[2], p[3]) + determinant(p[0], p[1], p[3]) +
            determinant(p[1], p[2], p[3])) /
           12;
  }

  const ChannelSurface& surface_;
  std::span<const std::uint32_t> groupOf_;
  std::vector<SurfacePieces> pieces_;
  std::vector<bool> isTwisted_;
  FaceSets sides_, ends_;
};

}  // namespace

std::vector<SurfacePieces> findPieces(const ChannelSurface& surface, std::span<const std::uint32_t> groupOf,
                                      std::size_t groups) {
  return PieceFinder(surface, groupOf, groups).find();
}

}  // namespace orvmesh::channel
