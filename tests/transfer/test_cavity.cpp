#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <filesystem>
#include <functional>
#include <set>

#include "platform/ofv_reader.h"
#include "support/box_grid.h"
#include "transfer/mold.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

// A grid as the operations take it.
struct Caller {
  explicit Caller(const BoxGrid& grid) : g(grid) {
    for (auto* const list :
         {&g.nodes, &g.owner, &g.neighbour, &g.cavity, &g.number, &g.kind, &g.inlet, &g.group})
      list->insert(list->begin(), -77);  // must not be looked at
    for (std::size_t n = 0; n < g.xyz.size(); ++n) xyz[n % 3].push_back(g.xyz[n]);
    for (std::size_t f = 1; f < g.offsets.size(); ++f)
      nodeCount.push_back(static_cast<int>(g.offsets[f] - g.offsets[f - 1]));
  }

  int counts(COrvMeshFormatTransfer& t) const {
    const auto size = [](const auto& v) { return static_cast<int>(v.size()) - 1; };
    return t.SetCTGMeshInfo(size(xyz[0]), size(g.owner), faceNodes, size(g.cavity), size(g.number),
                            size(g.inlet));
  }
  int cavities(COrvMeshFormatTransfer& t) const { return t.SetCTGCavityInfo(g.number.data(), g.kind.data()); }
  int cells(COrvMeshFormatTransfer& t) const { return t.SetCTGCavityCellInfo(g.cavity.data()); }
  int points(COrvMeshFormatTransfer& t) const {
    return t.SetCTGCavityNodeInfo(xyz[0].data(), xyz[1].data(), xyz[2].data());
  }
  int faces(COrvMeshFormatTransfer& t) const {
    return t.SetCTGCavityFaceInfo(nodeCount.data(), g.nodes.data(), g.owner.data(), g.neighbour.data());
  }
  int inlets(COrvMeshFormatTransfer& t) const {
    return t.SetInletID2ChannelGrpID(g.inlet.data(), g.group.data());
  }

  BoxGrid g;  // its lists from entry 1 on
  std::vector<double> xyz[3] = {{-77}, {-77}, {-77}};
  std::vector<int> nodeCount{-77};
  long long faceNodes = static_cast<long long>(g.nodes.size());
};
constexpr struct {
  const char* name;
  int (Caller::*give)(COrvMeshFormatTransfer&) const;
} kSteps[] = {{"SetCTGMeshInfo", &Caller::counts},      {"SetCTGCavityInfo", &Caller::cavities},
              {"SetCTGCavityCellInfo", &Caller::cells}, {"SetCTGCavityNodeInfo", &Caller::points},
              {"SetCTGCavityFaceInfo", &Caller::faces}, {"SetInletID2ChannelGrpID", &Caller::inlets}};

// The first result that is not 1.
int giveAll(const Caller& caller, COrvMeshFormatTransfer& transfer) {
  for (const auto& step : kSteps)
    if (const int result = (caller.*step.give)(transfer); result != CavityResult_Done) return result;
  return CavityResult_Done;
}

class Cavity : public Transfers {
 protected:
  void TearDown() override { transfer.FreeMemory(); }

  std::string path = dir / "a.ofv";
};

