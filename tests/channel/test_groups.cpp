#include <array>
#include <cmath>
#include <numbers>
#include <random>
#include <tuple>

#include "channel/channel_groups.h"
#include "channel/mesh.h"
#include "platform/cofedata.h"

namespace orvmesh::test {
namespace {

using channel::ChannelGroup;
using channel::LengthFrom;
using channel::VolumeFrom;

constexpr int kSteps = 6;
constexpr double kWidth = 2, kStep = 3;
constexpr double kLength = kSteps * kStep, kArea = 4 * kWidth * kLength, kVolume = kWidth * kWidth * kLength;

struct Tube {
  int group;
  bool isHeater = false;
  bool hasElements = false;
  int endCodes[2] = {1, 2};  // -1 for an end that is left out
  bool hasTriangles = false;
};

// Square tubes side by side, their faces turned at random. All faces come first, then all elements.
void writeTubes(OFEIO_Manipulator& file, const std::vector<Tube>& tubes, std::mt19937& random) {
  const auto addFace = [&](std::vector<int> nodes, const Tube& tube, int interfaceId, int endCode) {
    if (random() % 2 != 0) std::reverse(nodes.begin(), nodes.end());
    std::rotate(nodes.begin(), nodes.begin() + static_cast<int>(random() % 4), nodes.end());
    const int code = tube.isHeater ? 2 : 1;
    if (!tube.hasTriangles) return writeFace(file, nodes, interfaceId, code, endCode, tube.group);
    writeFace(file, {nodes[0], nodes[1], nodes[2], nodes[2]}, interfaceId, code, endCode, tube.group);
    writeFace(file, {nodes[0], nodes[3], nodes[2], 0}, interfaceId, code, endCode, tube.group);
  };
  const auto node = [](std::size_t tube, int step, int corner) {
    return static_cast<int>(tube) * 4 * (kSteps + 1) + 4 * step + corner + 1;
  };
  for (std::size_t t = 0; t < tubes.size(); ++t)
    for (int step = 0; step <= kSteps; ++step)
      for (int corner = 0; corner < 4; ++corner)
        file.writeNodeBlockEntry(
            1000 + static_cast<float>(10 * static_cast<double>(t) + kWidth * (corner == 1 || corner == 2)),
            static_cast<float>(kWidth * (corner > 1)), static_cast<float>(kStep * step));
  for (std::size_t t = 0; t < tubes.size(); ++t) {
    for (int step = 0; step < kSteps; ++step)
      for (int k = 0; k < 4; ++k)
        addFace({node(t, step, k), node(t, step, (k + 1) % 4), node(t, step + 1, (k + 1) % 4),
                 node(t, step + 1, k)},
                tubes[t], 3, 0);
    for (int end = 0; end < 2; ++end)
      if (const int s = end * kSteps; tubes[t].endCodes[end] >= 0)
        addFace({node(t, s, 0), node(t, s, 1), node(t, s, 2), node(t, s, 3)}, tubes[t], 4,
                tubes[t].endCodes[end]);
  }
  for (std::size_t t = 0; t < tubes.size(); ++t)
    for (int step = 0; tubes[t].hasElements && step < kSteps; ++step) {
      int nodes[8];
      for (int k = 0; k < 8; ++k) nodes[k] = node(t, step + k / 4, k % 4);
      file.writeElementCoolChannelBlockEntry(8, nodes, tubes[t].isHeater ? 2 : 1, tubes[t].group, 0);
    }
}

std::vector<ChannelGroup> groupsOf(const std::string& path) {
  channel::ChannelSurface surface;
  std::string error;
  EXPECT_EQ(channel::readChannelSurface(path.c_str(), {}, surface, error), 1);
  COFEData data;
  EXPECT_EQ(data.ReadDataBin(path.c_str(), nullptr, 0, false), 1) << data.errorText();
  return channel::listGroups(surface, data.model());
}

TEST(ChannelGroups, FiguresOfTubes) {
  const TempDir dir;
  std::mt19937 random(3);
  for (const float scale : {1.0F, 0.5F}) {
    const std::string path = writeMesh(dir / "a.ofe", [&](OFEIO_Manipulator& file) {
      file.header.setFloatField(m_HEADER_ScaleFactor, scale);
      writeTubes(file,
                 {{5, false, true},
                  {5, true, true, {2, 2}, true},
                  {2, false, false, {1, 0}, true},
                  {9, false, false, {-1, 2}},
                  {11, false, true, {-1, -1}}},
                 random);
      // Lines of both kinds of group 5, beams of the coolant's alone, in two pieces.
      for (const int kind : {1, 2})
        for (const float z : {0.0F, 20.0F}) file.writeCoolantChannelLineBlockEntry(0, 0, z, 1, 5, kind, 1, 0);
      for (const float z : {0.0F, 10.0F, 16.0F}) writePoint(file, 0, 0, z, 1);
      for (const int from : {1, 2}) writeBeam(file, from, from + 1, 1, 1, 5, 1);
    });
    struct Wanted {
      std::tuple<int, bool, LengthFrom, VolumeFrom> what;
      std::array<std::int64_t, 5> counts;  // walls, inlets, outlets, hoses, open edges
      double length;
    };
    const double round = kArea * kArea / (4 * std::numbers::pi * kVolume);
    constexpr std::int64_t kWalls = 4 * kSteps;
    const Wanted wanted[] = {
        {{2, false, LengthFrom::surface, VolumeFrom::surface}, {2 * kWalls, 1, 0, 1, 0}, kLength},
        {{5, false, LengthFrom::layout, VolumeFrom::elements}, {kWalls, 1, 1, 0, 0}, 16},
        {{9, false, LengthFrom::nothing, VolumeFrom::nothing}, {kWalls, 0, 1, 0, 4}, 0},
        {{11, false, LengthFrom::surface, VolumeFrom::elements}, {kWalls, 0, 0, 0, 8}, round},
        {{5, true, LengthFrom::lines, VolumeFrom::elements}, {2 * kWalls, 0, 2, 0, 0}, 20}};
    const auto groups = groupsOf(path);
    ASSERT_EQ(groups.size(), std::size(wanted));
    for (std::size_t i = 0; i < groups.size(); ++i) {
      const ChannelGroup& group = groups[i];
      const auto& pieces = group.pieces;
      const auto& [what, counts, length] = wanted[i];
      SCOPED_TRACE(i);
      EXPECT_EQ(std::tuple(group.group, group.isHeater, group.lengthFrom, group.volumeFrom), what);
      EXPECT_EQ((std::array<std::int64_t, 5>{group.walls, pieces.inlets, pieces.outlets, pieces.hoses,
                                             pieces.openEdges}),
                counts);
      EXPECT_EQ(pieces.isClosed, pieces.openEdges == 0);
      EXPECT_NEAR(group.length, length * scale, 1e-4);
      EXPECT_NEAR(group.wettedArea, kArea * scale * scale, 1e-4);
      const bool hasVolume = group.volumeFrom != VolumeFrom::nothing;
      EXPECT_NEAR(group.volume, hasVolume ? kVolume * std::pow(scale, 3) : 0, 1e-4);
      EXPECT_NEAR(group.diameter, hasVolume ? kWidth * scale : 0, 1e-5);
    }
  }
}

// Three faces on an edge, and a band with one twist, have no inside.
TEST(ChannelGroups, SurfacesWithoutAnInsideHaveNoVolume) {
  const TempDir dir;
  const std::string path = writeMesh(dir / "a.ofe", [&](OFEIO_Manipulator& file) {
    for (int n = 0; n < 6; ++n)
      file.writeNodeBlockEntry(static_cast<float>(n & 1), static_cast<float>(n >> 1),
                               static_cast<float>(n * n % 5));
    const auto writeTriangles = [&](const std::vector<int>& corners, int group) {
      for (std::size_t k = 0; k < corners.size(); k += 3)
        writeFace(file, {corners[k], corners[k + 1], corners[k + 2], corners[k + 2]}, 3, 1, 0, group);
    };
    // The projective plane on six nodes: every edge has two faces, no way round is right.
    writeTriangles({1, 2, 3, 1, 3, 4, 1, 4, 5, 1, 5, 6, 1, 6, 2, 2, 3, 5, 3, 4, 6, 4, 5, 2, 5, 6, 3, 6, 2, 4},
                   1);
    // A tetrahedron with a wall inside, in group 2.
    writeTriangles({1, 2, 3, 1, 2, 4, 1, 3, 4, 2, 3, 4, 1, 2, 5}, 2);
  });
  const auto groups = groupsOf(path);
  ASSERT_EQ(groups.size(), 2U);
  for (const std::size_t k : {0U, 1U}) {
    EXPECT_EQ(groups[k].pieces.openEdges, k == 0 ? 0 : 2);
    EXPECT_EQ(groups[k].pieces.crowdedEdges, k == 0 ? 0 : 1);
    EXPECT_FALSE(groups[k].pieces.isClosed);
    EXPECT_EQ(groups[k].volume, 0);
  }
}

}  // namespace
}  // namespace orvmesh::test
