#include "transfer/prepass/node_typing.h"

#include <algorithm>
#include <array>
#include <vector>

#include "base/ranges.h"
#include "orvmesh/mesh_format_transfer.h"

namespace orvmesh::transfer {
namespace {

// A byte per node while the passes run: they touch nodes in the elements' order, and a byte array stays in
// the cache.
using Types = std::vector<std::uint8_t>;

std::uint8_t& at(Types& types, std::int32_t node) { return types[static_cast<std::size_t>(node)]; }

std::int32_t typeInserts(const ElementTable& mold, Types& types) {
  std::int32_t inserts = 0;
  for (std::int32_t e = 1; e <= mold.count(); ++e) {
    if (!kInsertTyped.holds(mold.material(e))) continue;
    ++inserts;
    for (const std::int32_t n : mold.nodes(e)) {
      std::uint8_t& type = at(types, n);
      const bool onPart = type == NodeType_Part || type == NodeType_PartOnPartInsert;
      type = onPart ? NodeType_PartOnPartInsert : NodeType_PartInsert;
    }
  }
  return inserts;
}

void typeHeaters(const ElementTable& channels, Types& types) {
  for (std::int32_t e = 1; e <= channels.count(); ++e) {
    if (channels.material(e) != kChannelKindHeater) continue;
    for (const std::int32_t n : channels.nodes(e)) at(types, n) = NodeType_Heater;
  }
}

// What each type becomes when a mold element uses the node; a second time changes nothing more.
constexpr std::array<std::uint8_t, 13> kOnMold{NodeType_Mold,
                                               NodeType_PartOnMold,
                                               NodeType_Mold,
                                               NodeType_PartInsert,
                                               NodeType_PartOnMold,
                                               NodeType_PartOnPartInsert,
                                               6,
                                               NodeType_ChannelOnMold,
                                               NodeType_HeaterOnMold,
                                               NodeType_ChannelOnMold,
                                               NodeType_HeaterOnMold,
                                               NodeType_HeaterOnAir,
                                               NodeType_HeaterFace};

OneBasedArray<std::int32_t> nodesOfType(const Types& types, std::uint8_t wanted) {
  OneBasedArray<std::int32_t> nodes(
      static_cast<std::int32_t>(std::count(types.begin() + 1, types.end(), wanted)));
  std::int32_t next = 0;
  for (std::size_t n = 1; n < types.size(); ++n)
    if (types[n] == wanted) nodes[++next] = static_cast<std::int32_t>(n);
  return nodes;
}

}  // namespace

NodeTyping typeNodes(const MeshModel& model) {
  const std::int32_t count = model.nodes.count();
  Types types(static_cast<std::size_t>(count) + 1);
  for (const std::int32_t n : model.elemP.connectivity) at(types, n) = NodeType_Part;
  NodeTyping typing;
  typing.insertElements = typeInserts(model.elemM, types);
  typeHeaters(model.elemC, types);
  for (const std::int32_t n : model.elemM.connectivity) at(types, n) = kOnMold[at(types, n)];
  typing.contactNodes = nodesOfType(types, NodeType_PartOnPartInsert);
  typing.type = OneBasedArray<std::int32_t>(count);
  std::copy(types.begin() + 1, types.end(), typing.type.data() + 1);
  return typing;
}

OneBasedArray<std::int32_t> joinedElementMaterials(const MeshModel& model, std::int32_t insertElements) {
  const std::int32_t plastic = model.elemP.count();
  OneBasedArray<std::int32_t> materials(plastic + insertElements);
  std::int32_t next = 0;
  while (next < plastic) materials[++next] = 1;
  for (const std::int32_t material : model.elemM.fieldA)
    if (kInsertTyped.holds(material)) materials[++next] = material;
  return materials;
}

ChannelNodeLists listChannelNodes(const NodeTyping& typing) {
  ChannelNodeLists lists;
  for (std::int32_t n = 1; n <= typing.type.count(); ++n) {
    const std::int32_t type = typing.type[n];
    if (NodeType_ChannelOnMold <= type && type <= NodeType_HeaterFace)
      lists.nodes[static_cast<std::size_t>(type - NodeType_ChannelOnMold)].push_back(n);
  }
  return lists;
}

}  // namespace orvmesh::transfer
