#include "embedded/mesh.h"

namespace orvmesh::test {
namespace {

constexpr std::uint32_t kCoolant = 0x80000000;
int tag(std::uint32_t flags, int group) {
  return static_cast<int>(flags | (static_cast<std::uint32_t>(group) << 8));
}

using Flags = std::vector<std::uint8_t>;
using Groups = std::vector<std::int32_t>;

class Extract : public ::testing::Test {
 protected:
  // Two square channel ends of edge 2 around (1, 1, 0) and (11, 1, 0): radius sqrt(2).
  void SetUp() override {
    mesh_.nodes = {{0, 0, 0},  {2, 0, 0},  {2, 2, 0},  {0, 2, 0},
                   {10, 0, 0}, {12, 0, 0}, {12, 2, 0}, {10, 2, 0}};
    mesh_.surfaces = {{{1, 2, 3, 4}, 4, 1, 1, 3, 1, tag(kCoolant, 3)},
                      {{5, 6, 7, 7}, 4, 1, 1, 1, 1, tag(kCoolant, 1000)},  // no channel group: boundaryType
                      {{5, 7, 8, 8}, 4, 1, 1, 1, 1, tag(kCoolant, 0)},
                      {{1, 2, 3, 4}, 4, 1, 2, 9, 1, tag(kCoolant, 9)},   // an outlet
                      {{1, 2, 3, 4}, 3, 1, 1, 8, 1, tag(kCoolant, 8)}};  // a wall
  }
  static void point(OFEIO_Manipulator& f, float x, float y, float z, int type) {
    f.writeCoolantChannelLayoutBlockEntry(1, x, y, z, type, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  }
  static void beam(OFEIO_Manipulator& f, int a, int b, int beamCode) {
    f.writeCoolantChannelLayoutBlockEntry(0, 0, 0, 0, 0, a, b, 8, 8, 0, beamCode, 0, 0, 0, 0, 0, 0, 0, 0, 0);
  }
  int inlets() {
    EXPECT_EQ(mesh_.write(path_), 1);
    return OFEIO_Manipulator::extractCoolantInletInfo(path_.c_str(), 0, info_);
  }
  TempDir dir_;
  const std::string path_ = dir_ / "mesh.ofe";
  Mesh mesh_;
  CoolantInletInfo info_;
};

TEST_F(Extract, CoolantInlets) {
  mesh_.more = [](OFEIO_Manipulator& f) {
    point(f, 1, 1, 1.4F, 1);  // 1: within the radius of group 3
    point(f, 1, 1, 1.5F, 1);  // 2: just outside, and without a beam
    point(f, 11, 1, 0, 2);    // 3: no inlet
    point(f, 11, 1, 0, 1);    // 4: heater by the beam written last
    beam(f, 4, 3, 2);
    beam(f, 1, 3, 60000);
    beam(f, 1, 3, 2);          // 1 is no heater after all
    point(f, 11.5F, 1, 0, 1);  // 5: within group 1, points may follow beams
    beam(f, 4, 5, 6);
    beam(f, 5, 3, 7);
  };
  EXPECT_EQ(inlets(), 5);
  EXPECT_EQ(info_.layoutInletFlags, (Flags{1, 0, 1}));
  EXPECT_EQ(info_.surfaceInletGroups, (Groups{1, 3}));
  EXPECT_EQ(info_.surfaceInletFlags, (Flags{1, 1}));
}

TEST_F(Extract, CoolantInletsOfFilesThatHaveNone) {
  mesh_.surfaces.resize(1);
  EXPECT_EQ(inlets(), 1);
  mesh_.surfaces.clear();
  EXPECT_EQ(inlets(), 0);
  mesh_.surfaces = {{{1, 2, 9, 9}, 4, 1, 1, 3, 1, 0}};
  EXPECT_EQ(inlets(), -1);
  mesh_.surfaces.clear();
  mesh_.more = [](OFEIO_Manipulator& f) { beam(f, 1, 1, 0); };
  EXPECT_EQ(inlets(), 0);
  EXPECT_EQ(OFEIO_Manipulator::extractCoolantInletInfo((dir_ / "none").c_str(), 0, info_), -1);
}

TEST_F(Extract, Gates) {
  mesh_.plastic = {
      {{1, 2, 3, 5}, 1, 1}, {{1, 2, 3, 5}, 1, 201}, {{1, 2, 3, 5}, 1, 300}, {{1, 2, 3, 5}, 1, 301}};
  const auto gate = [](int interfaceId, int elementNo, std::uint32_t flags, int group) {
    return Mesh::Surface{{1, 2, 3, 3}, interfaceId, 1, 0, 4, elementNo, tag(flags, group)};
  };
  mesh_.surfaces = {gate(1, 1, 0b011, 7),  // common, of the part
                    gate(1, 2, 0b101, 7),  // common, of the hot runner: the flag of group 7
                    gate(1, 4, 0b111, 2),        gate(1, 3, 0b110, 5),
                    gate(1, 1, 0b110, 4),        gate(1, 2, 0b001, 8),               // bit 0 alone
                    gate(1, 2, 0b100, 9),                                            // bit 2 alone
                    gate(2, 2, 0b011, 10),                                           // no part face
                    gate(1, 99, 0b011, 0xFFFFF), gate(1, 0, 0b1000'0011, 0xFFFFF)};  // owner outside its list
  ASSERT_EQ(mesh_.write(path_), 1);
  const auto text = [](const std::vector<GateInfo::Gate>& gates) {
    std::string line;
    for (const auto& g : gates) line += std::to_string(g.group) + ":" + std::to_string(g.flag) + " ";
    return line;
  };
  GateInfo info;
  EXPECT_EQ(OFEIO_Manipulator::extractGateInfo(path_.c_str(), true, nullptr, info, nullptr), 1);
  EXPECT_EQ(text(info.commonGates), "2:0 7:1 1048575:0 ");
  EXPECT_EQ(text(info.hotColdGates), "4:0 5:1 ");
  EXPECT_EQ(OFEIO_Manipulator::extractGateInfo(path_.c_str(), false, nullptr, info, nullptr), 0);
  EXPECT_EQ(OFEIO_Manipulator::extractGateInfo((dir_ / "none").c_str(), true, nullptr, info, nullptr), 0);
  EXPECT_TRUE(info.commonGates.empty());
}

}  // namespace
}  // namespace orvmesh::test
