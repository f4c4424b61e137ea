#include "import/named_faces.h"

#include <algorithm>

#include "base/failure.h"

namespace orvmesh::importing {

FaceNodes sortedNodes(const std::int32_t* nodes, bool triangle) {
  FaceNodes sorted{nodes[0], nodes[1], nodes[2], triangle ? 0 : nodes[3]};
  std::sort(sorted.begin(), sorted.begin() + (triangle ? 3 : 4));
  return sorted;
}

NamedFaces::NamedFaces(const MshMesh& mesh, const GroupRoles& roles, std::int32_t nodeCount)
    : path_(mesh.path), marked_(static_cast<std::size_t>(nodeCount) + 1) {
  for (const auto& run : mesh.runs) {
    const auto& role = roles.ofSet[run.set];
    if (isEnd(role.kind) || isGate(role.kind)) collect(mesh, run, role);
  }
  sortAndCompare();
}

void NamedFaces::collect(const MshMesh& mesh, const ElementRun& run, const Role& role) {
  const bool triangle = run.type->shape == Shape::triangle;
  for (std::uint32_t k = 0; k < run.count; ++k) {
    const auto* nodes = mesh.cornersOfElement(run, k);
    faces_.push_back({sortedNodes(nodes, triangle), role, run.firstTag + k, false});
    for (int c = 0; c < (triangle ? 3 : 4); ++c) marked_[static_cast<std::size_t>(nodes[c])] = 1;
  }
}

void NamedFaces::sortAndCompare() {
  std::stable_sort(faces_.begin(), faces_.end(),
                   [](const Face& a, const Face& b) { return a.nodes < b.nodes; });
  const auto sameNodes = [](const Face& a, const Face& b) { return a.nodes == b.nodes; };
  for (std::size_t k = 1; k < faces_.size(); ++k)
    if (sameNodes(faces_[k - 1], faces_[k]) && faces_[k - 1].role != faces_[k].role)
      throw Failure(path_,
                    label(faces_[k - 1]) + " and " + label(faces_[k]) + " are one face; it needs one role");
  faces_.erase(std::unique(faces_.begin(), faces_.end(), sameNodes), faces_.end());
}

const Role* NamedFaces::find(const std::int32_t (&nodes)[4], bool (*suits)(RoleKind)) {
  const bool triangle = nodes[2] == nodes[3];
  for (const auto node : nodes)
    if (marked_[static_cast<std::size_t>(node)] == 0) return nullptr;
  const auto key = sortedNodes(nodes, triangle);
  const auto at = std::lower_bound(faces_.begin(), faces_.end(), key,
                                   [](const Face& face, const FaceNodes& n) { return face.nodes < n; });
  if (at == faces_.end() || at->nodes != key || !suits(at->role.kind)) return nullptr;
  at->found = true;
  return &at->role;
}

std::string NamedFaces::label(const Face& face) const {
  return "element " + std::to_string(face.tag) + " (" + textOf(face.role) + ")";
}

void NamedFaces::requireAllFound() const {
  const auto lost = std::find_if(faces_.begin(), faces_.end(), [](const Face& face) { return !face.found; });
  if (lost == faces_.end()) return;
  throw Failure(path_, label(*lost) + (isEnd(lost->role.kind)
                                           ? " lies on no end of a channel; an end is a face of a channel "
                                             "element with neither mold nor channel behind it"
                                           : " lies on no face of a hot-runner element towards part, mold or "
                                             "outside"));
}

}  // namespace orvmesh::importing
