// Loading and screening a folder of seismograms, compared with reading the same files with read(2),
// and the group functions on many headers.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <malloc.h>
#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <random>
#include <string>
#include <vector>

#include "krosac/collections/SeismogramArray.h"
#include "krosac/collections/SeismogramGroups.h"

namespace {

namespace fs = std::filesystem;
using krosac::make;
using krosac::Ref;
using krosac::SacObject;
using Traces = std::vector<Ref<SacObject>>;

constexpr int kFiles = 5000;
constexpr std::int32_t kSamples = 10000;

// A folder with a number of files of noise, made on first use and removed at the end.
class SampleFolder {
 public:
  static const std::string& path() {
    static const SampleFolder folder;
    return folder.path_;
  }
  static std::string name(int i) { return std::to_string(100000 + i) + ".sac"; }

 private:
  SampleFolder()
      : path_(fs::temp_directory_path() / ("krosac-bench-" + std::to_string(::getpid()))) {
    fs::create_directory(path_);
    const auto s = make<SacObject>();
    s->initWithCapacity(kSamples);
    s->setReferenceTimeWithNSDate({0.0});
    s->setComponentName("BHZ");
    std::minstd_rand noise;
    std::generate_n(s->GetSacSeis(), kSamples, [&] { return static_cast<float>(noise()); });
    for (int i = 0; i < kFiles; ++i) {
      s->setEventLocationLat_Lon_Depth(0.0f, 0.0f, 10.0f);
      s->setStationLocationLat_Lon_Elevation(10.0f, 0.015f * static_cast<float>(i), 0.0f);
      // Saving would also flush to disk.
      std::FILE* file = std::fopen((path_ + "/" + name(i)).c_str(), "wb");
      std::fwrite(s->myData()->bytes(), 1, s->myData()->length(), file);
      std::fclose(file);
    }
  }
  ~SampleFolder() { fs::remove_all(path_); }

  std::string path_;
};

// Reads each file into memory of its own and keeps it, as the seismograms are kept.
void BM_ReadFolder(benchmark::State& state) {
  const std::string& folder = SampleFolder::path();
  for (auto _ : state) {
    std::vector<std::unique_ptr<char, decltype(&std::free)>> kept;
    for (int i = 0; i < kFiles; ++i) {
      const int file = ::open((folder + "/" + SampleFolder::name(i)).c_str(), O_RDONLY);
      const auto size = static_cast<std::size_t>(::lseek(file, 0, SEEK_END));
      kept.emplace_back(static_cast<char*>(std::malloc(size)), &std::free);
      if (::pread(file, kept.back().get(), size, 0) != static_cast<ssize_t>(size))
        state.SkipWithError("not read");
      ::close(file);
    }
    benchmark::DoNotOptimize(kept.data());
  }
}

// Returns the number of bytes that malloc has allocated.
double bytesInUse() {
  const struct mallinfo2 info = ::mallinfo2();
  return static_cast<double>(info.uordblks + info.hblkhd);
}

void BM_LoadFolder(benchmark::State& state) {
  const std::vector<std::string> channels = {"BHZ", "BHN"};
  const std::string folder = SampleFolder::path();
  std::size_t accepted = 0;
  double extra = 0.0;
  for (auto _ : state) {
    const double before = bytesInUse();
    const auto array = make<krosac::SeismogramArray>();
    array->init();
    array->setGCarcScreen(true);
    array->setMaxGCarc(90.0f);
    array->setChannelScreen(true);
    array->setChannelsPointer(&channels);
    array->loadSeismogramsFromPath(folder);
    accepted = array->theSeismograms().size();
    extra = (bytesInUse() - before) / static_cast<double>(accepted) - 632.0 - 4.0 * kSamples;
  }
  state.counters["accepted"] = static_cast<double>(accepted);
  state.counters["extraBytesPerTrace"] = extra;
}

Traces headers(std::int64_t count) {
  std::mt19937 random(1);
  Traces list;
  for (std::int64_t i = 0; i < count; ++i) {
    list.push_back(make<SacObject>());
    list.back()->initWithCapacity(0);
    list.back()->setReferenceTimeWithNSDate({static_cast<double>(random() % 86400)});
    list.back()->setBeginTime(static_cast<float>(random() % 100000));
    list.back()->setEndTime(list.back()->b() + static_cast<float>(random() % 100));
    list.back()->setUserValueKey_Value(9, static_cast<float>(random() % 8) - 1.0f);
  }
  return list;
}

template <int (*kOperation)(Traces&)>
void BM_Group(benchmark::State& state) {
  std::size_t left = 0;
  for (auto _ : state) {
    state.PauseTiming();
    Traces list = headers(state.range(0));
    Traces work = list;
    state.ResumeTiming();
    kOperation(work);
    state.PauseTiming();
    left = work.size();
    list.clear();
    work.clear();
    state.ResumeTiming();
  }
  state.counters["left"] = static_cast<double>(left);
}

BENCHMARK(BM_ReadFolder)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_LoadFolder)->Unit(benchmark::kMillisecond)->UseRealTime();
BENCHMARK(BM_Group<krosac::saRemoveOverlaps>)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Group<krosac::saMergeSacSeisInArray>)
    ->Arg(10000)
    ->Arg(100000)
    ->Unit(benchmark::kMillisecond);

}  // namespace
