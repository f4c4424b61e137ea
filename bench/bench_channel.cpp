// Taking the channels' surface out of an OFE file against reading the same blocks of the same file entry by
// entry. ORVMESH_BENCH_MOLD names a mold to use in place of a synthetic one.
#include <orvmesh/cooling_channel_surface.h>

#include "files.h"
#include "peer.h"
#include "platform/ofeio.h"

namespace {

using namespace orvmesh::bench;

// A grid of n^3 nodes and its six sides as faces, those of one side a channel's.
bool writeMold(const std::string& path, int n) {
  OFEIO_Manipulator file;
  file[m_HEADER_NNode] = n * n * n;
  file[m_HEADER_NElemS] = 6 * (n - 1) * (n - 1);
  if (file.beginWriting(path.c_str(), 14001, 0) != 1) return false;
  for (int i = 0; i < n * n * n; ++i)
    file.writeNodeBlockEntry(static_cast<float>(i % n), static_cast<float>(i / n % n),
                             static_cast<float>(i / n / n));
  for (int side = 0; side < 6; ++side)
    for (int k = 0; k < (n - 1) * (n - 1); ++k) {
      const int first = 1 + side * n * n + k / (n - 1) * n + k % (n - 1);
      const int nodes[] = {first, first + 1, first + n + 1, first + n};
      file.writeElementSurfaceBlockEntry(nodes, side == 3 ? 3 : 2, 1, 0, 1, 1, 0);
    }
  return file.endWriting() == 1;
}

// What a program that only looks at every entry would do.
float readEntries(const std::string& path) {
  OFEIO_Manipulator file;
  if (file.beginReading(path.c_str(), nullptr, 0) != 1) std::abort();
  float sum = 0, x = 0, y = 0, z = 0, f[10];
  while (file.readNodeBlockEntry(x, y, z) >= 0) sum += x + y + z;
  int nodes[4], v[6];
  while (file.readElementSurfaceBlockEntry(nodes, v[0], v[1], v[2], v[3], v[4], v[5]) >= 0)
    sum += static_cast<float>(nodes[0]);
  while (file.readCoolantChannelLayoutBlockEntry(v[0], x, y, z, v[1], v[2], v[3], f[0], f[1], v[4], v[5],
                                                 nodes[0], f[2], f[3], f[4], f[5], f[6], f[7], f[8],
                                                 f[9]) >= 0)
    sum += x;
  file.endReading();
  return sum;
}

void extractSurface(benchmark::State& state) {
  const Folder folder;
  const char* const given = std::getenv("ORVMESH_BENCH_MOLD");
  const std::string path = given != nullptr ? given : folder.file("mold.ofe");
  if (given == nullptr && !writeMold(path, static_cast<int>(state.range(0))))
    return state.SkipWithError("cannot write");
  compare(
      state,
      [&] {
        COrvMeshTrans_GetCoolingChannelFromElementSurface surface;
        if (surface.SetOFEFile(path.c_str()) != 1) std::abort();
      },
      [&] { benchmark::DoNotOptimize(readEntries(path)); });
}
BENCHMARK(extractSurface)->Arg(40)->Arg(100)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
