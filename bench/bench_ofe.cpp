// Writing an OFE file entry by entry and loading it whole, each against a bare copy of the same bytes.
#include "files.h"
#include "peer.h"
#include "platform/cofedata.h"
#include "synthetic_mold.h"

namespace {

using namespace orvmesh::bench;

void writeEntries(benchmark::State& state) {
  const Folder folder;
  const SyntheticMold mold(static_cast<int>(state.range(0)));
  const std::string path = folder.file("mold.ofe");
  const std::string copy = folder.file("copy.ofe");
  if (!mold.write(path)) return state.SkipWithError("cannot write");
  compare(
      state, [&] { mold.write(path); }, [&] { copyFile(path, copy); });
}
BENCHMARK(writeEntries)->Arg(20)->Arg(55)->Iterations(1)->Unit(benchmark::kMillisecond);

void loadModel(benchmark::State& state) {
  const Folder folder;
  const SyntheticMold mold(static_cast<int>(state.range(0)));
  const std::string path = folder.file("mold.ofe");
  const std::string copy = folder.file("copy.ofe");
  if (!mold.write(path)) return state.SkipWithError("cannot write");
  compare(
      state,
      [&] {
        COFEData data;
        if (data.ReadDataBin(path.c_str(), nullptr, 0, false) != 1 || data.model().elemM.count() == 0)
          std::abort();
      },
      [&] { copyFile(path, copy); });
}
BENCHMARK(loadModel)->Arg(20)->Arg(55)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
