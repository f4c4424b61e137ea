#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "platform/octree.h"

namespace {

using Point = std::array<double, 3>;
constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

struct Found {
  std::vector<int> ids;
  std::vector<double> dists;
};

bool isFinite(const Point& p) { return std::isfinite(p[0]) && std::isfinite(p[1]) && std::isfinite(p[2]); }

double square(const Point& a, const Point& b) {
  double sum = 0;
  for (std::size_t k = 0; k < 3; ++k) sum += (a[k] - b[k]) * (a[k] - b[k]);
  return sum;
}

Found bruteForce(const std::vector<Point>& points, const Point& at, int count) {
  std::vector<std::pair<double, int>> all;
  for (std::size_t i = 0; i < points.size(); ++i)
    if (isFinite(points[i])) all.emplace_back(square(points[i], at), static_cast<int>(i) + 1);
  std::sort(all.begin(), all.end());
  all.resize(isFinite(at) ? std::min(all.size(), static_cast<std::size_t>(std::max(count, 0))) : 0);
  Found found;
  for (const auto& [distance, id] : all) {
    found.ids.push_back(id);
    found.dists.push_back(std::sqrt(distance));
  }
  return found;
}

void build(COrv3DOctreeMimic& tree, const std::vector<Point>& points) {
  tree.SetNodeDimension(static_cast<int>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i)
    tree.SetNodeData(static_cast<int>(i) + 1, points[i][0], points[i][1], points[i][2]);
  tree.Init();
}

// Whatever a search does not fill keeps -7.
Found search(COrv3DOctreeMimic& tree, const Point& at, int count) {
  std::vector<int> ids(static_cast<std::size_t>(std::max(count, 0)) + 3, -7);
  std::vector<double> dists(ids.size(), -7);
  const int found = tree.Search(at[0], at[1], at[2], count, ids.data(), dists.data());
  EXPECT_EQ(std::count(ids.begin(), ids.end(), -7), std::ssize(ids) - found);
  EXPECT_EQ(std::count(dists.begin(), dists.end(), -7), std::ssize(dists) - found);
  return {{ids.begin() + 1, ids.begin() + 1 + found}, {dists.begin() + 1, dists.begin() + 1 + found}};
}

void expectBruteForce(const std::vector<Point>& points, const std::vector<Point>& queries) {
  COrv3DOctreeMimic tree;
  build(tree, points);
  const int size = static_cast<int>(points.size());
  for (std::size_t q = 0; q < queries.size(); ++q)
    for (const int count : {1, 2, q < 3 ? size + 5 : 7}) {
      const Found wanted = bruteForce(points, queries[q], count), found = search(tree, queries[q], count);
      ASSERT_EQ(found.ids, wanted.ids) << "query " << q << ", count " << count;
      for (std::size_t i = 0; i < found.ids.size(); ++i) ASSERT_DOUBLE_EQ(found.dists[i], wanted.dists[i]);
    }
}

// A grid in shuffled order; queries on its points and in the middle of edges, faces and cells.
void expectGrid(double step, double origin) {
  std::vector<Point> points, queries;
  for (int i = 0; i < 12; ++i)
    for (int j = 0; j < 12; ++j)
      for (int k = 0; k < 12; ++k)
        points.push_back({origin + step * i, origin + step * j, origin + step * k});
  std::mt19937 random(5);
  std::shuffle(points.begin(), points.end(), random);
  for (int i = 0; i < 150; ++i) {
    const auto at = [&] { return origin + step * 0.5 * static_cast<double>(random() % 26) - step; };
    queries.push_back({at(), at(), at()});
  }
  expectBruteForce(points, queries);
}

TEST(Octree, OfEquallyFarPointsTheLowestNumberComesFirst) {
  expectGrid(1, 0);
  expectGrid(0.1, 0.3);  // squares are rounded
  expectGrid(1e-3, 1e4);
}

TEST(Octree, CopiesAndNonFinitePointsAmongOthers) {
  std::mt19937 random(7);
  std::uniform_real_distribution<double> anywhere(-2, 2);
  std::vector<Point> points, queries;
  for (int i = 0; i < 3000; ++i) {
    Point p{anywhere(random), anywhere(random), anywhere(random)};
    if (i % 3 == 1) p = points[random() % points.size()];
    if (i % 50 == 2) p[random() % 3] = std::array{kNaN, kInfinity, -kInfinity}[random() % 3];
    if (i % 40 == 3) p = {0.0, -0.0, i % 80 == 3 ? 0.0 : -0.0};
    points.push_back(p);
  }
  for (int i = 0; i < 300; ++i)
    queries.push_back(i % 2 == 0 ? points[random() % points.size()]
                                 : Point{anywhere(random), anywhere(random), anywhere(random)});
  queries.push_back({0, 0, 0});
  expectBruteForce(points, queries);
}

TEST(Octree, HugeAndTinyCoordinates) {
  const double huge = std::numeric_limits<double>::max();
  COrv3DOctreeMimic tree;
  build(tree, {{huge, huge, -huge}, {huge / 2, 0, 0}, {-huge, 0, 0}, {1, 1, 1}});
  EXPECT_EQ(search(tree, {huge, huge, -huge}, 2).ids, (std::vector{1, 2}));
  EXPECT_EQ(search(tree, {huge / 3, 0, 0}, 2).ids, (std::vector{2, 4}));
  EXPECT_EQ(search(tree, {-huge, 1, 0}, 1).ids, (std::vector{3}));
  build(tree, {{1, 0, 0}, {0, 1, 0}, {0, 0, 1e130}});
  const Found far = search(tree, {1e300, -1e300, 0}, 2);
  EXPECT_EQ(far.ids, (std::vector{1, 2}));
  EXPECT_DOUBLE_EQ(far.dists[0], std::sqrt(2) * 1e300);
  // A far point does not blur the others.
  build(tree, {{0, 0, 0}, {1, 0, 0}, {1e136, 0, 0}, {0, 2, 0}, {-1e300, 1, 0}});
  EXPECT_EQ(search(tree, {1, 0.1, 0}, 3).ids, (std::vector{2, 1, 4}));
  EXPECT_EQ(search(tree, {1, 0.1, 0}, 5).ids, (std::vector{2, 1, 4, 3, 5}));
  EXPECT_EQ(search(tree, {9e135, 0, 0}, 2).ids, (std::vector{3, 1}));
  EXPECT_EQ(search(tree, {-1e299, 0, 0}, 2).ids, (std::vector{1, 2}));
  std::vector<Point> nested;  // as deep as a tree gets
  for (int i = -160; i < 130; ++i)
    for (const double s : {-1.0, 1.0})
      nested.push_back({std::ldexp(s, i), std::ldexp(s, -i), std::ldexp(1, i)});
  expectBruteForce(nested, {{1, 1, 1}, {0, 0, 0}, {-3, 2, 1e-9}, {1e20, 1e20, 1e20}});
}

TEST(Octree, AMillionEqualPointsAreOnePlace) {
  COrv3DOctreeMimic tree;
  build(tree, std::vector<Point>(1000000, {1, 2, 3}));
  for (int i = 0; i < 100000; ++i) ASSERT_EQ(search(tree, {1, 2, 3.0 + i % 2}, 2).ids, (std::vector{1, 2}));
}

TEST(Octree, NothingToFind) {
  COrv3DOctreeMimic tree;
  const auto isEmpty = [&](const Point& at, int count) { return search(tree, at, count).ids.empty(); };
  EXPECT_TRUE(isEmpty({0, 0, 0}, 2));
  tree.SetNodeDimension(-3);
  tree.Init();
  EXPECT_TRUE(isEmpty({0, 0, 0}, 2));
  build(tree, {{kNaN, 0, 0}});
  EXPECT_TRUE(isEmpty({0, 0, 0}, 2));
  tree.SetNodeDimension(4);
  for (const int i : {-1, 0, 3, 5}) tree.SetNodeData(i, i, 0, 0);
  EXPECT_TRUE(isEmpty({0, 0, 0}, 2));
  tree.Init();
  tree.SetNodeData(1, 0, 0, 0);
  tree.Init();
  EXPECT_EQ(search(tree, {0, 0, 0}, 2).ids, (std::vector{3}));
  EXPECT_TRUE(isEmpty({kNaN, 0, 0}, 2) && isEmpty({0, kInfinity, 0}, 2) && isEmpty({0, 0, -kInfinity}, 2));
  EXPECT_TRUE(isEmpty({0, 0, 0}, 0) && isEmpty({0, 0, 0}, -1));
}

}  // namespace
