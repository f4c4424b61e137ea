#include "channel/channel_groups.h"

#include <cmath>
#include <map>
#include <numbers>

#include "base/element_volume.h"
#include "base/ranges.h"

namespace orvmesh::channel {
namespace {

constexpr std::int32_t kWalls = 3;

using Key = std::pair<bool, std::int32_t>;  // heater, group

double length(const Vector& v) { return std::sqrt(dot(v, v)); }

double areaOf(const ChannelSurface& surface, std::size_t face) {
  std::array<Vector, 4> p;
  for (std::size_t k = 0; k < 4; ++k) {
    const std::int32_t node = surface.nodes[4 * face + k];
    if (node == 0) return 0;
    p[k] = pointOf(surface.xyz.data(), node);
  }
  return length(areaVector(p, surface.vertexCount[face] == 3));
}

double volumeOf(const MeshModel& model, std::int32_t element) {
  const auto nodes = model.elemC.nodes(element);
  if (facesOf(static_cast<int>(nodes.size())).empty()) return 0;
  return std::abs(signedVolume(model.nodes.xyz.data(), nodes)) * std::pow(model.lengthFactor, 3);
}

class GroupTable {
 public:
  GroupTable(const ChannelSurface& surface, const MeshModel& model) : surface_(surface), model_(model) {}

  std::vector<ChannelGroup> make() {
    addFaces();
    addElements();
    addBeams();
    addLines();
    addPieces();
    std::vector<ChannelGroup> list;
    for (auto& [key, group] : groups_) {
      measure(group);
      list.push_back(group);
    }
    return list;
  }

 private:
  ChannelGroup& groupOf(bool isHeater, std::int32_t number) {
    if (last_ == nullptr || last_->isHeater != isHeater || last_->group != number) {
      last_ = &groups_[{isHeater, number}];
      last_->isHeater = isHeater;
      last_->group = number;
    }
    return *last_;
  }

  ChannelGroup& groupOfFace(std::size_t face) {
    return groupOf(surface_.isHeater[face] != 0, surface_.group[face]);
  }

  void addFaces() {
    for (std::size_t face = 0; face < surface_.kind.size(); ++face) {
      ChannelGroup& group = groupOfFace(face);
      if (surface_.interfaceId[face] == kWalls) {
        ++group.walls;
        group.wettedArea += areaOf(surface_, face);
      } else {
        ++(surface_.kind[face] == kHoseFace ? group.hoses : group.ends);
        if (surface_.kind[face] == kHoseFace || surface_.endCode[face] != 0)
          group.endArea += areaOf(surface_, face);
      }
    }
  }

  void addElements() {
    const ElementTable& channels = model_.elemC;
    for (std::int32_t e = 1; e <= channels.count(); ++e) {
      ChannelGroup& group = groupOf(channels.material(e) == kChannelKindHeater, channels.group(e));
      ++group.elements;
      group.volume += volumeOf(model_, e);
    }
  }

  void addBeams() {
    const auto& points = model_.beamPoints;
    for (const BeamSegment& beam : model_.beamSegments) {
      const auto from = static_cast<std::size_t>(beam.values[1]),
                 to = static_cast<std::size_t>(beam.values[2]);
      if (beam.values[1] < 1 || beam.values[2] < 1 || from > points.size() || to > points.size()) continue;
      const BeamPoint &a = points[from - 1], &b = points[to - 1];
      add(groupOf(isHeaterBeam(beam.values[3]), beam.segCode), LengthFrom::layout,
          length({b.x - a.x, b.y - a.y, b.z - a.z}));
    }
  }

  void addLines() {
    for (const ChannelLine& line : model_.lines) {
      const float *a = line.ends[0].values, *b = line.ends[1].values;
      const auto& codes = line.ends[0].codes;
      add(groupOf(codes[1] == kChannelKindHeater, codes[0]), LengthFrom::lines,
          length({double{b[0]} - a[0], double{b[1]} - a[1], double{b[2]} - a[2]}));
    }
  }

  // Lines count where the layout has no beam for the group.
  static void add(ChannelGroup& group, LengthFrom source, double value) {
    if (!(value > 0) || (group.lengthFrom != LengthFrom::nothing && group.lengthFrom != source)) return;
    group.lengthFrom = source;
    group.length += value;
  }

  void addPieces() {
    std::vector<std::uint32_t> places(surface_.kind.size());
    std::map<const ChannelGroup*, std::uint32_t> placeOf;
    std::vector<ChannelGroup*> order;
    for (auto& [key, group] : groups_) {
      placeOf[&group] = static_cast<std::uint32_t>(order.size());
      order.push_back(&group);
    }
    for (std::size_t face = 0; face < places.size(); ++face) places[face] = placeOf[&groupOfFace(face)];
    const auto pieces = findPieces(surface_, places, order.size());
    for (std::size_t i = 0; i < order.size(); ++i) order[i]->pieces = pieces[i];
  }

  static void measure(ChannelGroup& group) {
    if (group.volume > 0) {
      group.volumeFrom = VolumeFrom::elements;
    } else if (group.pieces.isClosed && group.pieces.volume > 0) {
      group.volumeFrom = VolumeFrom::surface;
      group.volume = group.pieces.volume;
    }
    if (!(group.volume > 0) || !(group.wettedArea > 0)) return;
    group.diameter = 4 * group.volume / group.wettedArea;
    const std::int64_t ends = group.pieces.inlets + group.pieces.outlets + group.pieces.hoses;
    group.surfaceLength = ends > 0 && group.endArea > 0
                              ? group.volume * static_cast<double>(ends) / group.endArea
                              : group.wettedArea * group.wettedArea / (4 * std::numbers::pi * group.volume);
    if (group.lengthFrom != LengthFrom::nothing) return;
    group.lengthFrom = LengthFrom::surface;
    group.length = group.surfaceLength;
  }

  const ChannelSurface& surface_;
  const MeshModel& model_;
  std::map<Key, ChannelGroup> groups_;
  ChannelGroup* last_ = nullptr;
};

}  // namespace

std::vector<ChannelGroup> listGroups(const ChannelSurface& surface, const MeshModel& model) {
  return GroupTable(surface, model).make();
}

}  // namespace orvmesh::channel
