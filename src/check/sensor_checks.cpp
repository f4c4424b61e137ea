#include <algorithm>
#include <limits>

#include "check/checkers.h"

namespace orvmesh::check {
namespace {

constexpr int kKinds = 6, kSixth = 5;
constexpr const char* kSensorKinds[kKinds] = {"part element sensor", "part node sensor", "surface sensor",
                                              "mold element sensor", "mold node sensor", "sensor of kind 6"};
enum class On : std::uint8_t { element, node, surface };
struct KindRule {
  On on;
  unsigned blocks;  // bits of the element lists it may lie in
};
constexpr unsigned kInPart = 1U << kPlastic, kInMold = 1U << kMold;
constexpr KindRule kKindRules[kKinds] = {{On::element, kInPart}, {On::node, kInPart},
                                         {On::surface, kInPart}, {On::element, kInMold},
                                         {On::node, kInMold},    {On::node, kInPart | kInMold}};

struct Box {
  Vector low, high;
  Box() {
    low.fill(std::numeric_limits<double>::max());
    high.fill(std::numeric_limits<double>::lowest());
  }
  void add(const Vector& p) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      low[axis] = std::min(low[axis], p[axis]);
      high[axis] = std::max(high[axis], p[axis]);
    }
  }
  // Inside, or beyond it by at most so many times its longest side.
  bool holds(const Vector& p, double margin) const {
    double size = 0;
    for (std::size_t axis = 0; axis < 3; ++axis) size = std::max(size, high[axis] - low[axis]);
    for (std::size_t axis = 0; axis < 3; ++axis)
      if (p[axis] < low[axis] - margin * size || p[axis] > high[axis] + margin * size) return false;
    return true;
  }
};

Box boxOf(const MeshModel& model, std::span<const std::int32_t> nodes) {
  Box box;
  for (const std::int32_t node : nodes) box.add(positionOf(model, node));
  return box;
}

struct Site {
  int kind;  // from 0
  std::size_t place;
  const Sensor* sensor;
  Vector position() const { return {sensor->x, sensor->y, sensor->z}; }
};

// The boxes of the elements around the nodes that sensors name, part and mold apart.
class NodeBoxes {
 public:
  NodeBoxes(const MeshModel& model, std::span<const Site> sites)
      : slots_(static_cast<std::size_t>(model.nodes.count()) + 1) {
    for (const Site& site : sites) {
      const std::int32_t node = site.sensor->ids[0];
      if (kKindRules[site.kind].on != On::node || node < 1 || node > model.nodes.count()) continue;
      std::int32_t& slot = slots_[static_cast<std::size_t>(node)];
      if (slot != 0) continue;
      boxes_.emplace_back();
      slot = static_cast<std::int32_t>(boxes_.size());
    }
    for (std::size_t block = 0; block < kChannel && !boxes_.empty(); ++block) addElements(model, block);
  }
  const Box& at(std::int32_t node, std::size_t block) const {
    return boxes_[static_cast<std::size_t>(slots_[static_cast<std::size_t>(node)]) - 1][block];
  }

 private:
  void addElements(const MeshModel& model, std::size_t block) {
    const ElementTable& table = tableOf(model, block);
    for (std::int32_t e = 1; e <= table.count(); ++e) {
      const auto nodes = table.nodes(e);
      for (const std::int32_t node : nodes)
        if (const std::int32_t slot = slots_[static_cast<std::size_t>(node)]; slot != 0)
          for (const std::int32_t corner : nodes)
            boxes_[static_cast<std::size_t>(slot) - 1][block].add(positionOf(model, corner));
    }
  }

  std::vector<std::int32_t> slots_;  // by node: 1 + place in boxes_
  std::vector<std::array<Box, kChannel>> boxes_;
};

// What is wrong with the number that the sensor names; empty when it is of the right component and at the
// sensor's place.
class Naming {
 public:
  Naming(const MeshModel& model, const NodeUses& uses, std::span<const Site> sites)
      : model_(model), uses_(uses), boxes_(model, sites) {}

  std::string complaint(const Site& site) const {
    switch (kKindRules[site.kind].on) {
      case On::element:
        return onElement(site);
      case On::node:
        return onNode(site);
      default:
        return onSurface(site);
    }
  }

