#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "platform/ofv_mesh.h"

namespace orvmesh::test {

// A grid of unit cubes as a finite-volume mesh, cells counted along x, then y, then z. Cavities 10 and 20 in
// turn, cell by cell; 20 is a channel.
struct BoxGrid {
  std::vector<double> xyz;
  std::vector<std::int64_t> offsets{0};
  std::vector<std::int32_t> nodes, owner, neighbour, cavity, number{10, 20}, kind{0, 1}, inlet{7, 3},
      group{1, 1000};

  explicit BoxGrid(std::array<int, 3> size) : size_(size) {
    const auto [nx, ny, nz] = size;
    for (int z = 0; z <= nz; ++z)
      for (int y = 0; y <= ny; ++y)
        for (int x = 0; x <= nx; ++x) xyz.insert(xyz.end(), {1e3 + x, -1.0 * y, 0.5 + z});
    for (int z = 0; z < nz; ++z)
      for (int y = 0; y < ny; ++y)
        for (int x = 0; x < nx; ++x) addCell({x, y, z});
  }

  OFVMesh mesh() const { return {xyz, offsets, nodes, owner, neighbour, cavity, number, kind, inlet, group}; }

 private:
  using Place = std::array<int, 3>;
  std::int32_t cellAt(const Place& p) const {
    for (std::size_t d = 0; d < 3; ++d)
      if (p[d] < 0 || p[d] >= size_[d]) return 0;
    return 1 + p[0] + size_[0] * (p[1] + size_[1] * p[2]);
  }
  std::int32_t pointAt(const Place& p) const {
    return 1 + p[0] + (size_[0] + 1) * (p[1] + (size_[1] + 1) * p[2]);
  }

  // Every cell makes its faces but those that a cell before it has made. The y axis of the points is turned,
  // and so are the faces.
  void addCell(const Place& p) {
    cavity.push_back(1 + static_cast<std::int32_t>(cavity.size()) % 2);
    for (std::size_t d = 0; d < 3; ++d)
      for (const int side : {-1, 1}) {
        Place beyond = p;
        beyond[d] += side;
        const std::int32_t other = cellAt(beyond);
        if (side < 0 && other != 0) continue;
        const std::size_t u = (d + 1) % 3, v = (d + 2) % 3;
        Place corner = p;
        corner[d] += side > 0 ? 1 : 0;
        for (int k = 0; k < 4; ++k) {
          const int turn = side > 0 ? 3 - k : k;
          Place c = corner;
          c[u] += turn == 1 || turn == 2 ? 1 : 0;
          c[v] += turn >= 2 ? 1 : 0;
          nodes.push_back(pointAt(c));
        }
        offsets.push_back(static_cast<std::int64_t>(nodes.size()));
        owner.push_back(cellAt(p));
        neighbour.push_back(other);
      }
  }

  std::array<int, 3> size_;
};

}  // namespace orvmesh::test
