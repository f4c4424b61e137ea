#include <orvmesh/transfer_20_to_02.h>

#include <algorithm>
#include <exception>
#include <span>
#include <vector>

namespace {

constexpr int kMostFaces = 9;

std::span<const int> nodesOf(const int* face) {
  if (face == nullptr) return {};
  return {face + 1, static_cast<std::size_t>(std::max(face[0], 0))};
}

// The faces that each node has so far, and whether it was seen in the face at hand.
class NodeFaces {
 public:
  NodeFaces(int nNode, int** rows)
      : rows_(rows),
        nNode_(nNode),
        counts_(static_cast<std::size_t>(nNode) + 1),
        seen_(static_cast<std::size_t>(nNode) + 1) {}

  void add(int face, std::span<const int> nodes) {
    for (const int node : nodes) {
      if (!holds(node) || seen_[at(node)] || counts_[at(node)] >= kMostFaces) continue;
      rows_[node][++counts_[at(node)]] = face;
      seen_[at(node)] = 1;
    }
    for (const int node : nodes)
      if (holds(node)) seen_[at(node)] = 0;
  }
  void finish() const {
    for (int node = 1; node <= nNode_; ++node)
      if (holds(node)) rows_[node][0] = counts_[at(node)];
  }

 private:
  bool holds(int node) const { return 1 <= node && node <= nNode_ && rows_[node] != nullptr; }
  static std::size_t at(int node) { return static_cast<std::size_t>(node); }

  int** rows_;
  int nNode_;
  std::vector<int> counts_;
  std::vector<char> seen_;
};

}  // namespace

COrvTransfer20to02::COrvTransfer20to02() = default;
COrvTransfer20to02::~COrvTransfer20to02() = default;
COrvTransfer20to02::COrvTransfer20to02(const COrvTransfer20to02&) = default;
COrvTransfer20to02& COrvTransfer20to02::operator=(const COrvTransfer20to02&) = default;

int COrvTransfer20to02::Get02From20(int nFace, int** faceNodes, int nNode, int** nodeFaces) try {
  if (nodeFaces == nullptr) return 1;
  NodeFaces found(std::max(nNode, 0), nodeFaces);
  for (int face = 1; faceNodes != nullptr && face <= nFace; ++face) found.add(face, nodesOf(faceNodes[face]));
  found.finish();
  return 1;
} catch (const std::exception&) {
  return 0;
}
