#pragma once

#include <algorithm>
#include <map>
#include <random>
#include <set>
#include <utility>
#include <vector>

#include "base/face_tables.h"
#include "embedded/mesh.h"

namespace orvmesh::test {

// A random mold of the cells of a cube, each a hexahedron or cut into tetrahedra. What touches what follows
// from the grid's own node numbers, which both numberings of the mesh come from: one for all components, or
// (split) one for each, a hair's breadth apart.
class CellGrid {
 public:
  CellGrid(unsigned seed, bool tetrahedra, bool split)
      : random_(seed), elements_(tetrahedra ? kTetrahedra : kHexahedron), split_(split) {}

  Mesh mesh;

 protected:
  // visit(role, grid nodes) for each element; cells have random roles below `roles`, the last of which is
  // void.
  template <class Visit>
  void eachElement(int roles, Visit visit) {
    for (int cell = 0; cell < kCells * kCells * kCells; ++cell) {
      const int role = static_cast<int>(random_() % static_cast<unsigned>(roles));
      if (role == roles - 1) continue;
      for (const auto& corners : elements_) {
        std::vector<int> grid;
        for (const int c : corners)
          grid.push_back(gridNode(cell % kCells + (c & 1), cell / kCells % kCells + (c >> 1 & 1),
                                  cell / kCells / kCells + (c >> 2)));
        visit(role, grid);
      }
    }
  }

  using Key = std::set<int>;

  // visit(number, key, nodes) for each face of an element: the key is its grid nodes, a triangle's last node
  // stands twice.
  template <class Visit>
  static void eachFace(const std::vector<int>& grid, const std::vector<int>& nodes, Visit visit) {
    const auto faces = facesOf(static_cast<int>(grid.size()));
    for (std::size_t f = 0; f < faces.size(); ++f) {
      Key key;
      std::array<int, 4> corners{};
      for (int k = 0; k < 4; ++k) {
        const auto place = static_cast<std::size_t>(faces[f].nodes[std::min(k, faces[f].nodeCount - 1)]);
        key.insert(grid[place]);
        corners[static_cast<std::size_t>(k)] = nodes[place];
      }
      visit(static_cast<int>(f), key, corners);
    }
  }

  int nodeOf(int grid, int component) {
    const auto [at, isNew] = numbers_.try_emplace({split_ ? component : 0, grid}, 0);
    if (!isNew) return at->second;
    const int n = kCells + 1;
    const auto placed = [this](int cell) {
      return static_cast<float>(cell) + (split_ ? static_cast<float>(random_() % 3) * 5e-7F : 0.F);
    };
    mesh.nodes.push_back({placed(grid % n), placed(grid / n % n), placed(grid / n / n)});
    return at->second = static_cast<int>(mesh.nodes.size());
  }

  std::mt19937 random_;

 private:
  static constexpr int kCells = 4;
  using Corners = std::vector<std::vector<int>>;
  static inline const Corners kHexahedron{{0, 1, 3, 2, 4, 5, 7, 6}};
  static inline const Corners kTetrahedra{{0, 1, 3, 7}, {0, 3, 2, 7}, {0, 2, 6, 7},
                                          {0, 6, 4, 7}, {0, 4, 5, 7}, {0, 5, 1, 7}};

  static int gridNode(int x, int y, int z) { return x + (kCells + 1) * (y + (kCells + 1) * z); }

  const Corners& elements_;
  bool split_;
  std::map<std::pair<int, int>, int> numbers_;
};

}  // namespace orvmesh::test
