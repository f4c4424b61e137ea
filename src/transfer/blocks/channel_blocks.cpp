#include "transfer/blocks/channel_blocks.h"

#include <algorithm>

#include "transfer/blocks/mesh_blocks.h"
#include "transfer/solver_mesh_writer.h"

namespace orvmesh::transfer {
namespace {

constexpr float kRatio = 10000.0F;  // layout lengths and ratios are kept as integers of this fraction

bool touchesHeater(const ChannelDiameter& entry, const PrepassResults& found) {
  if (!found.heaters || found.heaters->coolantElements != 0) return false;
  return std::any_of(entry.nodes, entry.nodes + entry.nodeCount,
                     [&](std::int32_t n) { return found.heaters->nodeFlags[n] != 0; });
}

struct PointPlace {
  float x = 0, y = 0, z = 0;
  int id = 0;
};

PointPlace writeBeamPoints(COrvSolverMeshWriter& worker, float r) {
  PointPlace place;
  for (const BeamPoint& point : worker.model().beamPoints) {
    place = {static_cast<float>(point.x) * r, static_cast<float>(point.y) * r,
             static_cast<float>(point.z) * r, point.id};
    worker.writer.writeCoolantChannelLayoutBlockEntry(1, place.x, place.y, place.z, place.id, 0, 0, 0, 0, 0,
                                                      0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  }
  return place;
}

void writeBeamSegment(COrvSolverMeshWriter& worker, const BeamSegment& segment, const PointPlace& last,
                      float r) {
  const auto ratio = [&](std::size_t i) { return static_cast<float>(segment.values[i]) / kRatio; };
  const auto length = [&](std::int32_t value) { return static_cast<float>(value) * r / kRatio; };
  const auto& a = segment.values;
  // A segment repeats the place of the last point on purpose (quirk 18).
  worker.writer.writeCoolantChannelLayoutBlockEntry(
      0, last.x, last.y, last.z, last.id, a[1], a[2], length(a[0]), length(segment.segValue), segment.segCode,
      a[3], a[4], ratio(5), ratio(6), ratio(7), ratio(8), ratio(9), ratio(10), ratio(11), ratio(12));
}

}  // namespace

void WriteOfeElemCCLBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing ElemCCL");
  const float r = inverseLengthFactor(worker);
  int nodes[8] = {};  // positions beyond an entry's nodes keep those of an earlier one on purpose (quirk 19)
  std::int32_t written = 0;
  for (const ChannelDiameter& entry : worker.model().diameters) {
    std::copy_n(entry.nodes, entry.nodeCount, nodes);
    if (touchesHeater(entry, worker.found)) continue;
    ++written;
    worker.writer.writeCoolantChannelDiameterBlockEntry(nodes, static_cast<float>(entry.diameter) * r);
  }
  worker.setCounts(m_HEADER_NCCDiameter, {written});
}

void WriteOfeElemCCLineBin(COrvSolverMeshWriter& worker) {
  worker.banner("Writing ElemCCLine");
  const float r = inverseLengthFactor(worker);
  const auto& lines = worker.model().lines;
  worker.setCounts(m_HEADER_NCCLine, {static_cast<std::int32_t>(lines.size())});
  for (const ChannelLine& line : lines)
    for (const ChannelLineEnd& end : line.ends)
      worker.writer.writeCoolantChannelLineBlockEntry(end.values[0] * r, end.values[1] * r, end.values[2] * r,
                                                      end.values[3] * r, end.codes[0], end.codes[1],
                                                      end.codes[2], end.codes[3]);
}

void WriteOfeBeamElemCCLBin(COrvSolverMeshWriter& worker) {
  worker.trace("/// WriteOfeBeamElemCCLBin///");
  worker.banner("Writing Beam Element CCL");
  const MeshModel& model = worker.model();
  const auto points = static_cast<std::int32_t>(model.beamPoints.size());
  const auto segments = static_cast<std::int32_t>(model.beamSegments.size());
  worker.setCounts(m_HEADER_NLayoutPoint, {points, segments, points + segments});
  const float r = inverseLengthFactor(worker);
  const PointPlace last = writeBeamPoints(worker, r);
  for (const BeamSegment& segment : model.beamSegments) writeBeamSegment(worker, segment, last, r);
}

}  // namespace orvmesh::transfer
