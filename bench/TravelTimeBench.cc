// Reading the travel-time tables, compared with strtof over the same bytes, and looking up times.
#include <benchmark/benchmark.h>

#include <cstdlib>
#include <random>
#include <string>
#include <vector>

#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/Resources.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "krosac/traveltimes/JBTables.h"
#include "krosac/traveltimes/TTTableObject.h"
#include "krosac/traveltimes/TTTables.h"

namespace krosac {
namespace {

const std::vector<std::string> kPhases{"p",     "s",   "pcp", "scs",   "pcs",   "scp",   "pp",
                                       "ss",    "sp",  "ps",  "sksac", "sksdf", "pkpab", "pkpdf",
                                       "pkikp", "lpp", "lss", "lps",   "lsp"};

std::string contents(const std::string& name) {
  const auto path = pathForResource(name, "txt");
  const auto bytes = path ? ByteBuffer::fromFile(*path) : nullptr;
  return bytes ? std::string(reinterpret_cast<const char*>(bytes->bytes()), bytes->length()) : "";
}

std::size_t strtofOver(const std::string& text, std::vector<float>& numbers) {
  std::size_t count = 0;
  char* end = nullptr;
  for (const char* at = text.c_str();; at = end) {
    const float number = std::strtof(at, &end);
    if (end == at) return count;
    numbers[count++] = number;
  }
}

void TTTableObjectInit(benchmark::State& state) {
  for (auto _ : state) {
    const auto tables = make<TTTableObject>();
    benchmark::DoNotOptimize(tables->init());
  }
}
BENCHMARK(TTTableObjectInit)->Unit(benchmark::kMicrosecond);

// Opens and reads the files, then runs strtof over their bytes.
void TTTableFilesByStrtof(benchmark::State& state) {
  std::vector<float> numbers(360 * 19);
  for (auto _ : state) {
    for (const std::string& phase : kPhases) {
      benchmark::DoNotOptimize(strtofOver(contents("iasp91_" + phase), numbers));
    }
  }
}
BENCHMARK(TTTableFilesByStrtof)->Unit(benchmark::kMicrosecond);

// Runs strtof alone, over bytes in memory.
void TTTableBytesByStrtof(benchmark::State& state) {
  std::vector<float> numbers(360 * 19);
  std::vector<std::string> texts;
  for (const std::string& phase : kPhases) texts.push_back(contents("iasp91_" + phase));
  for (auto _ : state) {
    for (const std::string& text : texts) benchmark::DoNotOptimize(strtofOver(text, numbers));
  }
}
BENCHMARK(TTTableBytesByStrtof)->Unit(benchmark::kMicrosecond);

void ReadJBTablesOnce(benchmark::State& state) {
  std::vector<float> p(118 * 14), s(120 * 14);
  for (auto _ : state) {
    ReadJBTables(p.data(), s.data());
    benchmark::DoNotOptimize(p.data());
  }
}
BENCHMARK(ReadJBTablesOnce)->Unit(benchmark::kMicrosecond);

struct Point {
  float gcarc, depth;
};

std::vector<Point> randomPoints() {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> gcarc(0, 95), depth(0, 700);
  std::vector<Point> points(4096);
  for (Point& point : points) point = {gcarc(random), depth(random)};
  return points;
}

void GetTTPhase(benchmark::State& state, const std::string& phase) {
  const auto points = randomPoints();
  const auto tables = make<TTTableObject>();
  tables->init();
  std::size_t i = 0;
  for (auto _ : state) {
    const auto& [gcarc, depth] = points[i++ % points.size()];
    benchmark::DoNotOptimize(tables->GetTTPhase_GCARC_Depth(phase, gcarc, depth));
  }
  state.SetItemsProcessed(state.iterations());
}
BENCHMARK_CAPTURE(GetTTPhase, P, std::string("P"));
BENCHMARK_CAPTURE(GetTTPhase, lsp, std::string("lsp"));

template <typename LookUp>
void lookUpAtPoints(benchmark::State& state, LookUp lookUp) {
  const auto points = randomPoints();
  std::size_t i = 0;
  for (auto _ : state) {
    const auto& [gcarc, depth] = points[i++ % points.size()];
    lookUp(gcarc, depth);
  }
  state.SetItemsProcessed(state.iterations());
}

void GetJBTimesOnce(benchmark::State& state) {
  const auto tables = make<JBTableObject>();
  tables->init();
  lookUpAtPoints(state, [&](float gcarc, float depth) {
    float times[4];
    GetJBTimes(tables->tp(), tables->ts(), times, times + 1, times + 2, times + 3, gcarc, depth);
    benchmark::DoNotOptimize(times);
  });
}
BENCHMARK(GetJBTimesOnce);

// The tables are loaded, and the phase is not searched by its name.
void GetTTTimeSlownessOnce(benchmark::State& state) {
  const auto tables = make<TTTableObject>();
  tables->init();
  lookUpAtPoints(state, [&](float gcarc, float depth) {
    float time, slowness;
    GetTTTimeSlowness("p", tables->tp(), tables->np(), &time, &slowness, gcarc, depth);
    benchmark::DoNotOptimize(time);
    benchmark::DoNotOptimize(slowness);
  });
}
BENCHMARK(GetTTTimeSlownessOnce);

}  // namespace
}  // namespace krosac
