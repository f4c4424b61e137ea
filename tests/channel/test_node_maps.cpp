#include <orvmesh/channel_result_map.h>
#include <orvmesh/channel_surface_node_map.h>

#include <array>
#include <cmath>
#include <filesystem>
#include <limits>
#include <random>
#include <regex>
#include <set>

#include "channel/mesh.h"
#include "channel/surface_node_map.h"

namespace orvmesh::test {
namespace {

using NodeMap = COrvMeshTrans_GetSolidCCSurfaceNodeMap2MBNode;
using ResultMap = COrvMeshTrans_GetSolidCoolingChannelElementResultFromOFV;

double squareDistance(const std::array<double, 3>& a, const std::array<double, 3>& b) {
  return (a[0] - b[0]) * (a[0] - b[0]) + (a[1] - b[1]) * (a[1] - b[1]) + (a[2] - b[2]) * (a[2] - b[2]);
}

// A mesh of random nodes, elements and faces, and what is known of it.
struct Cloud {
  std::vector<float> xyz;
  std::set<int> inMold, inUse, onSurface, ownPartner;

  explicit Cloud(const std::string& path, int nodes = 200) {
    writeMesh(path, [&](OFEIO_Manipulator& file) {
      std::mt19937 random(11);
      file.header.setFloatField(m_HEADER_ScaleFactor, 0.5F);
      // The places are multiples of 1/8 so that equal distances are frequent.
      for (int n = 0; n < nodes; ++n) {
        for (int axis = 0; axis < 3; ++axis) xyz.push_back(static_cast<float>(random() % 80) / 8);
        file.writeNodeBlockEntry(*(xyz.end() - 3), *(xyz.end() - 2), xyz.back());
      }
      file[m_HEADER_NNode] = nodes;
      const auto pick = [&](int from, int to) {
        return from + static_cast<int>(random() % static_cast<unsigned>(to - from));
      };
      for (int e = 0; e < 40; ++e) {
        const int tet[] = {pick(1, 120), pick(1, 120), pick(1, 120), pick(1, 120)};
        file.writeElementMoldBaseBlockEntry(4, tet, 1, 1, 0);
        // The header counts 30 of them.
        if (e < 30) inMold.insert(std::begin(tet), std::end(tet));
        inUse.insert(std::begin(tet), std::end(tet));
      }
      file[m_HEADER_NElemM] = 30;
      const int channel[] = {150, 151, 152, 153, 154, 155};
      file.writeElementCoolChannelBlockEntry(6, channel, 1, 1, 0);
      inUse.insert(std::begin(channel), std::end(channel));
      for (int f = 0; f < 60; ++f) {
        std::vector<int> face{pick(60, nodes), pick(60, nodes), pick(60, nodes), pick(60, nodes)};
        const int interfaceId = pick(2, 5), endCode = pick(0, 3);
        writeFace(file, face, interfaceId, 1, endCode, 1);
        if (interfaceId == 2) continue;
        onSurface.insert(face.begin(), face.end());
        if (interfaceId == 3 && endCode != 0) ownPartner.insert(face.begin(), face.end());
      }
    });
  }

