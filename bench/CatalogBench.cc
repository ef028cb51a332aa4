// Catalogue lines parsed per second, compared with a plain sscanf loop over the same columns, and
// the archive of an earthquake with 100 000 phases at 100 stations.
#include <benchmark/benchmark.h>

#include <cstdio>
#include <random>
#include <string>
#include <vector>

#include "krosac/catalog/kroHypocenter.h"

namespace {

using krosac::kroHypocenter;
using krosac::kroSeismicPhase;
using krosac::Ref;

constexpr std::size_t kLines = 10000;
constexpr std::size_t kPhases = 100000;
constexpr std::size_t kStations = 100;

std::vector<std::string> lines(const char* format, int fields) {
  std::mt19937 random(20110311);
  std::vector<std::string> all(kLines);
  for (auto& line : all) {
    int n[8];
    for (int i = 0; i < 8; ++i) n[i] = i < fields ? static_cast<int>(random() % 60) : 0;
    char text[128];
    std::snprintf(text, sizeof text, format, n[0], n[1], n[2], n[3], n[4], n[5], n[6], n[7]);
    line = text;
  }
  return all;
}

const std::vector<std::string>& primaryLines() {
  static const auto all =
      lines("P MA%02d iPc     00%02d%02d.20  -0.4* 1%02d.62 2%02d.1 0.8  %02d.%02d 5.8X", 6);
  return all;
}

const std::vector<std::string>& hypocenterLines() {
  static const auto all =
      lines("HY200401%02d 04%02d%02d.75 %02d.520S 1%02d.800W 1%02d.0G 0.91%02d 118", 7);
  return all;
}

void BM_PrimaryPhases(benchmark::State& state) {
  auto phase = krosac::make<kroSeismicPhase>();
  phase->init();
  phase->setDateYr_Month_Date(2004, 1, 1);
  for (auto _ : state) {
    for (const auto& line : primaryLines()) phase->parseEDRPrimaryPhase(line);
    benchmark::DoNotOptimize(phase->epochArrivalTime());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLines));
}

// Reads the columns only: no date, no epoch time, no decoded phase code.
void BM_PrimaryPhasesBySscanf(benchmark::State& state) {
  char station[6], phase[9];
  int hr, min;
  float seconds, residual, gcarc, azimuth, period, amplitude, mb;
  for (auto _ : state) {
    for (const auto& text : primaryLines()) {
      const char* line = text.c_str() - 1;
      std::sscanf(line + 3, "%5s", station);
      std::sscanf(line + 8, "%8s", phase);
      std::sscanf(line + 16, "%2d", &hr);
      std::sscanf(line + 18, "%2d", &min);
      std::sscanf(line + 20, "%5f", &seconds);
      std::sscanf(line + 26, "%5f", &residual);
      std::sscanf(line + 33, "%6f", &gcarc);
      std::sscanf(line + 40, "%5f", &azimuth);
      std::sscanf(line + 45, "%4f", &period);
      std::sscanf(line + 49, "%7f", &amplitude);
      std::sscanf(line + 57, "%3f", &mb);
      benchmark::ClobberMemory();
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLines));
}

void BM_Hypocenters(benchmark::State& state) {
  auto event = krosac::make<kroHypocenter>();
  event->init();
  for (auto _ : state) {
    for (const auto& line : hypocenterLines()) event->parseEDRHypocenter(line);
    benchmark::DoNotOptimize(event->epochOTime());
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLines));
}

// Reads the columns only: no date, no epoch time, no region, no name.
void BM_HypocentersBySscanf(benchmark::State& state) {
  int yr, month, date, hr, min, stations, region;
  float seconds, latitude, longitude, depth, stdev;
  for (auto _ : state) {
    for (const auto& text : hypocenterLines()) {
      const char* line = text.c_str() - 1;
      std::sscanf(line + 3, "%4d", &yr);
      std::sscanf(line + 7, "%2d", &month);
      std::sscanf(line + 9, "%2d", &date);
      std::sscanf(line + 12, "%2d", &hr);
      std::sscanf(line + 14, "%2d", &min);
      std::sscanf(line + 16, "%5f", &seconds);
      std::sscanf(line + 22, "%6f", &latitude);
      std::sscanf(line + 30, "%7f", &longitude);
      std::sscanf(line + 39, "%5f", &depth);
      std::sscanf(line + 45, "%4f", &stdev);
      std::sscanf(line + 49, "%3d", &stations);
      std::sscanf(line + 53, "%3d", &region);
      benchmark::ClobberMemory();
    }
  }
  state.SetItemsProcessed(state.iterations() * static_cast<std::int64_t>(kLines));
}

const Ref<kroHypocenter>& largeEvent() {
  static const Ref<kroHypocenter> event = [] {
    std::vector<Ref<krosac::kroSeismicStation>> stations(kStations);
    for (std::size_t i = 0; i < kStations; ++i) {
      stations[i] = krosac::make<krosac::kroSeismicStation>();
      stations[i]->init();
      stations[i]->setStationCode("ST" + std::to_string(i));
    }
    auto made = krosac::make<kroHypocenter>();
    made->init();
    made->parseEDRHypocenter(hypocenterLines()[0]);
    for (std::size_t i = 0; i < kPhases; ++i) {
      auto phase = krosac::make<kroSeismicPhase>();
      phase->init();
      phase->setDateYr_Month_Date(2004, 1, 1);
      phase->parseEDRPrimaryPhase(primaryLines()[i % kLines]);
      phase->setStation(stations[i % kStations]);
      made->addPhase(phase);
    }
    return made;
  }();
  return event;
}

void BM_Archive(benchmark::State& state) {
  std::size_t size = 0;
  for (auto _ : state) size = krosac::archive(*largeEvent())->length();
  state.counters["bytes"] = static_cast<double>(size);
}

void BM_Unarchive(benchmark::State& state) {
  const auto bytes = krosac::archive(*largeEvent());
  for (auto _ : state) {
    const auto event = krosac::unarchive<kroHypocenter>(*bytes);
    if (!event || event->phases().size() != kPhases) state.SkipWithError("not restored");
  }
}

BENCHMARK(BM_PrimaryPhases);
BENCHMARK(BM_PrimaryPhasesBySscanf);
BENCHMARK(BM_Hypocenters);
BENCHMARK(BM_HypocentersBySscanf);
BENCHMARK(BM_Archive)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Unarchive)->Unit(benchmark::kMillisecond);

}  // namespace
