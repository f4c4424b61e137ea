#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>

#include "base/face_tables.h"
#include "import/face_matcher.h"

using namespace orvmesh;
using namespace orvmesh::importing;

namespace {

struct Soup {
  std::vector<std::vector<std::int32_t>> corners;
  std::vector<ElementBlock> blocks;
};

// Elements of random shape on few nodes, so that faces coincide often, in blocks of ascending region.
Soup randomSoup(std::mt19937& random, int blocks, int elementsPerBlock, int nodes) {
  constexpr Shape kVolumes[] = {Shape::tetrahedron, Shape::pyramid, Shape::wedge, Shape::hexahedron};
  Soup soup;
  soup.corners.resize(static_cast<std::size_t>(blocks));
  std::vector<std::int32_t> deck(static_cast<std::size_t>(nodes));
  std::iota(deck.begin(), deck.end(), 1);
  int region = 0;
  for (auto& corners : soup.corners) {
    const auto shape = kVolumes[random() % 4];
    for (int e = static_cast<int>(random() % static_cast<unsigned>(elementsPerBlock)); e > 0; --e) {
      std::shuffle(deck.begin(), deck.end(), random);
      corners.insert(corners.end(), deck.begin(), deck.begin() + cornersOf(shape));
    }
    region += static_cast<int>(random() % 2);
    soup.blocks.push_back({shape, region, corners});
  }
  return soup;
}

struct Seen {
  std::int32_t element, face;
  int region;
  bool reversed;
};

// By the nodes of a face, begun at the smallest and gone round towards the smaller neighbour.
std::map<std::vector<std::int32_t>, std::vector<Seen>> bruteForce(const Soup& soup) {
  std::map<std::vector<std::int32_t>, std::vector<Seen>> faces;
  std::int32_t element = 0;
  for (const auto& block : soup.blocks) {
    const auto corners = static_cast<std::size_t>(cornersOf(block.shape));
    for (std::size_t first = 0; first < block.corners.size(); first += corners, ++element) {
      const auto table = facesOf(static_cast<int>(corners));
      for (std::size_t f = 0; f < table.size(); ++f) {
        std::vector<std::int32_t> nodes;
        for (int k = 0; k < table[f].nodeCount; ++k)
          nodes.push_back(block.corners[first + static_cast<std::size_t>(table[f].nodes[k])]);
        std::rotate(nodes.begin(), std::ranges::min_element(nodes), nodes.end());
        const bool reversed = nodes.back() < nodes[1];
        if (reversed) std::reverse(nodes.begin() + 1, nodes.end());
        faces[nodes].push_back({element, static_cast<std::int32_t>(f), block.region, reversed});
      }
    }
  }
  return faces;
}

using Link = std::array<std::int32_t, 4>;

}  // namespace

TEST(FaceMatcher, AgreesWithBruteForceOnRandomElements) {
  std::mt19937 random(7);
  std::size_t links = 0, crowds = 0, overlaps = 0;
  for (int round = 0; round < 300; ++round) {
    const auto soup = randomSoup(random, 5, 12, 8 + static_cast<int>(random() % 8));
    const auto found = matchFaces(soup.blocks, 16);
    std::set<Link> expected, actual;
    std::uint64_t expectedOverlaps = 0;
    bool crowd = false, oddCrowd = false;
    for (const auto& [nodes, seen] : bruteForce(soup)) {
      crowd |= seen.size() > 2;
      oddCrowd |= seen.size() > 2 && seen.size() % 2 == 1;
      if (seen.size() == 1) expected.insert({seen[0].element, seen[0].face, -1, 0});
      if (seen.size() != 2) continue;
      if (seen[0].region != seen[1].region)
        expected.insert({seen[0].element, seen[0].face, seen[1].element, seen[1].face});
      if (seen[0].reversed == seen[1].reversed) ++expectedOverlaps;
    }
    for (const auto& link : found.links)
      actual.insert({link.first.element, link.first.face, link.second.element, link.second.face});
    ASSERT_EQ(expected, actual) << "round " << round;
    ASSERT_EQ(found.links.size(), actual.size());
    ASSERT_EQ(expectedOverlaps, found.overlaps);
    // Four sides may cancel in pairs, three cannot.
    ASSERT_TRUE(!oddCrowd || found.crowd.size() >= 3);
    ASSERT_TRUE(crowd || found.crowd.empty());
    links += expected.size();
    overlaps += expectedOverlaps;
    crowds += crowd ? 1 : 0;
  }
  EXPECT_GT(links, 10000U);
  EXPECT_GT(crowds, 50U);
  EXPECT_GT(overlaps, 100U);
}
