#include <algorithm>
#include <cmath>

#include "base/face_buckets.h"
#include "base/face_tables.h"
#include "base/ranges.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

Position operator-(const Position& a, const Position& b) { return {a[0] - b[0], a[1] - b[1], a[2] - b[2]}; }
double determinant(const Position& a, const Position& b, const Position& c) {
  return a[0] * (b[1] * c[2] - b[2] * c[1]) + a[1] * (b[2] * c[0] - b[0] * c[2]) +
         a[2] * (b[0] * c[1] - b[1] * c[0]);
}

// The corners of an element seen from its first one, in the file's own lengths.
struct Corners {
  Position at[8];
  double size = 0;  // the largest coordinate difference to the first corner

  Corners(const float* xyz, std::span<const std::int32_t> nodes) {
    for (std::size_t k = 0; k < nodes.size(); ++k) {
      const float* p = xyz + 3 * (static_cast<std::size_t>(nodes[k]) - 1);
      at[k] = {p[0], p[1], p[2]};
      if (k == 0) continue;
      at[k] = at[k] - at[0];
      for (const double x : at[k]) size = std::max(size, std::fabs(x));
    }
    at[0] = {};
  }
};

// Negative for an element that is inside out. A quadrilateral face is the mean of its two foldings, so that
// neighbours agree about it.
double volumeOf(const Corners& corners, int count) {
  const Position* p = corners.at;
  if (count == 4) return determinant(p[1], p[2], p[3]) / 6;
  double twelfths = 0;
  for (const LocalFace& face : facesOf(count)) {
    const int* n = face.nodes;
    if (face.nodeCount == 3) {
      twelfths += 2 * determinant(p[n[0]], p[n[1]], p[n[2]]);
      continue;
    }
    twelfths += determinant(p[n[0]], p[n[1]], p[n[2]]) + determinant(p[n[0]], p[n[2]], p[n[3]]) +
                determinant(p[n[0]], p[n[1]], p[n[3]]) + determinant(p[n[1]], p[n[2]], p[n[3]]);
  }
  return twelfths / 12;
}

bool isKnownMaterial(std::size_t block, std::int32_t a) {
  if (block == kPlastic) return a >= 1;
  if (block == kChannel) return a == kChannelKindCoolant || a == kChannelKindHeater;
  // Between the ranges an element would be typed as one thing and written as another (quirk 1), but for the
  // materials that the mold-base mesh turns into inserts.
  constexpr NumberRange kBase{1, 5000}, kInsert{5002, 9999}, kOtherMetal{10002, kHeaterMaterial - 1};
  return kBase.holds(a) || kInsert.holds(a) || kOtherMetal.holds(a) || a > kHeaterMaterial;
}

// An element by all its nodes: exact for four nodes, else as sure as 96 bits.
struct ElementKey {
  std::uint32_t bucket;
  BucketEntry entry;
};
ElementKey elementKey(std::span<const std::int32_t> nodes, std::uint32_t item) {
  std::uint32_t sorted[8] = {};
  for (std::size_t k = 0; k < nodes.size(); ++k) {
    std::size_t place = k;
    const auto node = static_cast<std::uint32_t>(nodes[k]);
    for (; place > 0 && sorted[place - 1] > node; --place) sorted[place] = sorted[place - 1];
    sorted[place] = node;
  }
  std::uint64_t key = std::uint64_t{sorted[1]} << 32 | sorted[2];
  std::uint64_t rest = sorted[3];
  for (std::size_t k = 4; k < nodes.size(); ++k) {
    key = (key ^ sorted[k]) * 0x9E3779B97F4A7C15ULL;
    key ^= key >> 29;
    rest = (rest ^ sorted[k]) * 0xD6E8FEB86659FD93ULL >> 16;
  }
  return {sorted[0], {key, static_cast<std::uint32_t>(rest), item}};
}

bool sameNodes(const MeshModel& model, ElementRef a, ElementRef b) {
  const auto first = tableOf(model, a.block).nodes(a.number);
  const auto second = tableOf(model, b.block).nodes(b.number);
  return std::is_permutation(first.begin(), first.end(), second.begin(), second.end());
}

struct Twins {
  std::uint32_t item, earlier;
  bool operator<(const Twins& other) const { return item < other.item; }
};

}  // namespace

void checkVolumes(const MeshModel& model, Collector& found) {
  constexpr double kFlat = 1e-12;  // of the cube of the element's size
  eachElement(model, [&](std::uint32_t item, std::span<const std::int32_t> nodes) {
    const auto count = static_cast<int>(nodes.size());
    const auto entity = [&](const std::string& detail) {
      return elementEntity(model, elementAt(model, item), detail);
    };
    if (facesOf(count).empty()) {
      found.add(Code::zeroVolume, 0,
                [&] { return entity(std::to_string(count) + " nodes (legal: 4, 5, 6, 8)"); });
      return;
    }
    const Corners corners(model.nodes.xyz.data(), nodes);
    const double volume = volumeOf(corners, count);
    if (std::fabs(volume) <= kFlat * corners.size * corners.size * corners.size) {
      found.add(Code::zeroVolume, 0, [&] { return entity("flat"); });
    } else if (volume < 0) {
      found.add(Code::invertedElement, 0, [&] { return entity({}); });
    }
  });
}

void checkMaterials(const MeshModel& model, Collector& found) {
  for (std::size_t block = 0; block < kBlocks; ++block) {
    const ElementTable& table = tableOf(model, block);
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      const std::int32_t a = table.material(e);
      if (isKnownMaterial(block, a)) continue;
      found.add(Code::unknownMaterial, 0, [&] {
        return elementEntity(model, {block, e},
                             (block == kChannel ? "kind " : "material ") + std::to_string(a));
      });
    }
  }
}

ElementMarks checkDuplicates(const MeshModel& model, Collector& found) {
  const auto each = [&](auto use) {
    eachElement(model, [&](std::uint32_t item, std::span<const std::int32_t> nodes) {
      const ElementKey key = elementKey(nodes, item);
      use(key.bucket, key.entry);
    });
  };
  std::vector<Twins> twins;
  forEachGroup(model.nodes.count(), each, [&](std::uint32_t, std::span<const BucketEntry> group) {
    for (const BucketEntry& entry : group.subspan(1))
      if (sameNodes(model, elementAt(model, group[0].item), elementAt(model, entry.item)))
        twins.push_back({entry.item, group[0].item});
  });
  std::sort(twins.begin(), twins.end());
  ElementMarks marks(static_cast<std::size_t>(elementCount(model)));
  for (const Twins& pair : twins) {
    marks[pair.item] = true;
    found.add(Code::duplicateElement, 0, [&] {
      return elementEntity(model, elementAt(model, pair.item),
                           "has the nodes of " + textOf(elementAt(model, pair.earlier)));
    });
  }
  return marks;
}

}  // namespace orvmesh::check
