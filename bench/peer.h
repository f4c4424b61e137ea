#pragma once

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>

namespace orvmesh::bench {

// Of this process and of the commands that it has run.
inline double cpuSeconds() {
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  double sum = 0;
  for (const auto who : {RUSAGE_SELF, RUSAGE_CHILDREN}) {
    rusage usage{};
    ::getrusage(who, &usage);
    sum += seconds(usage.ru_utime) + seconds(usage.ru_stime);
  }
  return sum;
}

template <class Work>
double cpuOf(Work work) {
  const double start = cpuSeconds();
  work();
  return cpuSeconds() - start;
}

// Runs job and peer in turn and reports the median of job / peer, never seconds: these machines are shared.
// The first rounds do not count: on a virtual machine memory that the host has not given out yet costs
// several times as much as other memory.
template <class Job, class Peer>
void compare(benchmark::State& state, Job job, Peer peer) {
  constexpr std::size_t kUncounted = 5;
  std::array<double, 5> jobs{};
  std::array<double, 5> peers{};
  for (auto _ : state) {
    for (std::size_t i = 0; i < kUncounted + jobs.size(); ++i) {
      const std::size_t place = i < kUncounted ? 0 : i - kUncounted;
      jobs[place] = cpuOf(job);
      peers[place] = cpuOf(peer);
    }
  }
  std::sort(jobs.begin(), jobs.end());
  std::sort(peers.begin(), peers.end());
  state.counters["ratio"] = jobs[2] / std::max(peers[2], 1e-6);
}

}  // namespace orvmesh::bench
