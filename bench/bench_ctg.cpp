// The CTG export: matching faces against a bare matcher and a hash map, numbers as text against the standard
// library, the file against `cp` of it. ORVMESH_BENCH_MOLD names an OFE file to
// take in the place of the synthetic mold.
#include <cstdio>
#include <random>

#include "bare_matchers.h"
#include "base/text_number.h"
#include "files.h"
#include "peer.h"
#include "platform/cofedata.h"
#include "synthetic_mold.h"
#include "transfer/ctg/ctg_writer.h"

namespace {

using namespace orvmesh;
using namespace orvmesh::bench;

// The mold elements of the mold, which must be tetrahedra.
class Mold {
 public:
  explicit Mold(int cells) {
    const char* const given = std::getenv("ORVMESH_BENCH_MOLD");
    const std::string path = given != nullptr ? given : folder_.file("mold.ofe");
    if (given == nullptr && !SyntheticMold(cells).write(path)) std::abort();
    if (data_.ReadDataBin(path.c_str(), nullptr, 0, false) != 1 || elements().nodesPerElement != 4)
      std::abort();
  }
  const MeshModel& model() const { return data_.model(); }
  const ElementTable& elements() const { return model().elemM; }
  std::int32_t nodeCount() const { return model().nodes.count(); }

 private:
  Folder folder_;
  COFEData data_;
};

void checkFaces(const ElementTable& elements, std::int32_t faces, const std::vector<std::uint32_t>& partner) {
  std::size_t halves = 0;
  for (const std::uint32_t p : partner) halves += p == kNoPartner ? 2 : 1;
  if (halves != 2 * static_cast<std::size_t>(faces) || partner.size() != elements.connectivity.size())
    std::abort();
}

void matchFaces(benchmark::State& state) {
  const Mold mold(static_cast<int>(state.range(0)));
  std::int32_t faces = 0;
  std::vector<std::uint32_t> partner;
  compare(
      state, [&] { faces = transfer::matchElementFaces(mold.elements(), mold.nodeCount()).faceCount; },
      [&] {
        partner = bareBuckets(mold.elements().connectivity, static_cast<std::size_t>(mold.nodeCount()));
      });
  checkFaces(mold.elements(), faces, partner);
}
BENCHMARK(matchFaces)->Arg(55)->Arg(94)->Iterations(1)->Unit(benchmark::kMillisecond);

void hashFaces(benchmark::State& state) {
  const Mold mold(static_cast<int>(state.range(0)));
  const auto nodes = static_cast<std::size_t>(mold.nodeCount());
  std::size_t sizes = 0;
  compare(
      state, [&] { sizes += hashedFaces(mold.elements().connectivity).size(); },
      [&] { sizes += bareBuckets(mold.elements().connectivity, nodes).size(); });
  benchmark::DoNotOptimize(sizes);
}
BENCHMARK(hashFaces)->Arg(55)->Iterations(1)->Unit(benchmark::kMillisecond);

void writeFile(benchmark::State& state) {
  const Mold mold(static_cast<int>(state.range(0)));
  const Folder folder;
  transfer::CtgMesh mesh{mold.model(),
                         transfer::numberExportedNodes(mold.elements(), mold.nodeCount()),
                         transfer::findBoundaryNodes(mold.model().surfaces, mold.nodeCount()),
                         {},
                         {}};
  mesh.faces = transfer::matchElementFaces(mold.elements(), mold.nodeCount());
  mesh.boundaryFaces = transfer::findBoundaryFaces(mold.elements(), mesh.faces, mesh.boundaryNodes.type);
  const std::string path = folder.file("mold.ctg");
  if (!transfer::writeCtg(mesh, path).empty()) return state.SkipWithError("cannot write");
  compare(
      state, [&] { transfer::writeCtg(mesh, path); }, [&] { copyFile(path, folder.file("copy.ctg")); });
}
BENCHMARK(writeFile)->Arg(55)->Iterations(1)->Unit(benchmark::kMillisecond);

// Formats all values into one buffer; MB/s beside the ratio to the peer that does the same.
template <class Value, class Format, class Peer>
void formatValues(benchmark::State& state, const std::vector<Value>& values, Format format, Peer peer) {
  std::vector<char> text(values.size() * kNumberRoom);
  const auto all = [&](auto one) {
    char* at = text.data();
    for (const Value value : values) {
      at = one(at, value);
      *at++ = ' ';
    }
    return at - text.data();
  };
  std::ptrdiff_t bytes = 0;
  compare(
      state, [&] { bytes = all(format); }, [&] { benchmark::DoNotOptimize(all(peer)); });
  double fastest = 1e9;
  for (int i = 0; i < 5; ++i) fastest = std::min(fastest, cpuOf([&] { bytes = all(format); }));
  state.counters["MB/s"] = 1e-6 * static_cast<double>(bytes) / fastest;
}

void formatIntegers(benchmark::State& state) {
  std::mt19937 random(1);
  std::vector<std::int32_t> values(2000000);
  for (auto& value : values) value = static_cast<std::int32_t>(random() % 10000000);
  formatValues(
      state, values, [](char* at, std::int32_t v) { return writeInt(at, v); },
      [](char* at, std::int32_t v) { return at + std::snprintf(at, kNumberRoom, "%d", v); });
}
BENCHMARK(formatIntegers)->Iterations(1)->Unit(benchmark::kMillisecond);

void formatDoubles(benchmark::State& state) {
  std::mt19937 random(1);
  std::vector<double> values(2000000);
  for (auto& value : values) value = static_cast<float>(random()) / 1e7F - 200.0F;
  formatValues(
      state, values, [](char* at, double v) { return writeDefault(at, v); },
      [](char* at, double v) {
        return std::to_chars(at, at + kNumberRoom, v, std::chars_format::general, 6).ptr;
      });
}
BENCHMARK(formatDoubles)->Iterations(1)->Unit(benchmark::kMillisecond);

}  // namespace
