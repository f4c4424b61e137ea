#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <functional>
#include <limits>

#include "platform/ofv_reader.h"
#include "platform/ofv_writer.h"
#include "support/box_grid.h"
#include "support/files.h"
#include "support/temp_dir.h"

using namespace orvmesh;
using namespace orvmesh::test;

namespace {

void expectSame(const OFVMesh& a, const OFVMesh& b) {
  const auto same = [](auto x, auto y) { return std::ranges::equal(x, y); };
  EXPECT_TRUE(same(a.xyz, b.xyz) && same(a.faceOffsets, b.faceOffsets) && same(a.faceNodes, b.faceNodes));
  EXPECT_TRUE(same(a.owner, b.owner) && same(a.neighbour, b.neighbour) && same(a.cellCavity, b.cellCavity));
  EXPECT_TRUE(same(a.cavityNumber, b.cavityNumber) && same(a.cavityKind, b.cavityKind));
  EXPECT_TRUE(same(a.inletID, b.inletID) && same(a.inletGroup, b.inletGroup));
}

// Each spoils one thing; the text is in the line that refuses it.
struct Fault {
  const char* text;
  std::function<void(BoxGrid&)> spoil;
};
const Fault kFaults[] = {
    {"point 2: y is nan", [](BoxGrid& g) { g.xyz[4] = std::numeric_limits<double>::quiet_NaN(); }},
    {"coordinates (legal: 3 for each point)", [](BoxGrid& g) { g.xyz.pop_back(); }},
    {"cavity 2: its number is 10", [](BoxGrid& g) { g.number[1] = 10; }},
    {"cavity 2: its kind is 2", [](BoxGrid& g) { g.kind[1] = 2; }},
    {"1 kinds for 2 cavities", [](BoxGrid& g) { g.kind.pop_back(); }},
    {"cell 1: its cavity is 0", [](BoxGrid& g) { g.cavity[0] = 0; }},
    {"cell 2: its cavity is 3", [](BoxGrid& g) { g.cavity[1] = 3; }},
    {"face 1: point 4 is 13 (legal: 1 to 12)", [](BoxGrid& g) { g.nodes[3] = 13; }},
    {"face 2: point 1 is 0", [](BoxGrid& g) { g.nodes[4] = 0; }},
    {"face 3: its number of points", [](BoxGrid& g) { g.offsets[3] = 10; }},
    {"face 1: its number of points",
     [](BoxGrid& g) { g.offsets[1] = std::numeric_limits<std::int64_t>::min(); }},
    {"the first face offset is 1", [](BoxGrid& g) { g.offsets[0] = 1; }},
    {"the faces have 9223372036854775807 points", [](BoxGrid& g) { g.offsets.back() = INT64_MAX; }},
    {"11 face offsets for 11 faces", [](BoxGrid& g) { g.offsets.pop_back(); }},
    {"face 4: its owner is 3", [](BoxGrid& g) { g.owner[3] = 3; }},
    {"face 4: its neighbour is -1", [](BoxGrid& g) { g.neighbour[3] = -1; }},
    {"face 2: its neighbour is 1 (legal: another cell", [](BoxGrid& g) { g.neighbour[1] = 1; }},
    {"10 neighbours for 11 faces", [](BoxGrid& g) { g.neighbour.pop_back(); }},
    {"inlet 2: its ID is 7", [](BoxGrid& g) { g.inlet[1] = 7; }},
    {"inlet 2: its channel group is 1001", [](BoxGrid& g) { g.group[1] = 1001; }},
};

TEST(Ofv, WhatIsWrittenIsRead) {
  const TempDir dir;
  BoxGrid grid({3, 2, 2});
  ASSERT_EQ(faultOfRelations(grid.mesh()), "");
  for (const bool inlets : {true, false}) {
    if (!inlets) grid.inlet = grid.group = {};
    COrvOFVWriter writer;
    ASSERT_EQ(writeWholeOFV(writer, (dir / "a.ofv").c_str(), grid.mesh()), 1) << writer.errorText();
    COrvOFVReader reader;
    ASSERT_EQ(reader.open((dir / "a.ofv").c_str()), 1) << reader.errorText();
    expectSame(reader.mesh(), grid.mesh());
  }
  EXPECT_TRUE(COrvOFVReader::isOFV((dir / "a.ofv").c_str()));
}

TEST(Ofv, WhatDoesNotFitIsRefusedAndLeavesTheTarget) {
  const TempDir dir;
  const std::string path = dir / "a.ofv";
  writeBytes(path, "old");
  for (const Fault& fault : kFaults) {
    BoxGrid grid({2, 1, 1});
    fault.spoil(grid);
    COrvOFVWriter writer;
    EXPECT_EQ(writeWholeOFV(writer, path.c_str(), grid.mesh()), 0) << fault.text;
    EXPECT_NE(writer.errorText().find(fault.text), std::string::npos) << writer.errorText() << "\n"
                                                                      << fault.text;
    EXPECT_EQ(writer.endWriting(), 0);
    EXPECT_EQ(std::filesystem::file_size(path), 3U);
  }
}

TEST(Ofv, PartsHaveAnOrder) {
  const TempDir dir;
  const BoxGrid grid({1, 1, 1});
  const OFVMesh m = grid.mesh();
  using Step = std::function<int(COrvOFVWriter&)>;
  const Step parts[] = {
      [&](auto& w) { return w.writePoints(m.xyz); },
      [&](auto& w) { return w.writeCavities(m.cavityNumber, m.cavityKind); },
      [&](auto& w) { return w.writeCells(m.cellCavity); },
      [&](auto& w) { return w.writeFaces(m.faceOffsets, m.faceNodes, m.owner, m.neighbour); },
  };
  const std::string path = dir / "a.ofv";
  for (std::size_t odd = 0; odd < 4; ++odd)
    for (const int times : {0, 2}) {
      COrvOFVWriter writer;
      ASSERT_EQ(writer.beginWriting(path.c_str()), 1);
      EXPECT_EQ(writer.beginWriting(path.c_str()), 0);
      writer.endWriting();
      ASSERT_EQ(writer.beginWriting(path.c_str()), 1);
      for (std::size_t i = 0; i < 4; ++i)
        for (int n = 0; n < (i == odd ? times : 1); ++n) parts[i](writer);
      EXPECT_EQ(writer.endWriting(), 0) << odd;
      EXPECT_NE(writer.errorText(), "");
      EXPECT_FALSE(std::filesystem::exists(path));
    }
}

}  // namespace
