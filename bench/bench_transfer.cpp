// Each variant against a bare copy of source and target.
#include <orvmesh/mesh_format_transfer.h>

#include "files.h"
#include "peer.h"
#include "synthetic_mold.h"

namespace {

using namespace orvmesh::bench;
using Entry = void (*)(COrvMeshFormatTransfer&, char*, char*);

void transfer(benchmark::State& state, Entry entry) {
  const Folder folder;
  const SyntheticMold mold(static_cast<int>(state.range(0)));
  std::string source = folder.file("mold.ofe");
  std::string target = folder.file("target.ofe");
  if (!mold.write(source)) return state.SkipWithError("cannot write");
  const auto run = [&] {
    COrvMeshFormatTransfer object;
    entry(object, source.data(), target.data());
    if (*object.GetErrorMessage_Link() != 0) std::abort();
  };
  run();
  compare(state, run, [&] {
    copyFile(source, folder.file("source-copy"));
    copyFile(target, folder.file("target-copy"));
  });
}

#define ORVMESH_BENCH_VARIANT(name, call)                                                      \
  BENCHMARK_CAPTURE(transfer, name,                                                            \
                    [](COrvMeshFormatTransfer& t, char* src, char* dst) { t.call(src, dst); }) \
      ->Arg(20)                                                                                \
      ->Arg(55)                                                                                \
      ->Iterations(1)                                                                          \
      ->Unit(benchmark::kMillisecond)

ORVMESH_BENCH_VARIANT(channels, TransferMesh_OnlyChannel);
ORVMESH_BENCH_VARIANT(hotRunner, TransferMesh_OnlyHotRunner);
ORVMESH_BENCH_VARIANT(streamLine, TransferMesh_StreamLineMesh);
ORVMESH_BENCH_VARIANT(moldbase, TransferMesh_OnlyMoldbase);
ORVMESH_BENCH_VARIANT(partInserts, TransferMesh_CombinePI);
ORVMESH_BENCH_VARIANT(partInsertsChannels, TransferMesh_CombinePIAndChannel);

}  // namespace