// Random channels in a grid: what another object writes is the grid; what is kept of the channels alone is
// closed, lies where it lay, and has just the faces it needs.
TEST_F(Cavity, WholeAndChannelsAlone) {
  std::srand(5);
  for (int round = 0; round < 20; ++round) {
    BoxGrid grid({4, 3, 3});
    for (auto& cavity : grid.cavity) cavity = std::rand() % 4 == 0 ? 2 : 1;
    // Some faces are owned by the later cell instead.
    for (std::size_t f = 0; f < grid.owner.size(); ++f) {
      if (grid.neighbour[f] == 0 || std::rand() % 2 == 0) continue;
      std::swap(grid.owner[f], grid.neighbour[f]);
      std::reverse(grid.nodes.begin() + grid.offsets[f], grid.nodes.begin() + grid.offsets[f + 1]);
    }
    transfer.SetCTG2OFVFilePath(path.c_str());
    ASSERT_EQ(giveAll(Caller(grid), transfer), 1) << transfer.GetErrorMessage_Link();
    COrvMeshFormatTransfer other;
    ASSERT_EQ(other.GetTransOFV(), 1) << other.GetErrorMessage_Link();
    COrvOFVReader reader;
    ASSERT_EQ(reader.open(path.c_str()), 1) << reader.errorText();
    const OFVMesh& whole = reader.mesh();
    EXPECT_TRUE(std::ranges::equal(whole.xyz, grid.xyz) && std::ranges::equal(whole.faceNodes, grid.nodes));
    EXPECT_TRUE(std::ranges::equal(whole.owner, grid.owner) && std::ranges::equal(whole.inletID, grid.inlet));

    ASSERT_EQ(transfer.GetTransOFV_OnlyChannel(), 1) << transfer.GetErrorMessage_Link();
    ASSERT_EQ(reader.open(path.c_str()), 1) << reader.errorText();
    const OFVMesh& kept = reader.mesh();
    EXPECT_EQ(faultOfRelations(kept), "");
    EXPECT_EQ(kept.cellCount(), std::ranges::count(grid.cavity, 2));
    EXPECT_EQ(std::vector(kept.cavityNumber.begin(), kept.cavityNumber.end()), std::vector{20});

    using Point = std::array<double, 3>;
    const auto cornersOf = [](const OFVMesh& mesh, auto isWanted) {
      std::multiset<std::set<Point>> faces;
      for (std::size_t f = 0; f < mesh.owner.size(); ++f) {
        if (!isWanted(mesh.owner[f]) && (mesh.neighbour[f] == 0 || !isWanted(mesh.neighbour[f]))) continue;
        std::set<Point> corners;
        for (const auto n : mesh.nodes(f)) {
          const auto p = mesh.xyz.subspan(3 * static_cast<std::size_t>(n) - 3, 3);
          corners.insert({p[0], p[1], p[2]});
        }
        faces.insert(corners);
      }
      return faces;
    };
    const auto isChannel = [&](std::int32_t c) { return grid.cavity[static_cast<std::size_t>(c) - 1] == 2; };
    EXPECT_EQ(cornersOf(kept, [](auto) { return true; }), cornersOf(grid.mesh(), isChannel));
    const std::set<std::int32_t> used(kept.faceNodes.begin(), kept.faceNodes.end());
    EXPECT_EQ(static_cast<std::int32_t>(used.size()), kept.pointCount());
  }
}

TEST_F(Cavity, WhatIsMissingIsNamed) {
  const Caller caller(BoxGrid({2, 1, 1}));
  EXPECT_EQ(transfer.GetTransOFV(), CavityResult_OutOfOrder);
  expectTold("GetTransOFV: call SetCTG2OFVFilePath first");
  transfer.SetCTG2OFVFilePath(path.c_str());
  for (const auto& next : kSteps) {
    const std::string isMissing = std::string("call ") + next.name + " first";
    EXPECT_EQ(transfer.GetTransOFV(), CavityResult_OutOfOrder);
    expectTold(isMissing);
    if (&next < &kSteps[4]) {
      EXPECT_EQ(caller.faces(transfer), CavityResult_OutOfOrder);
      expectTold("SetCTGCavityFaceInfo: " + isMissing);
    }
    ASSERT_EQ((caller.*next.give)(transfer), 1) << transfer.GetErrorMessage_Link();
  }
  ASSERT_EQ(transfer.GetTransOFV(), 1);
  ASSERT_EQ(caller.points(transfer), 1);
  EXPECT_EQ(transfer.GetTransOFV(), CavityResult_OutOfOrder);
  expectTold("call SetCTGCavityFaceInfo first");
  transfer.FreeMemory();
  EXPECT_EQ(caller.cells(transfer), CavityResult_OutOfOrder);
  expectTold("SetCTGCavityCellInfo: call SetCTGMeshInfo first");
}

