#include "import/imported.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

// A channel of unit cross section along x, its walls all mold.
constexpr const char* kStraight = "MMMM/MMMM/MMMM MMMM/CCCC/MMMM MMMM/MMMM/MMMM";

std::vector<std::string> endsOf(const Imported& imported) {
  std::vector<std::string> ends;
  static constexpr const char* kNames[] = {"hose", "inlet", "outlet"};
  for (const auto& end : imported.report.channels.ends)
    ends.push_back(std::string(kNames[end.code]) + (end.named ? " " : "? ") +
                   std::to_string(int(end.center[0])));
  return ends;
}

using Ends = std::vector<std::string>;

}  // namespace

TEST(Channels, SquareOneHasItsEdgeAsDiameterAndALineFromEndToEnd) {
  const Imported imported(BrickMold(kStraight, Cells::tetrahedra).mesh);
  const auto& m = imported.model();
  EXPECT_EQ((Ends{"inlet? 0", "outlet? 4"}), endsOf(imported));
  ASSERT_EQ(32U, m.diameters.size());
  std::int32_t wall = 0;
  for (std::int32_t k = 1; k <= m.surfaces.count(); ++k) {
    const auto face = m.surfaces[k];
    if (face.interfaceId != 3) continue;
    const auto& entry = m.diameters[static_cast<std::size_t>(wall++)];
    ASSERT_EQ(std::vector<std::int32_t>(face.nodes, face.nodes + 3),
              std::vector<std::int32_t>(entry.nodes, entry.nodes + entry.nodeCount));
    EXPECT_NEAR(1, entry.diameter, 1e-6);
  }
  ASSERT_EQ(1U, m.lines.size());
  const auto& [from, to] = m.lines[0].ends;
  EXPECT_EQ((std::vector<float>{0, 1.5, 1.5, 1}), std::vector<float>(from.values, from.values + 4));
  EXPECT_EQ((std::vector<float>{4, 1.5, 1.5, 1}), std::vector<float>(to.values, to.values + 4));
  EXPECT_EQ((std::vector<int>{1, 1, 1, 0}), std::vector<int>(from.codes, from.codes + 4));
  EXPECT_EQ((std::vector<int>{1, 1, 2, 0}), std::vector<int>(to.codes, to.codes + 4));
  ASSERT_EQ(2U, m.beamPoints.size());
  EXPECT_EQ(1, m.beamPoints[0].id);
  EXPECT_EQ(2, m.beamPoints[1].id);
  ASSERT_EQ(1U, m.beamSegments.size());
  EXPECT_EQ(10000, m.beamSegments[0].values[0]);
  EXPECT_EQ(1, m.beamSegments[0].values[3]);
}

TEST(Channels, NamedEndsStandAndTheOthersFollow) {
  BrickMold mold(kStraight);
  mold.nameFace("inlet:1", 3, 1, 1, 1);
  EXPECT_EQ((Ends{"outlet? 0", "inlet 4"}), endsOf(Imported(mold.mesh)));
  mold.nameFace("hose:1", 0, 1, 1, 0);
  const Imported hose(mold.mesh);
  EXPECT_EQ((Ends{"hose 0", "inlet 4"}), endsOf(hose));
  std::map<int, std::vector<int>> codes;
  for (std::int32_t k = 1; k <= hose.model().surfaces.count(); ++k)
    codes[hose.model().surfaces[k].interfaceId].push_back(hose.model().surfaces[k].contactCode);
  EXPECT_EQ((std::vector<int>{0, 1}), codes[4]);
}

TEST(Channels, OfSeveralUnnamedEndsTheInnerOnesAreHoses) {
  const Imported imported(BrickMold("MCMCM/MCMCM/MMMMM MMMMM/MMMMM/MMMMM").mesh);
  // Each drilling opens downwards along its length and to the front: one end each.
  EXPECT_EQ((Ends{"inlet? 1", "outlet? 3"}), endsOf(imported));
  const Imported three(BrickMold("CMCMC MMMMM").mesh);
  EXPECT_EQ((Ends{"inlet? 0", "hose? 2", "outlet? 4"}), endsOf(three));
}

TEST(Channels, BlindHeaterRunsToItsOtherEnd) {
  const Imported imported(BrickMold("MMMM/MMMM/MMMM MMMM/hhhM/MMMM MMMM/MMMM/MMMM").mesh);
  const auto& m = imported.model();
  ASSERT_EQ(1U, m.lines.size());
  EXPECT_FLOAT_EQ(0, m.lines[0].ends[0].values[0]);
  EXPECT_FLOAT_EQ(3, m.lines[0].ends[1].values[0]);
  EXPECT_EQ(2, m.lines[0].ends[1].codes[1]);
  EXPECT_EQ(6, m.beamSegments.at(0).values[3]);
  ASSERT_EQ(1U, m.channelLayers.size());
  EXPECT_EQ(10901, m.channelLayers[0].materialId);
}

TEST(Channels, WithoutAnyEndThereIsNoLine) {
  const Imported imported(BrickMold("MMM/MMM/MMM MMM/MhM/MMM MMM/MMM/MMM").mesh);
  EXPECT_TRUE(imported.model().lines.empty());
  EXPECT_TRUE(imported.model().beamPoints.empty());
}

TEST(Channels, OneThatTouchesNoMoldIsRefused) {
  const auto text = refusal(writeMsh(BrickMold("M.C").mesh, Encoding::text41));
  EXPECT_EQ(
      "mold.msh: volume group 'channel:1' touches no mold element; its mesh must share nodes with the mold's "
      "(--merge TOL joins coincident nodes)",
      text);
}
