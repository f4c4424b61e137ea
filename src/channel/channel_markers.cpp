#include "channel/channel_markers.h"

#include <algorithm>

namespace orvmesh::channel {
namespace {

struct LayoutPoint {
  float x, y, z;
  int type;
  float diameter = 0;
  int beamCode = 0;
};
struct LayoutBeam {
  int ends[2];
  float diameters[2];
  int beamCode;
};
struct Layout {
  std::vector<LayoutPoint> points;
  std::vector<LayoutBeam> beams;
};

Layout readLayout(OFEIO_Manipulator& file) {
  Layout layout;
  int isPoint = 0, type = 0, code = 0, extra = 0;
  float x = 0, y = 0, z = 0, v[8];
  LayoutBeam beam{};
  while (file.readCoolantChannelLayoutBlockEntry(
             isPoint, x, y, z, type, beam.ends[0], beam.ends[1], beam.diameters[0], beam.diameters[1], code,
             beam.beamCode, extra, v[0], v[1], v[2], v[3], v[4], v[5], v[6], v[7]) >= 0) {
    if (isPoint != 0)
      layout.points.push_back({x, y, z, type});
    else
      layout.beams.push_back(beam);
  }
  return layout;
}

// A later beam overrules an earlier one at a point that they share.
void tellPoints(const std::vector<LayoutBeam>& beams, std::vector<LayoutPoint>& points) {
  const auto count = static_cast<int>(points.size());
  for (const LayoutBeam& beam : beams)
    for (int end = 0; end < 2; ++end) {
      if (beam.ends[end] < 1 || beam.ends[end] > count) continue;
      LayoutPoint& point = points[static_cast<std::size_t>(beam.ends[end]) - 1];
      point.diameter = beam.diameters[end];
      point.beamCode = beam.beamCode;
    }
}

// 0 for a point that is no marker, as the end of a heater.
int markerOf(const LayoutPoint& point) {
  const bool isHeater = isHeaterBeam(point.beamCode);
  if (point.type == 1) return isHeater ? Markers::kHeaterInlet : Markers::kCoolantInlet;
  return point.type == 2 && !isHeater ? Markers::kCoolantOutlet : 0;
}

}  // namespace

std::int32_t Markers::countOf(int which) const {
  return static_cast<std::int32_t>(std::count(kind.begin(), kind.end(), which));
}

Markers readMarkers(OFEIO_Manipulator& file) {
  Layout layout = readLayout(file);
  tellPoints(layout.beams, layout.points);
  Markers markers{{0}, {0}, {0}, {0}, {0}};
  for (const LayoutPoint& point : layout.points) {
    const int kind = markerOf(point);
    if (kind == 0) continue;
    markers.kind.push_back(kind);
    markers.x.push_back(point.x);
    markers.y.push_back(point.y);
    markers.z.push_back(point.z);
    markers.diameter.push_back(point.diameter);
  }
  return markers;
}

}  // namespace orvmesh::channel
