// Times two pieces of work alternately in one benchmark, so that a disturbance affects both.
#ifndef KROSAC_BENCH_PAIRS_H
#define KROSAC_BENCH_PAIRS_H

#include <benchmark/benchmark.h>
#include <time.h>

#include <algorithm>
#include <vector>

namespace krosac::bench {

// Work to be timed; only run() counts.
class Work {
 public:
  virtual ~Work() = default;
  virtual void prepare() {}
  virtual void run() = 0;
};

inline double secondsToRun(Work& work, clockid_t clock) {
  const auto now = [clock] {
    timespec time;
    ::clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
  };
  work.prepare();
  const double start = now();
  work.run();
  benchmark::ClobberMemory();
  return now() - start;
}

// Reports our time as the time of the benchmark, which needs UseManualTime, and in the counters the
// peer's median time in seconds and the median ratio of our time over the peer's.
inline void timeByTurns(benchmark::State& state, clockid_t clock, Work& ours, Work& peer) {
  std::vector<double> peers, ratios;
  for (auto _ : state) {
    const double own = secondsToRun(ours, clock);
    state.SetIterationTime(own);
    peers.push_back(secondsToRun(peer, clock));
    ratios.push_back(own / peers.back());
  }
  // Of an even number the lower middle value, so that one bad measurement of two does not count.
  const auto median = [](std::vector<double>& values) {
    const auto middle = values.begin() + (std::ssize(values) - 1) / 2;
    std::nth_element(values.begin(), middle, values.end());
    return values.empty() ? 0.0 : *middle;
  };
  state.counters["peer"] = median(peers);
  state.counters["ratio"] = median(ratios);
}

}  // namespace krosac::bench

#endif
