#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <random>
#include <sstream>
#include <tuple>

#include "heatsource/comsol_reader.h"

namespace {

using namespace orvmesh::heatsource;

struct Result {
  COrvTool_PointFileReader table;
  ComsolReport report;
  std::vector<std::pair<double, double>> ranges;

  std::array<double, 4> row(int i) const {
    return {table.GetX_Link()[i], table.GetY_Link()[i], table.GetZ_Link()[i], table.GetValue_Link()[i]};
  }
};

Result read(const std::string& text) {
  Result result;
  std::istringstream in(text);
  readComsol(in, mostTableBytes(text.size()), result.table, result.report,
             [&](double largest, double smallest) { result.ranges.emplace_back(largest, smallest); });
  return result;
}

TEST(ComsolReader, WhichLinesStartATable) {
  const std::tuple<const char*, int, std::size_t> cases[] = {
      // text, points, blocks
      {"% Nodes: 1\n% x y z q\n1 1 1 1\n", 1, 1},
      {" \t%  Nodes:\t1 \r\n%\tx\r\n1 1 1 1", 1, 1},
      {"%Nodes: 1\n% x y z q\n1 1 1 1\n", 0, 0},
      {"% Nodes: 1\n%x y z q\n1 1 1 1\n", 1, 0},
      {"% Nodes: 1\n% X y z q\n1 1 1 1\n", 1, 0},
      {"% x y z q\n% Nodes: 1\n1 1 1 1\n", 1, 0},
      {"% Nodes: 1\n1 1 1 1\n% x y z q\n", 1, 1},
      {"% any 2 Nodes: 1\n% x\n1 1 1 1\n1 1 1 1\n", 2, 1},
      {"% a bNodes:c\n% Nodes:1 2\n% x\n1\n1\n", 2, 1},
      {"% Nodes: 1\n% x\n1 1 1 1\n% x\n2 2 2 2\n", 1, 1},
      {"% Nodes: 1\n% x\n1 1 1 1\n% Nodes: 2\n% x\n2 2 2 2\n", 2, 2},
      {"% Nodes: 0\n% x\n% Nodes: 1\n", 1, 0},
      {"% Nodes: +2x\n", 2, 0},
      {"", 0, 0},
  };
  for (const auto& [text, points, blocks] : cases) {
    const Result result = read(text);
    EXPECT_EQ(result.table.GetPointNumber(), points) << text;
    EXPECT_EQ(static_cast<std::size_t>(result.report.blocks), blocks) << text;
    EXPECT_EQ(result.ranges.size(), blocks) << text;
  }
}

TEST(ComsolReader, NumbersOfPointsThatCannotBeAreRefused) {
  for (const char* number :
       {"-1", "-2147483648", "2147483648", "99999999999999999999", "2147483647", "3000000", "many", ""}) {
    const Result result = read("%\n% Nodes: " + std::string(number) + "\n% x\n1 1 1 1\n");
    EXPECT_EQ(result.table.GetPointNumber(), 0) << number;
    EXPECT_EQ(result.report.error.rfind("line 2: ", 0), 0U) << number << result.report.error;
  }
  const Result shortFile = read("% Nodes: 2000000\n% x\n1 1 1 1\n");
  EXPECT_EQ(shortFile.table.GetPointNumber(), 2000000);
  EXPECT_EQ(shortFile.report.rows, 1);
  EXPECT_EQ(shortFile.row(2000000), (std::array<double, 4>{}));
}

TEST(ComsolReader, RowsAsTheyCome) {
  const std::string head = "% Nodes: 9\n%  x y z\tq p \n";
  const std::string nul("1 2 3\0 4", 8);
  const Result result =
      read(head + "1 1 1 1 8 9\r\n\r\n \t\n1 2 x 4\n" + nul + "\n1 1 1 nan 5\n1 1 1 -inf\nnan 1 1 1\n1 1 1 " +
           std::string(100000, '0') + "1\n");
  const ComsolReport& report = result.report;
  const std::vector<std::vector<std::int64_t>> lines = {report.blank.first,      report.incomplete.first,
                                                        report.notANumber.first, report.infinite.first,
                                                        report.nowhere.first,    report.longer.first};
  EXPECT_EQ(lines, (std::vector<std::vector<std::int64_t>>{{4, 5}, {6, 7}, {8}, {9}, {10}, {3, 8}}));
  EXPECT_EQ(report.empty, (std::vector<std::int32_t>{2, 3, 4, 5}));
  EXPECT_EQ(report.columns, "x y z q p");
  EXPECT_EQ(std::tuple(report.rows, report.moreColumns, report.cutLines, report.lines),
            std::tuple(9, 2U, 1, 11));
  EXPECT_EQ(result.row(4), (std::array<double, 4>{100, 200, 0, -0.0}));
  EXPECT_EQ(result.row(9), (std::array<double, 4>{100, 100, 100, -0.0}));
  EXPECT_EQ(result.ranges.front().first, 1);
}

// Pieces end anywhere in a line; what a file cut short still holds is read.
TEST(ComsolReader, LongFilesAndFilesCutShort) {
  std::string text = "% Nodes: 40\n% x y z q\n";
  for (int i = 1; i <= 40; ++i) text += std::to_string(i) + " 2 3 " + std::to_string(i) + "5\n";
  for (std::size_t length = 0; length <= text.size(); ++length) {
    const Result result = read(text.substr(0, length));
    const auto feeds = std::count(text.begin(), text.begin() + static_cast<std::ptrdiff_t>(length), '\n');
    for (int i = 1; i <= feeds - 2; ++i) ASSERT_EQ(result.row(i)[0], 100.0 * i) << length;
    ASSERT_EQ(result.table.GetPointNumber() == 40, length >= 11);
  }
  text = "% Nodes: 30000\n% x y z q\n";
  std::mt19937 random(9);
  for (int i = 1; i <= 30000; ++i)
    text += std::to_string(i) + " 2 3 4" +
            std::string(i % 1000 == 0 ? 60000 + random() % 300000 : random() % 40, ' ') + "\n";
  const Result result = read(text);
  ASSERT_EQ(result.report.rows, 30000);
  for (int i = 1; i <= 30000; ++i) ASSERT_EQ(result.row(i)[0], 100.0 * i);
}

}  // namespace
