#include "import/element_repair.h"

#include <algorithm>
#include <cmath>

#include "base/failure.h"
#include "import/element_quality.h"

namespace orvmesh::importing {
namespace {

// Corner positions of the mirrored element.
template <int Corners>
constexpr std::array<int, Corners> mirrored() {
  if constexpr (Corners == 4) return {0, 2, 1, 3};
  if constexpr (Corners == 5) return {0, 3, 2, 1, 4};
  if constexpr (Corners == 6) return {3, 4, 5, 0, 1, 2};
  if constexpr (Corners == 8) return {4, 5, 6, 7, 0, 1, 2, 3};
}

template <int Corners>
void mirror(std::int32_t* nodes) {
  std::array<std::int32_t, Corners> old;
  std::copy_n(nodes, Corners, old.begin());
  for (std::size_t k = 0; k < Corners; ++k) nodes[k] = old[static_cast<std::size_t>(mirrored<Corners>()[k])];
}

template <int Corners>
bool namesANodeTwice(const std::int32_t* nodes) {
  bool twice = false;
  for (int a = 1; a < Corners; ++a)
    for (int b = 0; b < a; ++b) twice |= nodes[a] == nodes[b];
  return twice;
}

[[noreturn]] void failRepeated(const VolumeMesh& volumes, const VolumeRun& run, std::size_t k) {
  throw Failure(volumes.mesh().path,
                volumes.label(run.firstElement + static_cast<std::int32_t>(k)) + ", a " + nameOf(run.shape) +
                    ", names a node twice (a smaller --merge tolerance may keep its nodes apart)");
}

template <int Corners>
double measureRun(const VolumeMesh& volumes, const VolumeRun& run) {
  const auto corners = volumes.corners(run);
  const float* xyz = volumes.mesh().xyz.data();
  double sum = 0;
  for (std::size_t k = 0; k < run.count; ++k)
    sum += std::fabs(signedVolume<Corners>(xyz, &corners[k * Corners]));
  return sum;
}

// Elements to look ahead.
constexpr std::size_t kAhead = 12;

template <int Corners>
double turnRun(VolumeMesh& volumes, const VolumeRun& run, double badQuality, Repairs& repairs) {
  const auto bit = bitOf(blockOf(volumes.components[run.component].role.kind));
  auto* blocks = volumes.blocksOfNode.data();
  const float* xyz = volumes.mesh().xyz.data();
  std::int32_t* nodes = volumes.corners(run).data();
  double sum = 0;
  for (std::size_t k = 0; k < run.count; ++k, nodes += Corners) {
    // Coordinates are fetched from memory while others are worked on; worth a tenth of the time.
    if (k + kAhead < run.count)
      for (std::size_t c = 0; c < Corners; ++c)
        __builtin_prefetch(xyz + 3 * std::size_t(nodes[kAhead * Corners + c] - 1));
    if (namesANodeTwice<Corners>(nodes)) [[unlikely]]
      failRepeated(volumes, run, k);
    for (int c = 0; c < Corners; ++c) blocks[nodes[c]] |= bit;
    const double volume = signedVolume<Corners>(xyz, nodes);
    sum += std::fabs(volume);
    if (volume == 0 || isPoor<Corners>(xyz, nodes, volume, badQuality)) [[unlikely]]
      repairs.bad.push_back(
          {run.firstElement + static_cast<std::int32_t>(k), volume == 0 ? kNoVolume : kPoorQuality});
    if (volume < 0) [[unlikely]] {
      mirror<Corners>(nodes);
      ++repairs.turned;
    }
  }
  return sum;
}

// Calls the template with the corner count of the shape as its argument.
template <class Call>
double byCorners(Shape shape, Call call) {
  switch (shape) {
    case Shape::pyramid:
      return call.template operator()<5>();
    case Shape::wedge:
      return call.template operator()<6>();
    case Shape::hexahedron:
      return call.template operator()<8>();
    default:
      return call.template operator()<4>();
  }
}

}  // namespace

void measureVolumes(VolumeMesh& volumes) {
  for (const auto& run : volumes.runs())
    volumes.components[run.component].volumeIn +=
        byCorners(run.shape, [&]<int Corners>() { return measureRun<Corners>(volumes, run); });
}

Repairs turnElements(VolumeMesh& volumes, double badQuality) {
  Repairs repairs;
  volumes.blocksOfNode.assign(static_cast<std::size_t>(volumes.mesh().nodeCount()) + 1, 0);
  for (const auto& run : volumes.runs())
    volumes.components[run.component].volumeOut += byCorners(
        run.shape, [&]<int Corners>() { return turnRun<Corners>(volumes, run, badQuality, repairs); });
  return repairs;
}

}  // namespace orvmesh::importing
