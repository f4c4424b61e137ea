#include "transfer/rules/face_drawings.h"

namespace orvmesh::transfer {

FaceDrawings::FaceDrawings(const NodeTable& nodes, float factor) {
  const auto size = static_cast<std::size_t>(nodes.count()) + 1;
  x_.resize(size);
  y_.resize(size);
  z_.resize(size);
  for (std::int32_t n = 1; n <= nodes.count(); ++n) {
    const COFE_Node node = nodes[n];
    const auto i = static_cast<std::size_t>(n);
    x_[i] = static_cast<float>(node.x) * factor;
    y_[i] = static_cast<float>(node.y) * factor;
    z_[i] = static_cast<float>(node.z) * factor;
  }
}

void FaceDrawings::draw(int group, const std::int32_t* nodes) {
  if (group < 0 || group >= kGroups) return;
  auto& tool = tools_[static_cast<std::size_t>(group)];
  if (!tool) {
    tool = std::make_unique<COrvDrawSTLTool>();
    float* x = x_.data();
    float* y = y_.data();
    float* z = z_.data();
    tool->SetNode(x, y, z);
  }
  int oneBased[5] = {0, nodes[0], nodes[1], nodes[2], nodes[3]};
  tool->SetFace20(4, oneBased);
}

// The first name contradicts its content; readers look for it so (quirk 22).
std::string FaceDrawings::suffix(int group) {
  switch (group) {
    case TouchesPart:
      return ".Trans_MBFace2_NonMatchPart.stl";
    case OnChannel:
      return ".Trans_MBFace2_CC.stl";
    case PartWritten:
      return ".Trans_MBFace2_MatchPart.stl";
    case PartUnmatched:
      return ".Trans_PartSurfNoMatch.stl";
    case Air:
      return ".Trans_MBFace2_Air.stl";
    case ChannelEnd:
      return ".Trans_MBFace2_CCEnd.stl";
    case AllFaces:
      return ".Trans_AllFace.stl";
    default:
      return ".Trans_MBFace2_Group" + std::to_string(group) + ".stl";
  }
}

void FaceDrawings::write(const std::string& sourcePath) const {
  for (int group = 0; group < kGroups; ++group)
    if (const auto& tool = tools_[static_cast<std::size_t>(group)])
      tool->OutputFile((sourcePath + suffix(group)).c_str());
}

}  // namespace orvmesh::transfer
