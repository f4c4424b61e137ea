#include <gtest/gtest.h>

#include <cmath>
#include <map>
#include <random>
#include <set>

#include "base/face_buckets.h"
#include "check/checkers.h"

namespace {

using namespace orvmesh;

// The groups of random entries, window by window, against a map.
TEST(FaceBuckets, GroupsAreThoseOfAMap) {
  std::mt19937 random(7);
  const auto below = [&](std::uint32_t limit) { return static_cast<std::uint32_t>(random() % limit); };
  std::vector<std::pair<std::uint32_t, BucketEntry>> entries;
  for (std::uint32_t item = 0; item < 5000; ++item)
    entries.push_back({below(40) + 1, {below(5), below(3), item}});
  using Key = std::tuple<std::uint32_t, std::uint64_t, std::uint32_t>;
  std::map<Key, std::vector<std::uint32_t>> expected;
  for (const auto& [bucket, e] : entries) expected[{bucket, e.key, e.rest}].push_back(e.item);
  for (const std::size_t few : {std::size_t{1}, std::size_t{100}, std::size_t{100000}}) {
    std::map<Key, std::vector<std::uint32_t>> found;
    const auto each = [&](auto use) {
      for (const auto& [bucket, entry] : entries) use(bucket, entry);
    };
    forEachGroup(
        40, each,
        [&](std::uint32_t bucket, std::span<const BucketEntry> group) {
          auto& items = found[{bucket, group[0].key, group[0].rest}];
          EXPECT_TRUE(items.empty());
          for (const auto& entry : group) items.push_back(entry.item);
        },
        few);
    EXPECT_EQ(found, expected) << few;
  }
}

// Two node lists have one key exactly when they go round the same face; a quadrilateral is its diagonals.
TEST(FaceBuckets, KeysOfAllQuadrilaterals) {
  using Face = std::set<std::set<int>>;
  std::map<std::tuple<std::uint32_t, std::uint64_t, std::uint32_t>, Face> faceOf;
  std::map<Face, int> keys;
  for (int code = 0; code < 625; ++code) {
    const std::int32_t n[] = {code % 5 + 1, code / 5 % 5 + 1, code / 25 % 5 + 1, code / 125 + 1};
    const std::set<int> nodes(n, n + 4);
    const FaceKey key = faceKey(n, 4);
    const bool folded = n[0] == n[2] || n[1] == n[3];
    ASSERT_EQ(key.bucket == 0, nodes.size() < 3 || (nodes.size() == 3 && folded)) << code;
    if (key.bucket == 0) continue;
    EXPECT_EQ(key.bucket, static_cast<std::uint32_t>(*nodes.begin()));
    const Face face = nodes.size() == 3 ? Face{nodes} : Face{{n[0], n[2]}, {n[1], n[3]}};
    const auto [at, isNew] = faceOf.insert({{key.bucket, key.key, key.rest}, face});
    EXPECT_EQ(at->second, face);
    keys[face] += isNew ? 1 : 0;
  }
  EXPECT_EQ(keys.size(), 10U + 15U);
  for (const auto& [face, count] : keys) EXPECT_EQ(count, 1);
}

// Nodes in clusters, half of them with a second node nearer or farther than the tolerance in a random
// direction: as many coincide as were put near.
TEST(CoincidentNodes, AreFoundAcrossCellsOfTheGrid) {
  std::mt19937 random(3);
  std::uniform_real_distribution<double> place(0, 1), direction(-1, 1);
  std::vector<float> xyz{0, 0, 0, 1, 1, 1};
  const double tolerance = 1e-6 * std::sqrt(3.0);
  std::uint64_t near = 0;
  for (int i = 0; i < 20000; ++i) {
    double p[3], d[3];
    for (double& x : p) x = 0.1 * place(random);  // where floats are fine enough
    for (double& x : d) x = direction(random);
    const double length = std::hypot(d[0], d[1], d[2]);
    if (length < 0.1) continue;
    const double distance = tolerance * (i % 2 == 0 ? 0.95 : 1.05);
    near += i % 2 == 0 ? 1 : 0;
    for (int k = 0; k < 3; ++k) xyz.push_back(static_cast<float>(p[k]));
    for (int k = 0; k < 3; ++k) xyz.push_back(static_cast<float>(p[k] + distance * d[k] / length));
  }
  MeshModel model;
  model.nodes.xyz = xyz;
  check::Collector found;
  check::checkCoincidentNodes(model, check::NodeUses(xyz.size() / 3 + 1, 8), found);
  ASSERT_EQ(found.rows().size(), 1U);
  EXPECT_EQ(found.rows()[0].code, check::Code::coincidentNodes);
  EXPECT_NEAR(static_cast<double>(found.rows()[0].count), static_cast<double>(near), 2);
}

}  // namespace
