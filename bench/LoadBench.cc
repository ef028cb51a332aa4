// Loading a seismogram, compared with reading the same bytes with read(2) into new memory of the
// same size.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sys/mman.h>
#include <unistd.h>

#include <filesystem>
#include <string>

#include "krosac/krosac.h"

namespace {

// A file of noise with a number of samples, made on first use and removed at the end.
class SampleFile {
 public:
  explicit SampleFile(std::int32_t npts, bool swapped)
      : path_(std::filesystem::temp_directory_path() /
              ("krosac-bench-" + std::to_string(::getpid()) + "-" + std::to_string(npts) +
               (swapped ? "-s" : ""))) {
    auto s = krosac::make<krosac::SacObject>();
    s->initWithCapacity(npts);
    unsigned noise = 1;
    for (std::int32_t i = 0; i < npts; ++i) {
      noise = noise * 1664525u + 1013904223u;
      s->GetSacSeis()[i] = static_cast<float>(noise >> 8) - 8388608.0f;
    }
    s->setReferenceTimeWithNSDate({0.0});
    s->setSwappedBytes(swapped);
    s->setPath(path_);
    s->save();
  }
  ~SampleFile() { std::filesystem::remove(path_); }
  const std::string& path() const { return path_; }

  static const std::string& of(std::int64_t npts, bool swapped = false) {
    static const SampleFile small(100000, false), large(10000000, false),
        swappedSmall(100000, true), swappedLarge(10000000, true);
    if (swapped) return (npts == 100000 ? swappedSmall : swappedLarge).path();
    return (npts == 100000 ? small : large).path();
  }

 private:
  std::string path_;
};

void BM_Read(benchmark::State& state) {
  const std::string& path = SampleFile::of(state.range(0));
  const auto size = static_cast<std::size_t>(std::filesystem::file_size(path));
  for (auto _ : state) {
    const int file = ::open(path.c_str(), O_RDONLY);
    void* bytes = ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0);
    for (std::size_t done = 0; done < size;) {
      done += static_cast<std::size_t>(::read(file, static_cast<char*>(bytes) + done, size - done));
    }
    benchmark::DoNotOptimize(bytes);
    ::munmap(bytes, size);
    ::close(file);
  }
}

void BM_Load(benchmark::State& state) {
  const std::string& path = SampleFile::of(state.range(0), state.range(1) != 0);
  for (auto _ : state) {
    auto s = krosac::make<krosac::SacObject>();
    if (!s->initWithPath(path)) state.SkipWithError("not loaded");
  }
}

BENCHMARK(BM_Read)->Arg(100000)->Arg(10000000);
BENCHMARK(BM_Load)->ArgNames({"npts", "swapped"})->ArgsProduct({{100000, 10000000}, {0, 1}});

}  // namespace
