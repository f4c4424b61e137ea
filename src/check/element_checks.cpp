#include <algorithm>
#include <cmath>

#include "base/element_volume.h"
#include "base/face_buckets.h"
#include "base/ranges.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

// The largest coordinate difference to the first corner, in the file's own lengths.
double sizeOf(const float* xyz, std::span<const std::int32_t> nodes) {
  const Vector first = pointOf(xyz, nodes[0]);
  double size = 0;
  for (const std::int32_t node : nodes.subspan(1))
    for (const double x : pointOf(xyz, node) - first) size = std::max(size, std::fabs(x));
  return size;
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
    const float* const xyz = model.nodes.xyz.data();
    const double volume = signedVolume(xyz, nodes), size = sizeOf(xyz, nodes);
    if (std::fabs(volume) <= kFlat * size * size * size) {
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
