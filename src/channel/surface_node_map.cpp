#include "channel/surface_node_map.h"

#include <limits>

#include "channel/ofe_surface_reader.h"
#include "platform/draw_stl.h"
#include "platform/octree.h"

namespace orvmesh::channel {
namespace {

constexpr double kNoDistance = std::numeric_limits<double>::quiet_NaN();

// What a node of the channels' surface is to the mold base. Ascending: the stronger mark stays.
enum Mark : std::uint8_t { kElsewhere, kToBeSearched, kOnMold };

class NodeMapper {
 public:
  NodeMapper(OfeSurfaceReader& reader, const Console& console, SurfaceNodeMap& map)
      : reader_(reader), console_(console), map_(map) {}

  void read();
  void relate();
  void draw(const std::string& stlPath);

 private:
  void readMoldNodes();
  void readFaces();
  void listNodes();
  std::int32_t search(COrv3DOctreeMimic& tree, std::int32_t node, double& distance) const;

  OfeSurfaceReader& reader_;
  const Console& console_;
  SurfaceNodeMap& map_;
  FileNodes nodes_;
  std::vector<Mark> marks_;           // by node
  std::vector<std::int32_t> onMold_;  // the mold base's nodes, ascending
};

void NodeMapper::read() {
  const std::int32_t headerNodes = reader_.headerCount(m_HEADER_NNode);
  tell(console_.progress, "ReadOFE_HEADER();");
  tell(console_.progress, "m_NTotNode=", headerNodes);
  tell(console_.progress, "m_NTotSurfElmt=", reader_.headerCount(m_HEADER_NElemS));
  tell(console_.progress, "ReadOFE_Node();");
  tell(console_.progress, "m_NTotNode=", headerNodes);
  nodes_ = reader_.readNodes();
  marks_.resize(static_cast<std::size_t>(nodes_.count()) + 1);
  readMoldNodes();
  readFaces();
  listNodes();
}

void NodeMapper::readMoldNodes() {
  tell(console_.progress, "ReadOFE_MoldbaseElement();");
  std::vector<bool> isUsed(marks_.size());
  int count = 0, nodes[8], a = 0, b = 0;
  float value = 0;
  // Elements beyond the header's count are not the mold base's (quirk 56).
  const std::int32_t most = reader_.headerCount(m_HEADER_NElemM);
  for (std::int32_t e = 0;
       e < most && reader_.file().readElementMoldBaseBlockEntry(count, nodes, a, b, value) >= 0; ++e)
    for (int k = 0; k < count; ++k)
      if (nodes_.holds(nodes[k])) isUsed[static_cast<std::size_t>(nodes[k])] = true;
  for (std::size_t node = 1; node < isUsed.size(); ++node)
    if (isUsed[node]) onMold_.push_back(static_cast<std::int32_t>(node));
  map_.moldNodes = static_cast<std::int32_t>(onMold_.size());
  tell(console_.progress, "m_NTotMBNode=", map_.moldNodes);
}

void NodeMapper::readFaces() {
  tell(console_.progress, "ReadOFE_ElementSurface();");
  const std::int32_t expected = reader_.headerCount(m_HEADER_NElemS);
  FaceCounts counts;
  ChannelFace face;
  const auto tellFirst = [&] { tell(console_.progress, "Yse! I got readElementSurfaceBlockEntry()"); };
  while (face.read(reader_.file())) {
    if (counts.total() == 0) tellFirst();
    counts.add(face);
    if (counts.total() > expected) counts.tellExcess(console_);
    const Mark mark = face.isWall() && face.endCode != 0 ? kOnMold : kToBeSearched;
    for (const int node : face.nodes)
      if (nodes_.holds(node) && marks_[static_cast<std::size_t>(node)] < mark)
        marks_[static_cast<std::size_t>(node)] = mark;
  }
  if (counts.total() == 0 && face.entriesRead > 0) tellFirst();
  map_.walls = counts.walls;
  map_.ends = counts.ends;
  counts.tellProgress(console_);
}

void NodeMapper::listNodes() {
  for (std::size_t node = 1; node < marks_.size(); ++node) {
    if (marks_[node] == kElsewhere) continue;
    const auto number = static_cast<std::int32_t>(node);
    map_.nodes.push_back(number);
    map_.searched.push_back(marks_[node] == kToBeSearched ? 1 : 0);
    map_.xyz.insert(map_.xyz.end(), nodes_[number], nodes_[number] + 3);
  }
  tell(console_.progress, "m_NTotCCSurfNode=", map_.count());
}

void NodeMapper::relate() {
  tell(console_.progress, "CreateRelation_CCSurfAndMolbase();");
  COrv3DOctreeMimic tree;
  tree.SetNodeDimension(map_.moldNodes);
  for (std::int32_t i = 1; i <= map_.moldNodes; ++i) {
    const float* const p = nodes_[onMold_[static_cast<std::size_t>(i) - 1]];
    tree.SetNodeData(i, p[0], p[1], p[2]);
  }
  tree.Init();
  map_.toMold = map_.nodes;
  map_.distance.assign(map_.nodes.size(), kNoDistance);
  for (std::size_t k = 0; k < map_.nodes.size(); ++k)
    if (map_.searched[k] != 0) map_.toMold[k] = search(tree, map_.nodes[k], map_.distance[k]);
}

std::int32_t NodeMapper::search(COrv3DOctreeMimic& tree, std::int32_t node, double& distance) const {
  int ids[10] = {};
  double distances[10] = {};
  const float* const p = nodes_[node];
  if (tree.Search(p[0], p[1], p[2], 2, ids, distances) > 0) {
    distance = distances[1];
    return onMold_[static_cast<std::size_t>(ids[1]) - 1];
  }
  tell(console_.errors, "can not find CC node to MB node at CC NodeID=", node, " (", p[0], " , ", p[1], " , ",
       p[2], ")");
  return 0;
}

void NodeMapper::draw(const std::string& stlPath) {
  if (stlPath.empty()) return;
  COrvDrawVectorTool drawing;
  for (std::size_t k = 0; k < map_.nodes.size(); ++k) {
    if (map_.searched[k] == 0) continue;
    const float* const from = nodes_[map_.nodes[k]];
    const float* const to = nodes_[map_.toMold[k]];  // node 0 is the origin
    drawing.SetLine10(from[0], from[1], from[2], to[0], to[1], to[2]);
  }
  map_.isDrawn = drawing.OutputFile_STL(stlPath.c_str()) == 1;
  tell(console_.progress, "draw CC surface node to Moldbase node at ", stlPath);
}

}  // namespace

int mapSurfaceNodes(const char* path, const NodeMapOptions& options, SurfaceNodeMap& map,
                    std::string& error) {
  OfeSurfaceReader reader(path, options.console);
  int result = reader.open();
  if (result > 0) {
    NodeMapper mapper(reader, options.console, map);
    mapper.read();
    result = reader.close();
    if (result > 0) {
      tell(options.console.progress, "ReadOFE() OK");
      mapper.relate();
      mapper.draw(options.stlPath);
    }
  }
  error = reader.error();
  return result;
}

}  // namespace orvmesh::channel
