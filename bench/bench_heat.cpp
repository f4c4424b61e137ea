// Reading a COMSOL table against getline and sscanf, both from memory.
#include <cstdio>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "heatsource/comsol_reader.h"
#include "peer.h"

namespace {

using namespace orvmesh::bench;

// Seventeen digits, columns of 25 characters, as COMSOL exports them.
std::string comsolText(std::int64_t rows) {
  std::mt19937 random(1);
  std::uniform_real_distribution<double> anywhere(-0.1, 0.1);
  std::string text = "% Model: m\n% Nodes: " + std::to_string(rows) + "\n% x y z mf.Qsrh (W/m^2)\n";
  char row[160];
  for (std::int64_t i = 0; i < rows; ++i) {
    std::snprintf(row, sizeof row, "%-25.17g%-25.17g%-25.17g%.17g\n", anywhere(random), anywhere(random),
                  anywhere(random), 1e5 * anywhere(random));
    text += row;
  }
  return text;
}

double readPlainly(const std::string& text) {
  std::istringstream in(text);
  std::string line;
  std::vector<double> columns[4];
  while (std::getline(in, line)) {
    double row[4] = {};
    if (std::sscanf(line.c_str(), "%lf %lf %lf %lf", &row[0], &row[1], &row[2], &row[3]) < 4) continue;
    for (int k = 0; k < 4; ++k) columns[k].push_back(row[k]);
  }
  return columns[0].back();
}

// 50,000 rows are 5 MB.
void readTable(benchmark::State& state) {
  const std::string text = comsolText(state.range(0));
  double seconds = 0;
  compare(
      state,
      [&] {
        seconds += cpuOf([&] {
          std::istringstream in(text);
          COrvTool_PointFileReader table;
          orvmesh::heatsource::ComsolReport report;
          readComsol(in, orvmesh::heatsource::mostTableBytes(text.size()), table, report,
                     [](double, double) {});
          if (report.rows != state.range(0)) state.SkipWithError("rows are missing");
        });
      },
      [&] { benchmark::DoNotOptimize(readPlainly(text)); });
  state.counters["MB/s"] = 5e-6 * static_cast<double>(text.size()) / seconds;
}
BENCHMARK(readTable)->Arg(50000)->Arg(1000000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
