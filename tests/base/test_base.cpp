#include <gtest/gtest.h>

#include <array>
#include <map>
#include <vector>

#include "base/face_tables.h"

using namespace orvmesh;

namespace {

// Corners of a reference element of each type.
const std::map<int, std::vector<std::array<double, 3>>> kReference{
    {4, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}}},
    {5, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {.5, .5, 1}}},
    {6, {{0, 0, 0}, {1, 0, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {0, 1, 1}}},
    {8, {{0, 0, 0}, {1, 0, 0}, {1, 1, 0}, {0, 1, 0}, {0, 0, 1}, {1, 0, 1}, {1, 1, 1}, {0, 1, 1}}}};

TEST(FaceTables, CloseTheElementAndLookOutwards) {
  for (const auto& [nodeCount, corners] : kReference) {
    std::map<std::pair<int, int>, int> edges;  // directed; each must meet its reverse once
    std::array<double, 3> centre{};
    for (const auto& p : corners)
      for (std::size_t k = 0; k < 3; ++k) centre[k] += p[k] / static_cast<double>(corners.size());
    for (const LocalFace& face : facesOf(nodeCount)) {
      std::array<std::array<double, 3>, 3> p;
      for (std::size_t i = 0; i < 3; ++i) p[i] = corners[static_cast<std::size_t>(face.nodes[i])];
      double outward = 0;
      for (std::size_t k = 0; k < 3; ++k) {
        const std::size_t a = (k + 1) % 3, b = (k + 2) % 3;
        const double normal =
            (p[1][a] - p[0][a]) * (p[2][b] - p[0][b]) - (p[1][b] - p[0][b]) * (p[2][a] - p[0][a]);
        outward += normal * (p[0][k] - centre[k]);
      }
      EXPECT_GT(outward, 0) << nodeCount;
      for (int i = 0; i < face.nodeCount; ++i) ++edges[{face.nodes[i], face.nodes[(i + 1) % face.nodeCount]}];
    }
    for (const auto& [edge, count] : edges) {
      EXPECT_EQ(count, 1);
      EXPECT_EQ(edges.count({edge.second, edge.first}), 1U);
    }
  }
  for (const int other : {-1, 0, 1, 2, 3, 7, 9}) EXPECT_TRUE(facesOf(other).empty());
}

}  // namespace
