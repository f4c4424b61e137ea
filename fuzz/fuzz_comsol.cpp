// COMSOL tables: whatever they hold, the table has the announced points, rows that are not there are zero,
// and it can be mapped onto nodes.
#include <algorithm>
#include <cstdlib>
#include <sstream>

#include "fuzz/scratch.h"
#include "heatsource/comsol_reader.h"
#include "heatsource/heat_map.h"

using namespace orvmesh::heatsource;

namespace {

constexpr float kNodes[] = {0, 0, 0, 1, 2, 3, -50, 1e30F, 7};

void expect(bool holds) {
  if (!holds) std::abort();
}

void expectZero(const COrvTool_PointFileReader& table, int first) {
  for (const double* column :
       {table.GetX_Link(), table.GetY_Link(), table.GetZ_Link(), table.GetValue_Link()}) {
    if (column == nullptr) continue;
    expect(column[0] == 0);
    for (int i = first; i <= table.GetPointNumber(); ++i) expect(column[i] == 0);
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  std::istringstream in(std::string(reinterpret_cast<const char*>(data), size));
  COrvTool_PointFileReader table;
  ComsolReport report;
  int blocks = 0;
  const std::uint64_t mostBytes = (std::uint64_t{1} << 12) + 16 * size;  // small, to be quick
  readComsol(in, mostBytes, table, report, [&](double, double) { ++blocks; });
  expect(report.points == table.GetPointNumber() && blocks == report.blocks);
  expect(0 <= report.rows && report.rows <= report.points && report.rows <= report.lines);
  const auto bytes = 32 * (static_cast<std::uint64_t>(report.points) + 1);
  expect(report.points == 0 || bytes <= mostBytes);
  expect(report.empty.size() == static_cast<std::size_t>(report.blank.count + report.incomplete.count));
  expect(report.empty.empty() || report.empty.back() <= report.rows);
  expectZero(table, report.rows + 1);
  if (report.points > 1000 || !orvmesh::fuzzing::Turn(data, size).oneIn(4)) return 0;
  const HeatMap map = mapHeat(table, report, NodeTable{kNodes, 1});
  expect(map.mapped <= 3 && map.nodes.count + map.notFinite == map.mapped);
  (void)unitMistake(map);
  return 0;
}
