#include "channel/channel_surface.h"

#include "base/ranges.h"
#include "channel/node_numbering.h"
#include "channel/ofe_surface_reader.h"

namespace orvmesh::channel {
namespace {

struct Place {
  float x, y, z;
};

std::uint8_t oneOrTwo(int code) { return code == 1 || code == 2 ? static_cast<std::uint8_t>(code) : 0; }

bool isHose(const ChannelFace& face) { return !face.isWall() && face.endCode == 0; }

void append(ChannelSurface& surface, const ChannelFace& face) {
  surface.nodes.insert(surface.nodes.end(), face.nodes, face.nodes + 4);
  surface.group.push_back(face.group);
  surface.vertexCount.push_back(face.vertexCount());
  surface.interfaceId.push_back(face.isWall() ? ChannelFace::kWall : ChannelFace::kEnd);
  surface.kind.push_back(isHose(face) ? kHoseFace : oneOrTwo(face.surfaceCode));
  surface.endCode.push_back(face.isWall() ? 0 : oneOrTwo(face.endCode));
  surface.isHeater.push_back(face.surfaceCode == kChannelKindHeater ? 1 : 0);
}

void readFaces(OfeSurfaceReader& reader, const Console& console, ChannelSurface& surface) {
  const std::int32_t expected = reader.headerCount(m_HEADER_NElemS);
  FaceCounts counts;
  for (ChannelFace face; face.read(reader.file());) {
    counts.add(face);
    // Only walls are held against the header (quirk 54).
    if (face.isWall() && counts.total() > expected) counts.tellExcess(console);
    append(surface, face);
  }
  counts.tellProgress(console);
}

// Keeps of the file's nodes those that faces use, in new numbers. The first node was read already, if there
// is one.
void readNodes(OfeSurfaceReader& reader, bool hasNodes, Place place, ChannelSurface& surface) {
  const NodeNumbering numbering(surface.nodes);
  const auto wanted = numbering.ascending();
  const float scale = reader.scale();
  std::int32_t node = 1;
  auto next = wanted.begin();
  for (bool isThere = hasNodes; isThere && next != wanted.end(); ++next) {
    for (; node < *next && isThere; ++node)
      isThere = reader.file().readNodeBlockEntry(place.x, place.y, place.z) >= 0;
    if (!isThere) break;
    surface.xyz.insert(surface.xyz.end(), {place.x * scale, place.y * scale, place.z * scale});
  }
  surface.fileNumbers.assign(wanted.begin(), next);
  for (std::int32_t& each : surface.nodes) {
    const std::int32_t number = numbering.numberOf(each);
    each = number <= surface.nodeCount() ? number : 0;
  }
}

}  // namespace

int readChannelSurface(const char* path, Console console, ChannelSurface& surface, std::string& error) {
  OfeSurfaceReader reader(path, console);
  if (const int result = reader.open(); result <= 0) {
    error = reader.error();
    return result;
  }
  surface.groups = reader.headerCount(m_HEADER_NCCGroup);
  tell(console.progress, "ReadOFE_HEADER();");
  tell(console.progress, "m_NCCGroup=", surface.groups);

  tell(console.progress, "ReadOFE_Node();");
  tell(console.progress, "m_NTotNode=", reader.headerCount(m_HEADER_NNode));
  Place first{};
  const bool hasNodes = reader.file().readNodeBlockEntry(first.x, first.y, first.z) >= 0;
  if (hasNodes) tell(console.progress, "Yse! I got readNodeBlockEntry().");

  // Faces come before the other nodes: only those that they use need memory.
  readFaces(reader, console, surface);
  readNodes(reader, hasNodes, first, surface);
  tell(console.progress, "m_NTotCCSurfNode=", surface.nodeCount());

  surface.markers = readMarkers(reader.file());
  tell(console.progress, "nCoolantInletNumner=", surface.markers.countOf(Markers::kCoolantInlet),
       " nHeaterInletNumner=", surface.markers.countOf(Markers::kHeaterInlet),
       " nCoolantOutletNumner=", surface.markers.countOf(Markers::kCoolantOutlet));
  const int result = reader.close();
  error = reader.error();
  if (result > 0) tell(console.progress, "ReadOFE() OK");
  return result;
}

}  // namespace orvmesh::channel