TEST_F(Cavity, WhatDoesNotFitIsRefusedWhenItIsGiven) {
  struct Fault {
    std::size_t step;
    const char* text;
    std::function<void(Caller&)> spoil;
  };
  const Fault faults[] = {
      {0, "faceNodeCount is 3 (legal: 33 to", [](Caller& c) { c.faceNodes = 3; }},
      {0, "cellCount is 0", [](Caller& c) { c.g.cavity.resize(1); }},
      {1, "cavity 2: its number is 10", [](Caller& c) { c.g.number[2] = 10; }},
      {2, "cell 2: its cavity is 3", [](Caller& c) { c.g.cavity[2] = 3; }},
      {3, "point 1: z is inf", [](Caller& c) { c.xyz[2][1] = HUGE_VAL; }},
      {4, "the faces have 44 points (legal: 43,", [](Caller& c) { --c.faceNodes; }},
      {4, "face 1: point 2 is 99 (legal: 1 to 12)", [](Caller& c) { c.g.nodes[2] = 99; }},
      {4, "is there twice", [](Caller& c) { c.g.nodes[2] = c.g.nodes[3]; }},
      {4, "cell 1 is not closed",
       [](Caller& c) { std::reverse(c.g.nodes.begin() + 1, c.g.nodes.begin() + 5); }},
      {4, "cell 2 is not closed", [](Caller& c) { c.g.neighbour[2] = 0; }},
      {4, "cell 1 is not closed",
       [](Caller& c) {
         for (auto& x : c.xyz[0]) x *= 1e200;
       }},
      {4, "face 2 has the same points as face 1",
       [](Caller& c) { std::reverse_copy(&c.g.nodes[1], &c.g.nodes[5], &c.g.nodes[5]); }},
      {4, "cell 1: its number of faces is 0",
       [](Caller& c) {
         std::fill(c.g.owner.begin() + 1, c.g.owner.end(), 2);
         std::fill(c.g.neighbour.begin() + 1, c.g.neighbour.end(), 0);
       }},
      {4, "cell 2 is not closed: an edge",  // a tube: its area vectors add up to zero
       [](Caller& c) {
         c.g.nodes.erase(c.g.nodes.end() - 8, c.g.nodes.end());
         for (auto* const list : {&c.nodeCount, &c.g.owner, &c.g.neighbour}) list->resize(list->size() - 2);
         c.faceNodes -= 8;
       }},
      {4, "cavity 1: its volume is -1 (legal",
       [](Caller& c) {
         for (auto face = c.g.nodes.begin() + 1; face != c.g.nodes.end(); face += 4)
           std::reverse(face, face + 4);
       }},
      {5, "inlet 2: its channel group is -1", [](Caller& c) { c.g.group[2] = -1; }},
  };
  const Caller sound(BoxGrid({2, 1, 1}));
  transfer.SetCTG2OFVFilePath(path.c_str());
  for (const Fault& fault : faults) {
    Caller caller = sound;
    fault.spoil(caller);
    for (std::size_t i = 0; i < fault.step; ++i)
      ASSERT_EQ((caller.*kSteps[i].give)(transfer), 1) << fault.text;
    EXPECT_EQ((caller.*kSteps[fault.step].give)(transfer), CavityResult_Refused) << fault.text;
    expectTold(fault.text);
  }
  // What is refused changes nothing.
  ASSERT_EQ(giveAll(sound, transfer), 1);
  EXPECT_EQ(transfer.SetCTGCavityNodeInfo(sound.xyz[0].data(), nullptr, sound.xyz[2].data()),
            CavityResult_Refused);
  expectTold("SetCTGCavityNodeInfo: y is null");
  EXPECT_EQ(transfer.SetCTG2OFVFilePath(nullptr), CavityResult_Refused);
  EXPECT_EQ(transfer.GetTransOFV(), 1);
}

TEST_F(Cavity, WhatCannotBeWrittenIsTold) {
  BoxGrid grid({2, 1, 1});
  grid.kind = {0, 0};
  ASSERT_EQ(giveAll(Caller(grid), transfer), 1);
  transfer.SetCTG2OFVFilePath(dir.path().c_str());
  EXPECT_EQ(transfer.GetTransOFV(), CavityResult_NotWritten);
  expectTold(dir.path() + ": ");
  EXPECT_EQ(transfer.GetTransOFV_OnlyChannel(), CavityResult_Refused);
  expectTold("no cell belongs to a channel");
}

}  // namespace
