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
  std::size_t wall = 0;
  for (const auto& face : surfacesOf(m)) {
    if (face.interfaceId != 3) continue;
    const auto& entry = m.diameters[wall++];
    ASSERT_EQ(std::vector(face.nodes, face.nodes + 3),
              std::vector(entry.nodes, entry.nodes + entry.nodeCount));
    EXPECT_NEAR(1, entry.diameter, 1e-6);
  }
  ASSERT_EQ(1U, m.lines.size());
  for (const int end : {0, 1}) {
    const auto& found = m.lines[0].ends[end];
    EXPECT_EQ((std::vector{4.0F * static_cast<float>(end), 1.5F, 1.5F, 1.0F}),
              std::vector(found.values, found.values + 4));
    EXPECT_EQ((std::vector{1, 1, 1 + end, 0}), std::vector(found.codes, found.codes + 4));
  }
  ASSERT_EQ(2U, m.beamPoints.size());
  EXPECT_EQ(std::pair(1, 2), std::pair(m.beamPoints[0].id, m.beamPoints[1].id));
  ASSERT_EQ(1U, m.beamSegments.size());
  EXPECT_EQ(std::pair(10000, 1), std::pair(m.beamSegments[0].values[0], m.beamSegments[0].values[3]));
}

TEST(Channels, NamedEndsStandAndTheOthersFollow) {
  BrickMold mold(kStraight);
  mold.nameFace("inlet:1", 3, 1, 1, 1);
  EXPECT_EQ((Ends{"outlet? 0", "inlet 4"}), endsOf(Imported(mold.mesh)));
  mold.nameFace("hose:1", 0, 1, 1, 0);
  const Imported hose(mold.mesh);
  EXPECT_EQ((Ends{"hose 0", "inlet 4"}), endsOf(hose));
  std::vector<int> codes;
  for (const auto& face : surfacesOf(hose.model()))
    if (face.interfaceId == 4) codes.push_back(face.contactCode);
  EXPECT_EQ((std::vector{0, 1}), codes);
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
  const auto& [from, to] = m.lines[0].ends;
  EXPECT_EQ(std::tuple(0.0F, 3.0F, 2), std::tuple(from.values[0], to.values[0], to.codes[1]));
  EXPECT_EQ(6, m.beamSegments.at(0).values[3]);
  ASSERT_EQ(1U, m.channelLayers.size());
  EXPECT_EQ(10901, m.channelLayers[0].materialId);

  const Imported blind(BrickMold("MMM/MMM/MMM MMM/MhM/MMM MMM/MMM/MMM").mesh);
  EXPECT_TRUE(blind.model().lines.empty() && blind.model().beamPoints.empty()) << "there is no end";
}

TEST(Channels, OneThatTouchesNoMoldIsRefused) {
  expectRefusal(
      ": volume group 'channel:1' touches no mold element; its mesh must share nodes with the mold's "
      "(--merge TOL joins coincident nodes)",
      BrickMold("M.C").mesh);
}
