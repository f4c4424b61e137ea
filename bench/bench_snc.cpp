// Rewriting a sensor history: the exported class on a file against a copy of that file, and the rewrite alone
// on text in memory against a copy of that text.
#include <orvmesh/sensor_file.h>

#include <cstring>
#include <fstream>
#include <sstream>

#include "files.h"
#include "peer.h"
#include "platform/ofeio.h"
#include "sensor/snc_rewrite.h"

namespace {

using namespace orvmesh::bench;
using orvmesh::sensor::SensorMaps;

constexpr int kSensors = 500;

// A mesh whose mold element sensors lie by turns in an insert and in the mold base.
bool writeMesh(const std::string& path) {
  OFEIO_Manipulator file;
  if (file.beginWriting(path.c_str(), 14001, 0) != 1) return false;
  for (const float x : {0.0F, 1.0F, 2.0F, 3.0F}) file.writeNodeBlockEntry(x, x * x, x * x * x);
  const int nodes[] = {1, 2, 3, 4};
  for (const int material : {5002, 1}) file.writeElementMoldBaseBlockEntry(4, nodes, material, 1, 0);
  for (int i = 0; i < kSensors; ++i) {
    const int ids[] = {1 + i % 2, 0, i + 1, 0};
    file.writeSensorInfoBlockEntry(4, ids, 1, 2, 3);
  }
  return file.endWriting() == 1;
}

std::string history(const SensorMaps& maps, std::int64_t records) {
  std::string text = "1\n[HEADER]\nh\n[SENSOR INFO]\nfree\n";
  for (int type = 1; type <= 6; ++type) text += std::to_string(maps.newCounts().ofType(type)) + "\n";
  for (int i = 0; i < kSensors; ++i) text += "4 " + std::to_string(i) + " 1.5 2.5 3.5\n";
  text += "[HISTORY DATA]\n";
  for (std::int64_t r = 0; r < records; ++r) {
    text += std::to_string(r) + "\n";
    for (int i = 0; i < kSensors; ++i)
      text += "  " + std::to_string(1e-4 * static_cast<double>(r * i)) + "e+01\n";
    text += "\n";
  }
  return text + "[EOF]\n";
}

struct Files {
  Folder folder;
  std::string mesh = folder.file("mesh.ofe"), snc = folder.file("history.snc"), copy = folder.file("copy");
  std::string error;
  SensorMaps maps;
  std::string text;

  explicit Files(std::int64_t records) {
    if (!writeMesh(mesh)) error = "cannot write";
    maps = orvmesh::sensor::readStandardMaps(mesh.c_str(), 0, error);
    text = history(maps, records);
  }
};

// 10,000 records are 80 MB.
void rewriteFile(benchmark::State& state) {
  const Files files(state.range(0));
  std::ofstream(files.snc, std::ios::binary) << files.text;
  compare(
      state,
      [&] {
        COrvMeshTransfer_SensorFile transfer;
        transfer.TransferSensorFile_SNC(files.snc.c_str(), files.mesh.c_str(), 0, 0);
      },
      [&] { copyFile(files.snc, files.copy); });
}
BENCHMARK(rewriteFile)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

// Reports megabytes per CPU second, too: the one number here that depends on the machine.
void rewriteInMemory(benchmark::State& state) {
  const Files files(state.range(0));
  std::string out(files.text.size() + 4096, 0), copy(files.text.size(), 0);
  double seconds = 0;
  compare(
      state,
      [&] {
        std::istringstream in(files.text);
        std::size_t size = 0;
        const auto sink = [&](std::string_view piece) {
          std::memcpy(out.data() + size, piece.data(), piece.size());
          size += piece.size();
          return true;
        };
        seconds += cpuOf([&] {
          if (!orvmesh::sensor::rewriteSnc(in, sink, files.maps).error.empty()) std::abort();
        });
      },
      [&] { std::memcpy(copy.data(), files.text.data(), copy.size()); });
  state.counters["MB/s"] = 5e-6 * static_cast<double>(files.text.size()) / seconds;
}
BENCHMARK(rewriteInMemory)->Arg(1000)->Arg(10000)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
