#include "import/msh_sections.h"

namespace orvmesh::importing {
namespace {

template <class Source>
void checkTag(Source& in, std::uint64_t tag) {
  if (tag == 0) [[unlikely]]
    in.fail("node tag 0; tags begin at 1");
}

template <class Source>
void checkTotal(Source& in, std::uint64_t found, std::uint64_t announced) {
  if (found != announced)
    in.fail("$Nodes announces " + std::to_string(announced) + " nodes and holds " + std::to_string(found));
}

// Room for this many more nodes; their numbers must fit.
template <class Source>
float* grow(Source& in, MshMesh& mesh, std::uint64_t nodes) {
  const auto before = mesh.xyz.size();
  if (before / 3 + nodes > kMaxEntities) in.fail("more than 2147483647 nodes");
  mesh.xyz.resize(before + 3 * nodes);
  return mesh.xyz.data() + before;
}

template <class Source>
void readBlock41(Source& in, MshMesh& mesh) {
  const auto dimension = in.int32("an entity dimension");
  if (dimension < 0 || dimension > 3)
    in.fail("a node block of dimension " + std::to_string(dimension) + "; expected 0 to 3");
  in.int32("an entity tag");
  const auto parametric = in.int32("0 or 1 for parametric");
  if (parametric != 0 && parametric != 1)
    in.fail("a node block with parametric " + std::to_string(parametric) + "; expected 0 or 1");
  const auto nodes = in.size("a number of nodes");
  const auto parameters = parametric == 1 ? static_cast<std::uint64_t>(dimension) : 0;
  in.require(nodes, 0, 1, 3 + parameters, "nodes");
  float* xyz = grow(in, mesh, nodes);
  for (std::uint64_t k = 0; k < nodes; ++k) {
    const auto tag = in.size("a node tag");
    checkTag(in, tag);
    mesh.tags.add(tag);
  }
  for (std::uint64_t k = 0; k < nodes; ++k) {
    for (int axis = 0; axis < 3; ++axis) *xyz++ = coordinate(in);
    if (parameters > 0) in.skipReals(parameters, "a parametric coordinate");
  }
}

template <class Source>
void readNodes41(Source& in, MshMesh& mesh) {
  const auto blocks = in.size("a number of entity blocks");
  const auto announced = in.size("a number of nodes");
  in.size("the smallest node tag");
  in.size("the largest node tag");
  for (std::uint64_t k = 0; k < blocks; ++k) readBlock41(in, mesh);
  checkTotal(in, mesh.tags.count(), announced);
}

template <class Source>
void readNodes22(Source& in, MshMesh& mesh, std::uint64_t nodes) {
  in.require(nodes, 1, 0, 3, "nodes");
  float* xyz = grow(in, mesh, nodes);
  for (std::uint64_t k = 0; k < nodes; ++k) {
    const auto tag = in.int32("a node tag");
    if (tag < 1) in.fail("node tag " + std::to_string(tag) + "; tags begin at 1");
    mesh.tags.add(static_cast<std::uint64_t>(tag));
    for (int axis = 0; axis < 3; ++axis) *xyz++ = coordinate(in);
  }
}

}  // namespace

template <class Source>
void readNodes(Source& in, MshReading& reading) {
  auto& mesh = reading.mesh;
  if (reading.version == MshVersion::v41) {
    readNodes41(in, mesh);
  } else {
    readNodes22(in, mesh, readCount22(in, "a number of nodes"));
  }
  if (!mesh.tags.finish(mesh.xyz))
    in.fail("node " + std::to_string(mesh.tags.repeatedTag()) + " stands twice in $Nodes");
}

template void readNodes(TextSource&, MshReading&);
template void readNodes(BinarySource&, MshReading&);

}  // namespace orvmesh::importing
