#include <algorithm>
#include <numeric>

#include "base/face_buckets.h"
#include "base/face_tag.h"
#include "base/ranges.h"
#include "check/checkers.h"

namespace orvmesh::check {
namespace {

constexpr std::int32_t kWalls = 3, kEnds = 4;
constexpr unsigned kHose = 1, kInlet = 2, kOutlet = 4;  // bits by contact code 0, 1, 2

bool isCoolant(const ElementTable& channels, std::int32_t e) {
  return channels.material(e) == kChannelKindCoolant;
}

// Coolant groups that share a node are one circuit, named by its lowest group.
class Circuits {
 public:
  explicit Circuits(const MeshModel& model) {
    std::iota(std::begin(parent_), std::end(parent_), 0);
    std::vector<std::uint16_t> groupOf(static_cast<std::size_t>(model.nodes.count()) + 1);  // 1 + group
    const ElementTable& channels = model.elemC;
    for (std::int32_t e = 1; e <= channels.count(); ++e) {
      if (!isCoolant(channels, e)) continue;
      const std::int32_t group = channels.group(e);
      std::int32_t& first = firstElement_[group];
      if (first == 0) first = e;
      for (const std::int32_t node : channels.nodes(e)) {
        std::uint16_t& there = groupOf[static_cast<std::size_t>(node)];
        if (there == 0) there = static_cast<std::uint16_t>(group + 1);
        join(group, there - 1);
      }
    }
  }
  std::int32_t of(std::int32_t group) const {
    while (parent_[group] != group) group = parent_[group];
    return group;
  }
  // A channel element of the group, 0 for a group without coolant.
  std::int32_t firstElement(std::int32_t group) const { return firstElement_[group]; }

 private:
  void join(std::int32_t a, std::int32_t b) {
    a = of(a);
    b = of(b);
    parent_[std::max(a, b)] = std::min(a, b);
  }

  std::int32_t parent_[kLastGroup + 1] = {};
  std::int32_t firstElement_[kLastGroup + 1] = {};
};

std::int32_t groupOf(const SurfaceElement& end) {
  const std::int32_t group = tagGroup(end.tag);
  return kTaggedGroup.holds(group) ? group : end.boundaryType;
}

std::vector<unsigned> endsOfCircuits(const MeshModel& model, const Circuits& circuits) {
  std::vector<unsigned> ends(kLastGroup + 1);
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    if (model.surfaces.interfaceId[static_cast<std::size_t>(s) - 1] != kEnds) continue;
    const SurfaceElement end = model.surfaces[s];
    const std::int32_t group = groupOf(end);
    const bool known = 0 <= group && group <= kLastGroup && 0 <= end.contactCode && end.contactCode <= 2;
    if (!known || end.ownerCode == kChannelKindHeater) continue;
    ends[static_cast<std::size_t>(circuits.of(group))] |= 1U << end.contactCode;
  }
  return ends;
}

Entity openEdge(const MeshModel& model, std::int32_t surface, std::int32_t a, std::int32_t b) {
  const std::int32_t nodes[] = {a, b};
  return {"surface element", surface,
          "its edge from node " + std::to_string(a) + " to " + std::to_string(b) + " has no neighbour",
          middleOf(model, nodes)};
}

}  // namespace

void checkChannelEnds(const MeshModel& model, Collector& found) {
  if (model.elemC.count() == 0) return;
  const Circuits circuits(model);
  const auto ends = endsOfCircuits(model, circuits);
  for (std::int32_t group = 0; group <= kLastGroup; ++group) {
    if (circuits.firstElement(group) == 0 || circuits.of(group) != group) continue;
    const unsigned has = ends[static_cast<std::size_t>(group)];
    if ((has & kHose) != 0 || (has & (kInlet | kOutlet)) == (kInlet | kOutlet)) continue;
    const char* const missing = has == kInlet ? "no outlet" : has == kOutlet ? "no inlet" : "no ends";
    found.add(Code::channelEnds, 0, [&] {
      const auto nodes = model.elemC.nodes(circuits.firstElement(group));
      return Entity{"channel group", group, missing, middleOf(model, nodes)};
    });
  }
}

void checkChannelSurface(const MeshModel& model, Collector& found) {
  const auto each = [&](auto use) {
    for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
      const std::int32_t interfaceId = model.surfaces.interfaceId[static_cast<std::size_t>(s) - 1];
      if (interfaceId != kWalls && interfaceId != kEnds) continue;
      const SurfaceElement face = model.surfaces[s];
      for (int k = 0; k < face.nodeCount; ++k) {
        const auto [a, b] = std::minmax({face.nodes[k], face.nodes[(k + 1) % face.nodeCount]});
        if (a == b) continue;
        use(static_cast<std::uint32_t>(a),
            BucketEntry{static_cast<std::uint64_t>(b), 0, static_cast<std::uint32_t>(s)});
      }
    }
  };
  forEachGroup(model.nodes.count(), each, [&](std::uint32_t node, std::span<const BucketEntry> group) {
    if (group.size() % 2 == 0) return;
    found.add(Code::openChannel, 0, [&] {
      return openEdge(model, static_cast<std::int32_t>(group[0].item), static_cast<std::int32_t>(node),
                      static_cast<std::int32_t>(group[0].key));
    });
  });
}

}  // namespace orvmesh::check
