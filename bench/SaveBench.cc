// Saving a seismogram atomically, timed alternately with write(2), fsync and rename of as many
// bytes. Waiting for the disk counts, so wall-clock time is measured. It varies by several times
// from one measurement to the next; only the median of many is stable.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "Pairs.h"
#include "krosac/krosac.h"

namespace {

using krosac::bench::Work;

// A path for each kind, removed at the end.
class Target {
 public:
  explicit Target(const char* kind)
      : path(std::filesystem::temp_directory_path() /
             ("krosac-bench-" + std::to_string(::getpid()) + kind)) {}
  ~Target() { std::filesystem::remove(path); }

  const std::string path;
};

class Save : public Work {
 public:
  explicit Save(std::int64_t samples) {
    s_->initWithCapacity(static_cast<std::int32_t>(samples));
    s_->setReferenceTimeWithNSDate({0.0});
    s_->setPath(target_.path);
    for (std::int32_t i = 0; i < s_->npts(); ++i) s_->GetSacSeis()[i] = static_cast<float>(i);
  }
  void run() override { good = s_->save() && good; }

  bool good = true;

 private:
  Target target_{"-save"};
  krosac::Ref<krosac::SacObject> s_ = krosac::make<krosac::SacObject>();
};

class WriteSyncRename : public Work {
 public:
  explicit WriteSyncRename(std::int64_t samples)
      : bytes_(632 + 4 * static_cast<std::size_t>(samples)) {}
  void run() override {
    const int file = ::open(temporary_.path.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    for (std::size_t done = 0; good && done < bytes_.size();) {
      const ssize_t n = ::write(file, bytes_.data() + done, bytes_.size() - done);
      good = n > 0;
      done += static_cast<std::size_t>(n);
    }
    good = ::fsync(file) == 0 && good;
    ::close(file);
    good = std::rename(temporary_.path.c_str(), target_.path.c_str()) == 0 && good;
  }

  bool good = true;

 private:
  Target target_{"-write"}, temporary_{"-new"};
  std::vector<char> bytes_;
};

void save(benchmark::State& state) {
  Save ours(state.range(0));
  WriteSyncRename peer(state.range(0));
  krosac::bench::timeByTurns(state, CLOCK_MONOTONIC, ours, peer);
  if (!ours.good || !peer.good) state.SkipWithError("not saved");
}

// Reports the median of three medians.
BENCHMARK(save)->Arg(100000)->Iterations(201)->Repetitions(3)->UseManualTime();
BENCHMARK(save)->Arg(10000000)->Iterations(15)->Repetitions(3)->UseManualTime();

}  // namespace
