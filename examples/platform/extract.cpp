// Coolant inlets and gates, from the mesh model.
#include <algorithm>
#include <cmath>
#include <map>
#include <set>

#include "base/face_tag.h"
#include "platform/cofedata.h"
#include "platform/ofeio.h"

using namespace orvmesh;

namespace {

struct Ball {
  std::int32_t group;
  COFE_Node centre;
  double radius;
};
double distance(const auto& a, const auto& b) { return std::hypot(a.x - b.x, a.y - b.y, a.z - b.z); }

// Around the inlet faces of each channel group.
std::vector<Ball> inletBalls(const MeshModel& model) {
  std::map<std::int32_t, std::set<std::int32_t>> nodesOf;
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    const SurfaceElement face = model.surfaces[s];
    if (face.interfaceId != 4 || face.contactCode != 1) continue;
    auto& nodes = nodesOf[channelGroupOf(face.tag, face.boundaryType)];
    nodes.insert(face.nodes, face.nodes + face.nodeCount);
  }
  std::vector<Ball> balls;
  for (const auto& [group, nodes] : nodesOf) {
    Ball ball{group, {0, 0, 0}, 0};
    const auto share = static_cast<double>(nodes.size());
    for (const auto n : nodes) {
      const COFE_Node p = model.nodes[n];
      ball.centre = {ball.centre.x + p.x / share, ball.centre.y + p.y / share, ball.centre.z + p.z / share};
    }
    for (const auto n : nodes) ball.radius = std::max(ball.radius, distance(model.nodes[n], ball.centre));
    balls.push_back(ball);
  }
  return balls;
}

}  // namespace

int OFEIO_Manipulator::extractCoolantInletInfo(const char* path, int, CoolantInletInfo& info) {
  info = {};
  COFEData data;
  if (data.ReadDataBin(path, nullptr, 0, false) != 1) return -1;
  const MeshModel& model = data.model();
  const auto balls = inletBalls(model);
  for (const Ball& ball : balls) {
    info.surfaceInletGroups.push_back(ball.group);
    info.surfaceInletFlags.push_back(1);
  }
  std::vector<std::int32_t> codes(model.beamPoints.size());
  for (const BeamSegment& beam : model.beamSegments)
    for (const int end : {1, 2})
      if (!codes.empty()) codes[static_cast<std::size_t>(beam.values[end]) - 1] = beam.values[3];
  for (std::size_t i = 0; i < codes.size(); ++i) {
    if (model.beamPoints[i].id != 1 || codes[i] == 6 || codes[i] == 60000) continue;
    info.layoutInletFlags.push_back(std::any_of(balls.begin(), balls.end(), [&](const Ball& ball) {
      return 0 <= ball.group && ball.group <= kLastGroup &&
             distance(model.beamPoints[i], ball.centre) <= ball.radius;
    }));
  }
  return static_cast<int>(info.layoutInletFlags.size() + info.surfaceInletFlags.size());
}

int OFEIO_Manipulator::extractGateInfo(const char* path, bool blockFormat, std::nullptr_t, GateInfo& info,
                                       std::nullptr_t) {
  info = {};
  COFEData data;
  if (!blockFormat || data.ReadDataBin(path, nullptr, 0, false) != 1) return 0;
  const MeshModel& model = data.model();
  std::map<std::int32_t, bool> common, hotCold;
  for (std::int32_t s = 1; s <= model.surfaces.count(); ++s) {
    const SurfaceElement face = model.surfaces[s];
    if (face.interfaceId != 1) continue;
    const bool owned =
        model.elemP.holds(face.elementNo) && kHotRunnerGroup.holds(model.elemP.group(face.elementNo));
    if (isCommonGateTag(face.tag)) common[tagGroup(face.tag)] |= owned;
    if (isHotColdGateTag(face.tag)) hotCold[tagGroup(face.tag)] |= owned;
  }
  for (const auto& [group, flag] : common) info.commonGates.push_back({group, flag});
  for (const auto& [group, flag] : hotCold) info.hotColdGates.push_back({group, flag});
  return 1;
}