 private:
  static std::string notThere(const char* what, std::int32_t number, std::int32_t last) {
    return "names " + std::string(what) + ' ' + std::to_string(number) + " (legal: 1 to " +
           std::to_string(last) + ")";
  }
  static std::string offBox(const Box& box, double margin, const Site& site, const std::string& what) {
    return box.holds(site.position(), margin) ? std::string()
                                              : "does not lie at " + what + ", which it names";
  }

  std::string onElement(const Site& site) const {
    const std::size_t block = kKindRules[site.kind].blocks == kInPart ? kPlastic : kMold;
    const ElementTable& table = tableOf(model_, block);
    const std::int32_t e = site.sensor->ids[0];
    if (!table.holds(e)) return notThere(kElementKinds[block], e, table.count());
    constexpr double kRounding = 1e-3;
    return offBox(boxOf(model_, table.nodes(e)), kRounding, site, textOf({block, e}));
  }

  std::string onNode(const Site& site) const {
    const std::int32_t node = site.sensor->ids[0];
    if (node < 1 || node > model_.nodes.count()) return notThere("node", node, model_.nodes.count());
    const unsigned blocks = kKindRules[site.kind].blocks;
    const unsigned has = uses_[static_cast<std::size_t>(node)] & blocks;
    // Where sensors of kind 6 lie is open.
    if (has != 0 && site.kind == kSixth) return {};
    // The nearest node need not be one of the element that holds the sensor, where elements grow.
    constexpr double kGrowth = 0.5;
    for (std::size_t block = 0; block < kChannel; ++block)
      if ((has >> block & 1U) != 0 && boxes_.at(node, block).holds(site.position(), kGrowth)) return {};
    if (has != 0) return "does not lie at node " + std::to_string(node) + ", which it names";
    return "names node " + std::to_string(node) + ", which is of no " +
           (blocks == kInPart   ? "plastic"
            : blocks == kInMold ? "mold"
                                : "plastic or mold") +
           " element";
  }

  // The second number is the surface; files of other programs may have only the first.
  std::string onSurface(const Site& site) const {
    const std::int32_t s = site.sensor->ids[1] != 0 ? site.sensor->ids[1] : site.sensor->ids[0];
    const SurfaceTable& surfaces = model_.surfaces;
    if (s < 1 || s > surfaces.count()) return notThere("surface element", s, surfaces.count());
    const SurfaceElement face = surfaces[s];
    const std::string what = "surface element " + std::to_string(s);
    if (face.interfaceId != 1) return "names " + what + ", which is no part face";
    constexpr double kBeside = 1;
    return offBox(boxOf(model_, {face.nodes, static_cast<std::size_t>(face.nodeCount)}), kBeside, site, what);
  }

  const MeshModel& model_;
  const NodeUses& uses_;
  NodeBoxes boxes_;
};

bool hasComponent(const MeshModel& model, unsigned blocks) {
  return ((blocks & kInPart) != 0 && model.elemP.count() > 0) ||
         ((blocks & kInMold) != 0 && model.elemM.count() > 0);
}

// Sensors of components without elements are told of with these.
std::vector<Site> sitesOf(const MeshModel& model) {
  std::vector<Site> sites;
  for (int kind = 0; kind < kKinds; ++kind)
    if (hasComponent(model, kKindRules[kind].blocks))
      for (std::size_t k = 0; k < model.sensors[kind].size(); ++k)
        sites.push_back({kind, k, &model.sensors[kind][k]});
  return sites;
}

}  // namespace

void checkSensors(const MeshModel& model, const NodeUses& uses, Collector& found) {
  const auto sites = sitesOf(model);
  if (sites.empty()) return;
  const Naming naming(model, uses, sites);
  const int unsplit = model.header[2] != 0 ? kUnsplitSensors : 0;
  for (const Site& site : sites) {
    const std::string complaint = naming.complaint(site);
    if (complaint.empty()) continue;
    found.add(Code::sensorOutside, unsplit + site.kind + 1, [&] {
      return Entity{kSensorKinds[site.kind], static_cast<std::int64_t>(site.place) + 1, complaint,
                    site.position()};
    });
  }
}

}  // namespace orvmesh::check
