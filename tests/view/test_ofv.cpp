#include "view/ofv_read.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>

#include "platform/ofv_writer.h"
#include "support/box_grid.h"
#include "support/failure_of.h"
#include "support/temp_dir.h"

using namespace orvmesh;
using namespace orvmesh::test;
using namespace orvmesh::view;

namespace {

std::string written(const TempDir& dir, const BoxGrid& grid) {
  COrvOFVWriter writer;
  std::string path = dir / "a.ofv";
  EXPECT_EQ(writeWholeOFV(writer, path.c_str(), grid.mesh()), 1) << writer.errorText();
  return path;
}

TEST(OfvFile, CavitiesHaveTheVolumeOfTheirCells) {
  const TempDir dir;
  const BoxGrid grid({3, 1, 1});
  const OfvFile file(written(dir, grid));
  const OfvSummary summary = summaryOf(file.mesh());
  EXPECT_EQ(summary.cells, (std::vector<std::int64_t>{2, 1}));
  EXPECT_NEAR(summary.volumes[0], 2, 1e-12);
  EXPECT_NEAR(summary.volumes[1], 1, 1e-12);
  EXPECT_EQ(summary.boxMin, (std::array<double, 3>{1000, -1, 0.5}));
}

// The writer takes what is within the ranges; that it is no mesh shows when it is read.
TEST(OfvFile, WhatDoesNotFitTogetherIsRefused) {
  const TempDir dir;
  BoxGrid grid({2, 1, 1});
  std::fill_n(grid.nodes.begin(), 4, 1);
  const std::string path = written(dir, grid), target = dir / "a.vtu";
  for (const auto& told :
       {failureOf([&] { ofvInfoAsText(path); }), failureOf([&] { exportOfv(path, target); })})
    EXPECT_NE(told.find("a.ofv: face 1: point 1 is there twice"), std::string::npos) << told;
  EXPECT_FALSE(std::filesystem::exists(target));
}

}  // namespace
