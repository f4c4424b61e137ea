#include "channel/channel_stl.h"

#include "platform/draw_stl.h"

namespace orvmesh::channel {

bool drawSurface(const ChannelSurface& surface, const std::string& path) {
  std::vector<float> axes[3];  // 1-based
  for (std::size_t axis = 0; axis < 3; ++axis) {
    axes[axis].assign(1, 0);
    for (std::size_t at = axis; at < surface.xyz.size(); at += 3) axes[axis].push_back(surface.xyz[at]);
  }
  float *x = axes[0].data(), *y = axes[1].data(), *z = axes[2].data();
  COrvDrawSTLTool drawing;
  drawing.SetNode(x, y, z);
  for (std::size_t face = 0; face < surface.kind.size(); ++face) {
    int nodes[5] = {};
    bool isWhole = true;
    for (std::size_t k = 0; k < 4; ++k) isWhole &= (nodes[k + 1] = surface.nodes[4 * face + k]) != 0;
    if (isWhole) drawing.SetFace20(surface.vertexCount[face], nodes);
  }
  return drawing.OutputFile(path.c_str()) == 1;
}

}  // namespace orvmesh::channel
