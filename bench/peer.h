#pragma once

#include <benchmark/benchmark.h>
#include <sys/resource.h>

#include <algorithm>
#include <array>

namespace orvmesh::bench {

inline double cpuSeconds() {
  rusage usage{};
  ::getrusage(RUSAGE_SELF, &usage);
  const auto seconds = [](const timeval& t) {
    return static_cast<double>(t.tv_sec) + 1e-6 * static_cast<double>(t.tv_usec);
  };
  return seconds(usage.ru_utime) + seconds(usage.ru_stime);
}

template <class Work>
double cpuOf(Work work) {
  const double start = cpuSeconds();
  work();
  return cpuSeconds() - start;
}

// Runs job and peer in turn and reports the median of job / peer, never seconds: these machines are shared.
template <class Job, class Peer>
void compare(benchmark::State& state, Job job, Peer peer) {
  std::array<double, 5> jobs{};
  std::array<double, 5> peers{};
  for (auto _ : state) {
    for (std::size_t i = 0; i < jobs.size(); ++i) {
      jobs[i] = cpuOf(job);
      peers[i] = cpuOf(peer);
    }
  }
  std::sort(jobs.begin(), jobs.end());
  std::sort(peers.begin(), peers.end());
  state.counters["ratio"] = jobs[2] / std::max(peers[2], 1e-6);
}

}  // namespace orvmesh::bench
