#include "import/sensors.h"

#include <algorithm>
#include <map>
#include <tuple>

#include "base/element_volume.h"
#include "base/failure.h"
#include "import/point_location.h"

namespace orvmesh::importing {
namespace {

// Placing looks at every node for every sensor.
constexpr std::size_t kMostSensors = 10000;

constexpr std::int32_t kPartElement = 1, kPartNode = 2, kSurface = 3, kMoldElement = 4, kMoldNode = 5,
                       kSixth = 6;

// The last point of each point group.
std::map<std::int32_t, Position> pointsOfGroups(const MshMesh& mesh) {
  std::map<std::int32_t, Position> points;
  for (const auto& run : mesh.runs) {
    const auto& set = mesh.sets[run.set];
    if (set.dimension != 0 || !run.type->taken()) continue;
    const auto node = static_cast<std::size_t>(*mesh.cornersOfElement(run, run.count - 1));
    for (const auto tag : mesh.groupsOf(set))
      std::copy_n(mesh.xyz.data() + 3 * (node - 1), 3, points[tag].begin());
  }
  return points;
}

class Placing {
 public:
  Placing(const VolumeMesh& volumes, const Surfaces& surfaces, std::vector<PlacedSensor>& sensors)
      : volumes_(volumes), surfaces_(surfaces), sensors_(sensors) {}

  void place() {
    onElements(kPartElement, Block::plastic, "a part element");
    onNodes(kPartNode, Block::plastic, "a part node");
    onSurfaces();
    onElements(kMoldElement, Block::mold, "a mold element");
    onNodes(kMoldNode, Block::mold, "a mold node");
    const bool anyPart = volumes_.blockEnd(Block::plastic) > 0;
    onNodes(kSixth, anyPart ? Block::plastic : Block::mold, "a part or mold node");
    for (auto& sensor : sensors_) sensor.ids[sensor.type == kSixth ? 1 : 2] = sensor.display;
  }

 private:
  std::span<PlacedSensor> ofType(std::int32_t type) {
    const auto byType = [](const PlacedSensor& a, const PlacedSensor& b) { return a.type < b.type; };
    const auto [first, last] =
        std::equal_range(sensors_.begin(), sensors_.end(), PlacedSensor{type, 0, {}, {}}, byType);
    return {first, last};
  }
  static std::vector<Vector> pointsOf(std::span<const PlacedSensor> sensors) {
    std::vector<Vector> points;
    for (const auto& sensor : sensors)
      points.push_back({sensor.position[0], sensor.position[1], sensor.position[2]});
    return points;
  }
  [[noreturn]] void failWithout(const PlacedSensor& sensor, const char* what) const {
    throw Failure(volumes_.mesh().path, textOf({RoleKind::sensor, sensor.type, sensor.display}) + " needs " +
                                            what + "; the mesh has none");
  }

  void onElements(std::int32_t type, Block block, const char* what) {
    const auto sensors = ofType(type);
    if (sensors.empty()) return;
    if (volumes_.blockFirst(block) == volumes_.blockEnd(block)) failWithout(sensors.front(), what);
    const auto elements = elementsAt(volumes_, block, pointsOf(sensors));
    for (std::size_t k = 0; k < sensors.size(); ++k)
      sensors[k].ids[0] = elements[k] - volumes_.blockFirst(block) + 1;
  }

  void onNodes(std::int32_t type, Block block, const char* what) {
    const auto sensors = ofType(type);
    if (sensors.empty()) return;
    if (volumes_.blockFirst(block) == volumes_.blockEnd(block)) failWithout(sensors.front(), what);
    const auto nodes = nearestNodes(volumes_, block, pointsOf(sensors));
    for (std::size_t k = 0; k < sensors.size(); ++k) sensors[k].ids[0] = nodes[k];
  }

  // The second number of a surface sensor is its surface too: that is where it is looked for when surfaces
  // are renumbered.
  void onSurfaces() {
    for (auto& sensor : ofType(kSurface)) {
      const auto face =
          nearestPartFace(volumes_, surfaces_, {sensor.position[0], sensor.position[1], sensor.position[2]});
      if (face < 0) failWithout(sensor, "a part surface");
      sensor.ids[0] = sensor.ids[1] = static_cast<std::int32_t>(face + 1);
    }
  }

  const VolumeMesh& volumes_;
  const Surfaces& surfaces_;
  std::vector<PlacedSensor>& sensors_;
};

}  // namespace

std::vector<PlacedSensor> listSensors(const MshMesh& mesh, const GroupRoles& groups, const RolesFile& roles) {
  std::vector<PlacedSensor> sensors;
  auto points = pointsOfGroups(mesh);
  for (const auto& group : groups.groups) {
    if (group.role.kind != RoleKind::sensor) continue;
    if (group.elements != 1)
      throw Failure(mesh.path, group.label() + " has " + std::to_string(group.elements) +
                                   " points; a sensor is one point");
    sensors.push_back({group.role.number, group.role.display, points[group.tag], {}});
  }
  for (const auto& sensor : roles.sensors)
    sensors.push_back({sensor.role.number, sensor.role.display, sensor.position, {}});
  if (sensors.size() > kMostSensors)
    throw Failure(mesh.path, std::to_string(sensors.size()) + " sensors; at most " +
                                 std::to_string(kMostSensors) + " are placed");
  std::stable_sort(sensors.begin(), sensors.end(), [](const PlacedSensor& a, const PlacedSensor& b) {
    return std::tie(a.type, a.display) < std::tie(b.type, b.display);
  });
  const auto twin =
      std::adjacent_find(sensors.begin(), sensors.end(), [](const PlacedSensor& a, const PlacedSensor& b) {
        return a.type == b.type && a.display == b.display;
      });
  if (twin != sensors.end())
    throw Failure(mesh.path, textOf({RoleKind::sensor, twin->type, twin->display}) +
                                 " stands twice; display numbers of one type differ");
  return sensors;
}

void placeSensors(const VolumeMesh& volumes, const Surfaces& surfaces, std::vector<PlacedSensor>& sensors) {
  if (!sensors.empty()) Placing(volumes, surfaces, sensors).place();
}

}  // namespace orvmesh::importing