  // In model units.
  std::array<double, 3> placeOf(int node) const {
    const float* const p = xyz.data() + 3 * (node - 1);
    return {0.5 * p[0], 0.5 * p[1], 0.5 * p[2]};
  }
  double distanceOf(int a, int b) const { return std::sqrt(squareDistance(placeOf(a), placeOf(b))); }
  int nearestInMold(int node) const {
    int best = 0;
    for (const int other : inMold)
      if (best == 0 || distanceOf(node, other) < distanceOf(node, best)) best = other;
    return best;
  }
};

class ChannelMaps : public testing::Test {
 protected:
  TempDir dir_;
  std::string path_ = dir_ / "a.ofe";
  Cloud cloud_{path_};
};

channel::SurfaceNodeMap mapOf(const std::string& path) {
  channel::SurfaceNodeMap map;
  std::string error;
  EXPECT_EQ(channel::mapSurfaceNodes(path.c_str(), {}, map, error), 1) << error;
  return map;
}

TEST_F(ChannelMaps, OfNodesAgreesWithASearchOfEveryNode) {
  const auto map = mapOf(path_);
  EXPECT_EQ(std::set<int>(map.nodes.begin(), map.nodes.end()), cloud_.onSurface);
  EXPECT_TRUE(std::is_sorted(map.nodes.begin(), map.nodes.end()));
  EXPECT_EQ(map.moldNodes, static_cast<int>(cloud_.inMold.size()));
  ASSERT_GT(cloud_.ownPartner.size(), 5U);
  for (std::size_t k = 0; k < map.nodes.size(); ++k) {
    const int node = map.nodes[k];
    const bool isOwn = cloud_.ownPartner.contains(node);
    EXPECT_EQ(map.toMold[k], isOwn ? node : cloud_.nearestInMold(node)) << node;
    EXPECT_EQ(std::isnan(map.distance[k]), isOwn);
    if (isOwn) continue;
    EXPECT_DOUBLE_EQ(map.distance[k], cloud_.distanceOf(node, map.toMold[k]));
  }
}

TEST_F(ChannelMaps, OfNodesCountsAndDraws) {
  const std::string stl = path_ + ".CCNodeToMBNode.stl";
  NodeMap map;
  EXPECT_EQ(map.GetCCSurfNodeNumber(), 0);
  EXPECT_EQ(printedBy([&] { EXPECT_EQ(map.SetOFEFile(path_.c_str()), 1); }), "");
  EXPECT_FALSE(std::filesystem::exists(stl));
  const auto count = static_cast<int>(cloud_.onSurface.size());
  EXPECT_EQ(map.GetCCSurfNodeNumber(), count);
  int ids[] = {-7, -7};
  map.GetCCSurfNodeID(ids);
  map.GetCCSurfNodeIDMapToGlobalNodeIDInMoldbase_Link(ids);
  EXPECT_EQ(ids[0] + ids[1], -14);

  NodeMap second = map;
  EXPECT_EQ(printedBy([&] { EXPECT_LE(second.SetOFEFile("missing"), 0); }),
            " can not open mesh file at :missing\n");
  EXPECT_EQ(second.GetCCSurfNodeNumber(), count);

  second.SetDebugMode(true);
  const std::string printed = printedBy([&] { second.SetOFEFile(path_.c_str()); });
  EXPECT_EQ(std::regex_replace(printed, std::regex("(CCSurfElmt=|got )[0-9]+"), "$1N"),
            "ofeReader return 1\nReadOFE_HEADER();\nm_NTotNode=200\nm_NTotSurfElmt=60\nReadOFE_Node();\n"
            "m_NTotNode=200\nReadOFE_MoldbaseElement();\nm_NTotMBNode=" +
                std::to_string(cloud_.inMold.size()) +
                "\nReadOFE_ElementSurface();\nYse! I got readElementSurfaceBlockEntry()\nm_NTotCCSurfElmt=N\n"
                "Moldbase to coolant channel interface(ID=3):\nWe got N faces in [Element Surface].\n"
                "coolant channel ends and hoses(ID=4):\nWe got N faces in [Element Surface].\n"
                "m_NTotCCSurfNode=" +
                std::to_string(count) +
                "\nReadOFE() OK\nCreateRelation_CCSurfAndMolbase();\n"
                "draw CC surface node to Moldbase node at " +
                stl + "\n");
  const auto searched = cloud_.onSurface.size() - cloud_.ownPartner.size();
  EXPECT_EQ(std::filesystem::file_size(stl), 84 + 50 * searched);
}

TEST_F(ChannelMaps, MarksDoNotDependOnTheOrderAndMissingMoldIsTold) {
  for (const bool wallFirst : {true, false}) {
    writeMesh(path_, [&](OFEIO_Manipulator& file) {
      for (const float x : {0.0F, 1.5F, 2.0F, 3.0F, 4.0F}) file.writeNodeBlockEntry(x, 0, 0.25F);
      for (const bool wall : {wallFirst, !wallFirst})
        writeFace(file, wall ? std::vector{1, 2, 3, 3} : std::vector{2, 3, 99, -1}, wall ? 3 : 4, 1, 1, 1);
      file[m_HEADER_NElemS] = 1;
    });
    EXPECT_EQ(mapOf(path_).toMold, (std::vector<std::int32_t>{1, 2, 3}));
  }
  writeMesh(path_, [&](OFEIO_Manipulator& file) {
    file.writeNodeBlockEntry(0, 0, 0);
    file.writeNodeBlockEntry(1.5F, -2, 0.25F);
    writeFace(file, {2, 2, 2, 2}, 4, 1, 1, 1);
    file[m_HEADER_NNode] = std::numeric_limits<int>::max();
    file[m_HEADER_NElemM] = -5;
  });
  NodeMap map;
  EXPECT_EQ(printedBy([&] { EXPECT_EQ(map.SetOFEFile(path_.c_str()), 1); }),
            "can not find CC node to MB node at CC NodeID=2 (1.5 , -2 , 0.25)\n");
  EXPECT_EQ(map.GetCCSurfNodeNumber(), 1);
}

struct Points {
  std::vector<double> x{-1}, y{-1}, z{-1}, value{-1};
  explicit Points(int count, unsigned seed) {
    std::mt19937 random(seed);
    for (int i = 0; i < count; ++i)
      for (auto* const axis : {&x, &y, &z, &value}) axis->push_back(static_cast<double>(random() % 40) / 8);
  }
  int count() const { return static_cast<int>(x.size()) - 1; }
};

void expectMapped(ResultMap& map, const Cloud& cloud, Points points) {
  ASSERT_EQ(map.SetInputNode(points.count(), points.x.data(), points.y.data(), points.z.data()), 1);
  ASSERT_EQ(map.SetInputNodeResult(points.value.data()), 1);
  const std::vector<int> kept(cloud.inUse.begin(), cloud.inUse.end());
  std::vector<int> ids(points.x.size(), -7), wantedIds(points.x.size(), 0);
  std::vector<double> results(kept.size() + 1, -7), wanted(kept.size() + 1, -7);
  for (std::size_t k = 0; k < kept.size(); ++k) {
    std::size_t best = 0;
    double least = std::numeric_limits<double>::infinity();
    for (std::size_t j = 1; j < points.x.size(); ++j) {
      const double square = squareDistance(cloud.placeOf(kept[k]), {points.x[j], points.y[j], points.z[j]});
      if (!(square < least)) continue;
      best = j;
      least = square;
    }
    wantedIds[best] = static_cast<int>(k) + 1;
    wanted[k + 1] = points.value[best];
  }
  wantedIds[0] = -7;
  EXPECT_EQ(map.GetMapOFENodeID(ids.data()), 1);
  EXPECT_EQ(map.GetMapOFENodeResult(results.data()), 1);
  EXPECT_EQ(ids, wantedIds);
  EXPECT_EQ(results, wanted);
}

TEST_F(ChannelMaps, OfResultsAgreesWithASearchOfEveryPointAlsoWhenUsedAgain) {
  const Cloud larger(dir_ / "b.ofe", 400);
  ResultMap map;
  EXPECT_EQ(map.SetOFEFile(path_.c_str()), 1);
  EXPECT_TRUE(std::filesystem::exists(dir_ / "a.log"));
  Points odd(30, 5);
  odd.y[3] = std::numeric_limits<double>::quiet_NaN();
  expectMapped(map, cloud_, odd);
  expectMapped(map, cloud_, Points(300, 6));
  expectMapped(map, cloud_, Points(10, 7));
  const ResultMap copy = map;
  std::vector<double> before(cloud_.inUse.size() + 1), after(before);
  copy.GetMapOFENodeResult(before.data());
  EXPECT_EQ(map.SetOFEFile((dir_ / "b.ofe").c_str()), 1);
  expectMapped(map, larger, Points(300, 8));
  copy.GetMapOFENodeResult(after.data());
  EXPECT_EQ(before, after);
}

TEST_F(ChannelMaps, WrongCallsDoNoHarm) {
  double values[] = {9, 1, 2}, out[500];
  int ids[] = {-7, -7, -7};
  ResultMap map;
  const auto expectTaken = [&](int count, double* x) {
    EXPECT_EQ(map.SetInputNodeResult(values), 1);
    EXPECT_EQ(map.SetInputNode(count, x, values, values), 1);
    EXPECT_EQ(map.SetInputNodeResult(values), 1);
  };
  EXPECT_EQ(map.GetMapOFENodeResult(nullptr), -1);
  expectTaken(2, values);
  EXPECT_EQ(map.GetMapOFENodeResult(values), 1);
  EXPECT_EQ(map.SetOFEFile(path_.c_str()), 1);
  for (const int n : {-1, 0, std::numeric_limits<int>::min()}) {
    expectTaken(n, values);
    EXPECT_EQ(map.GetMapOFENodeResult(out), 1);
    EXPECT_EQ(out[1], 0);
  }
  expectTaken(2, nullptr);
  for (int* const target : {ids, static_cast<int*>(nullptr)}) EXPECT_EQ(map.GetMapOFENodeID(target), 1);
  EXPECT_EQ(map.SetInputNodeResult(nullptr), 1);
  EXPECT_EQ(ids[1], -7);
  EXPECT_EQ(map.SetOFEFile((dir_ / "no").c_str()), 1);
  EXPECT_STRNE(map.GetErrorMessage_Link(), "");
  EXPECT_EQ(map.SetOFEFile(nullptr), 1);
  expectTaken(2, values);
}

}  // namespace
}  // namespace orvmesh::test
