// Saving a seismogram atomically beside write(2), fsync and rename of the same bytes. Waiting for
// the disk counts, so the time is that of the clock.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <unistd.h>

#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "krosac/krosac.h"

namespace {

std::string newPath(const char* kind) {
  return std::filesystem::temp_directory_path() /
         ("krosac-bench-" + std::to_string(::getpid()) + kind);
}

void save(benchmark::State& state) {
  const std::string path = newPath("-save");
  auto s = krosac::make<krosac::SacObject>();
  s->initWithCapacity(static_cast<std::int32_t>(state.range(0)));
  s->setReferenceTimeWithNSDate({0.0});
  s->setPath(path);
  for (std::int32_t i = 0; i < s->npts(); ++i) s->GetSacSeis()[i] = static_cast<float>(i);
  for (auto _ : state) s->save();
  if (std::filesystem::file_size(path) != 632 + 4 * static_cast<std::size_t>(state.range(0)))
    state.SkipWithError("not saved");
  std::filesystem::remove(path);
}

void writeSyncRename(benchmark::State& state) {
  const std::string path = newPath("-write"), temporary = path + ".new";
  const std::vector<char> bytes(632 + 4 * static_cast<std::size_t>(state.range(0)));
  for (auto _ : state) {
    const int file = ::open(temporary.c_str(), O_WRONLY | O_CREAT | O_EXCL, 0666);
    for (std::size_t done = 0; done < bytes.size();) {
      const ssize_t n = ::write(file, bytes.data() + done, bytes.size() - done);
      if (n <= 0) return state.SkipWithError("not written");
      done += static_cast<std::size_t>(n);
    }
    ::fsync(file);
    ::close(file);
    std::rename(temporary.c_str(), path.c_str());
  }
  std::filesystem::remove(path);
}

BENCHMARK(save)->Arg(100000)->Arg(10000000)->UseRealTime();
BENCHMARK(writeSyncRename)->Arg(100000)->Arg(10000000)->UseRealTime();

}  // namespace
