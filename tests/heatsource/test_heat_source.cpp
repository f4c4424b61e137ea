#include <gtest/gtest.h>
#include <orvmesh/heat_source.h>

#include <array>
#include <cmath>
#include <fstream>

#include "heatsource/heat_map.h"
#include "support/temp_dir.h"

namespace {

using orvmesh::test::TempDir;
namespace heat = orvmesh::heatsource;

class HeatSource : public testing::Test {
 protected:
  // What step 1 prints.
  std::string step1At(const std::string& path, bool wanted) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(source_.SetStep1_InputParmeter(path.c_str(), 1.5, 4), wanted);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }
  std::string step1(const std::string& table) {
    const std::string path = folder_ / "table.txt";
    std::ofstream(path, std::ios::binary) << table;
    return step1At(path, true);
  }
  std::vector<double> step2(const std::vector<std::array<double, 3>>& nodes) {
    for (std::size_t axis = 0; axis < 3; ++axis) {
      xyz_[axis] = {0};
      for (const auto& node : nodes) xyz_[axis].push_back(node[axis]);
    }
    const int count = static_cast<int>(nodes.size());
    EXPECT_TRUE(source_.SetStep2_InputMesh(count, xyz_[0].data(), xyz_[1].data(), xyz_[2].data()));
    const double* const values = source_.GetOutputHeatSourceValue_Link();
    return {values, values + count + 1};
  }

  TempDir folder_;
  std::vector<double> xyz_[3];
  COrvCool_Electromagnetic_HeatSource source_;
};

TEST_F(HeatSource, ValuesOfTheNearestPoints) {
  // Only the three lines behind the columns are points, in m.
  EXPECT_EQ(step1("1 2 3 4\n% Nodes: 3\n9 9 9 9\n% x y z q\n0 0 0 2\n0.1 0 0 30000\n0 0.2 0 -4\n7 7 7 7\n"),
            "MAX surface resistive losses= 3 W/cm2\nMIN surface resistive losses= -0.0004 W/cm2\n");
  // The third is as far from both.
  EXPECT_EQ(step2({{1, 1, 0}, {9, 1, 0}, {5, 0, 0}, {0, 19, -3}}),
            (std::vector<double>{0, -2000, -3e7, -2000, 4000}));
  EXPECT_EQ(step2({{100, 0, 0}}), (std::vector<double>{0, -3e7}));
}

TEST_F(HeatSource, TheHeatingPeriodHasBothItsEnds) {
  step1("% Nodes: 1\n% x\n1 1 1 1\n");
  double start = 0, end = 0;
  source_.GetHeatingTime(start, end);
  EXPECT_EQ(std::pair(start, end), std::pair(1.5, 4.0));
  for (const double time : {1.5, 2.0, 4.0}) EXPECT_TRUE(source_.IfActiveElectromagnetic(time)) << time;
  for (const double time : {std::nextafter(1.5, 0), std::nextafter(4.0, 5), std::nan("")})
    EXPECT_FALSE(source_.IfActiveElectromagnetic(time)) << time;
}

TEST_F(HeatSource, AFileThatDoesNotOpenLeavesEverything) {
  step1("% Nodes: 1\n% x\n1 1 1 1\n");
  for (const std::string& path : {folder_ / "none", folder_.path()})
    EXPECT_EQ(step1At(path, false), "can not open fileName=" + path + "\n");
  EXPECT_TRUE(source_.IfActiveElectromagnetic(4));
  EXPECT_EQ(step2({{0, 0, 0}})[1], -1000);
}

TEST_F(HeatSource, WithoutATableAllStaysZero) {
  EXPECT_EQ(step2({{1, 2, 3}}), (std::vector<double>{0, 0}));
  for (const char* text : {"", "1 2 3 4\n", "% Nodes: 2\n1 1 1 1\n", "% Nodes: -4\n% x\n1 1 1 1\n"}) {
    step1("% Nodes: 1\n% x\n1 1 1 1\n");
    EXPECT_EQ(step1(text), "") << text;
    EXPECT_STRNE(source_.GetErrorMessage_Link(), "") << text;
    EXPECT_EQ(step2({{1, 2, 3}}), (std::vector<double>{0, 0})) << text;
  }
  EXPECT_EQ(step1("% Nodes: 2\n% x\n"),
            "MAX surface resistive losses= -1e+26 W/cm2\nMIN surface resistive losses= 1e+26 W/cm2\n");
  for (const int count : {-3, 5}) EXPECT_TRUE(source_.SetStep2_InputMesh(count, nullptr, nullptr, nullptr));
  EXPECT_EQ(source_.GetOutputHeatSourceValue_Link()[5], 0);
}

TEST_F(HeatSource, CopiesShareWhatTheyHold) {
  step1("% Nodes: 1\n% x\n1 1 1 1\n");
  step2({{1, 2, 3}});
  auto copy = std::make_unique<COrvCool_Electromagnetic_HeatSource>(source_);
  double* const shared = copy->GetOutputHeatSourceValue_Link();
  EXPECT_EQ(shared, source_.GetOutputHeatSourceValue_Link());
  step1("% Nodes: 1\n% x\n1 1 1 2\n");
  EXPECT_EQ(step2({{1, 2, 3}})[1], -2000);
  EXPECT_EQ(shared[1], -1000);
  EXPECT_TRUE(copy->SetStep2_InputMesh(1, xyz_[0].data(), xyz_[1].data(), xyz_[2].data()));
  source_ = *copy;
  copy.reset();
  EXPECT_EQ(source_.GetOutputHeatSourceValue_Link()[1], -1000);
}

TEST_F(HeatSource, NodesWithoutAPlaceRepeatTheOneBefore) {
  step1("% Nodes: 3\n% x\nnan 0 0 7\n0.01 0 0 1\n0.02 0 0 2\n");
  const double nan = std::nan("");
  EXPECT_EQ(step2({{nan, 0, 0}, {2, 0, 0}, {nan, 0, 0}, {1, 0, 0}, {0, 0, 0}}),
            (std::vector<double>{0, 0, -2000, -2000, -1000, -1000}));
}

TEST(UnitMistake, FactorsOfTheBoxes) {
  const struct {
    double factor, wanted;
  } cases[] = {{1, 0},       {9, 10},    {11.9, 10},      {13, 0},           {25.4, 25.4},
               {2.54, 2.54}, {2.4, 0},   {1.02e6, 1e6},   {100, 100},        {850, 1000},
               {2000, 0},    {0.1, 0.1}, {0.0011, 0.001}, {0.039, 1 / 25.4}, {0, 0}};
  for (const auto& [factor, wanted] : cases) {
    heat::HeatMap map;
    map.nodeBox.add({1, 1, 1});
    map.nodeBox.add({2, 3, 4});
    map.pointBox.add({0, 0, 0});
    map.pointBox.add({factor, 2 * factor, 3 * factor});
    EXPECT_EQ(heat::unitMistake(map), wanted) << factor;
  }
}

}  // namespace
