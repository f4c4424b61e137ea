#include <gtest/gtest.h>
#include <orvmesh/heat_source.h>

#include <cmath>
#include <fstream>

#include "heatsource/heat_map.h"
#include "support/temp_dir.h"

namespace {

using orvmesh::test::TempDir;
namespace heat = orvmesh::heatsource;

struct Nodes {
  std::vector<double> x{0}, y{0}, z{0};
  void add(double a, double b, double c) {
    x.push_back(a);
    y.push_back(b);
    z.push_back(c);
  }
  int count() const { return static_cast<int>(x.size()) - 1; }
};

class HeatSource : public testing::Test {
 protected:
  std::string write(const std::string& text) {
    std::string path = folder_ / ("table" + std::to_string(++files_) + ".txt");
    std::ofstream(path, std::ios::binary) << text;
    return path;
  }
  // What step 1 prints.
  std::string step1(const std::string& path, bool wanted) {
    testing::internal::CaptureStdout();
    EXPECT_EQ(source_.SetStep1_InputParmeter(path.c_str(), 1.5, 4), wanted);
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
  }
  std::vector<double> step2(Nodes& nodes) {
    EXPECT_TRUE(source_.SetStep2_InputMesh(nodes.count(), nodes.x.data(), nodes.y.data(), nodes.z.data()));
    const double* const values = source_.GetOutputHeatSourceValue_Link();
    return {values, values + nodes.count() + 1};
  }

  TempDir folder_;
  int files_ = 0;
  COrvCool_Electromagnetic_HeatSource source_;
};

TEST_F(HeatSource, ValuesOfTheNearestPoints) {
  const std::string path = write("% Nodes: 3\n% x y z q\n0 0 0 2\n0.1 0 0 30000\n0 0.2 0 -4\n");
  EXPECT_EQ(step1(path, true),
            "MAX surface resistive losses= 3 W/cm2\nMIN surface resistive losses= -0.0004 W/cm2\n");
  Nodes nodes;
  nodes.add(1, 1, 0);
  nodes.add(9, 1, 0);
  nodes.add(5, 0, 0);  // as far from both
  nodes.add(0, 19, -3);
  EXPECT_EQ(step2(nodes), (std::vector<double>{0, -2000, -3e7, -2000, 4000}));
  Nodes one;
  one.add(100, 0, 0);
  EXPECT_EQ(step2(one), (std::vector<double>{0, -3e7}));
}

TEST_F(HeatSource, TheHeatingPeriodHasBothItsEnds) {
  step1(write("% Nodes: 1\n% x\n1 1 1 1\n"), true);
  double start = 0, end = 0;
  source_.GetHeatingTime(start, end);
  EXPECT_EQ(start, 1.5);
  EXPECT_EQ(end, 4);
  for (const double time : {1.5, 2.0, 4.0}) EXPECT_TRUE(source_.IfActiveElectromagnetic(time)) << time;
  for (const double time : {std::nextafter(1.5, 0), std::nextafter(4.0, 5), std::nan("")})
    EXPECT_FALSE(source_.IfActiveElectromagnetic(time)) << time;
}

TEST_F(HeatSource, AFileThatDoesNotOpenLeavesEverything) {
  step1(write("% Nodes: 1\n% x\n1 1 1 1\n"), true);
  for (const std::string& path : {folder_ / "none", folder_.path()}) {
    testing::internal::CaptureStdout();
    EXPECT_FALSE(source_.SetStep1_InputParmeter(path.c_str(), 7, 8));
    std::fflush(stdout);
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "can not open fileName=" + path + "\n");
  }
  EXPECT_TRUE(source_.IfActiveElectromagnetic(4));
  Nodes nodes;
  nodes.add(0, 0, 0);
  EXPECT_EQ(step2(nodes)[1], -1000);
}

TEST_F(HeatSource, WithoutATableAllStaysZero) {
  Nodes nodes;
  nodes.add(1, 2, 3);
  EXPECT_EQ(step2(nodes), (std::vector<double>{0, 0}));
  for (const char* text : {"", "1 2 3 4\n", "% Nodes: 2\n1 1 1 1\n", "% Nodes: -4\n% x\n1 1 1 1\n"}) {
    step1(write("% Nodes: 1\n% x\n1 1 1 1\n"), true);
    EXPECT_EQ(step1(write(text), true), "") << text;
    EXPECT_STRNE(source_.GetErrorMessage_Link(), "") << text;
    EXPECT_EQ(step2(nodes), (std::vector<double>{0, 0})) << text;
  }
  EXPECT_EQ(step1(write("% Nodes: 2\n% x\n"), true),
            "MAX surface resistive losses= -1e+26 W/cm2\nMIN surface resistive losses= 1e+26 W/cm2\n");
  EXPECT_TRUE(source_.SetStep2_InputMesh(-3, nullptr, nullptr, nullptr));
  EXPECT_TRUE(source_.SetStep2_InputMesh(5, nullptr, nullptr, nullptr));
  EXPECT_EQ(source_.GetOutputHeatSourceValue_Link()[5], 0);
}

TEST_F(HeatSource, CopiesShareWhatTheyHold) {
  step1(write("% Nodes: 1\n% x\n1 1 1 1\n"), true);
  Nodes nodes;
  nodes.add(1, 2, 3);
  step2(nodes);
  auto copy = std::make_unique<COrvCool_Electromagnetic_HeatSource>(source_);
  double* const shared = copy->GetOutputHeatSourceValue_Link();
  EXPECT_EQ(shared, source_.GetOutputHeatSourceValue_Link());
  step1(write("% Nodes: 1\n% x\n1 1 1 2\n"), true);
  EXPECT_EQ(step2(nodes)[1], -2000);
  EXPECT_EQ(shared[1], -1000);
  EXPECT_TRUE(copy->SetStep2_InputMesh(1, nodes.x.data(), nodes.y.data(), nodes.z.data()));
  EXPECT_EQ(copy->GetOutputHeatSourceValue_Link()[1], -1000);
  source_ = *copy;
  copy.reset();
  EXPECT_EQ(source_.GetOutputHeatSourceValue_Link()[1], -1000);
}

TEST_F(HeatSource, NodesWithoutAPlaceRepeatTheOneBefore) {
  step1(write("% Nodes: 3\n% x\nnan 0 0 7\n0.01 0 0 1\n0.02 0 0 2\n"), true);
  Nodes nodes;
  for (const double x : {std::nan(""), 2.0, std::nan(""), 1.0, 0.0}) nodes.add(x, 0, 0);
  EXPECT_EQ(step2(nodes), (std::vector<double>{0, 0, -2000, -2000, -1000, -1000}));
}

TEST(UnitMistake, FactorsOfTheBoxes) {
  const struct {
    double factor, wanted;
  } cases[] = {{1, 0},       {9, 10},    {11.9, 10},      {13, 0},           {25.4, 25.4},
               {2.54, 2.54}, {2.4, 0},   {1.02e6, 1e6},   {100, 100},        {850, 1000},
               {2000, 0},    {0.1, 0.1}, {0.0011, 0.001}, {0.039, 1 / 25.4}, {0, 0}};
  for (const auto& one : cases) {
    heat::HeatMap map;
    map.nodeBox.add({1, 1, 1});
    map.nodeBox.add({2, 3, 4});
    map.pointBox.add({0, 0, 0});
    map.pointBox.add({one.factor, 2 * one.factor, 3 * one.factor});
    EXPECT_EQ(heat::unitMistake(map), one.wanted) << one.factor;
  }
}

}  // namespace
