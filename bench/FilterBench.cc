// The spectral operations on a trace of 2^16 samples, beside one forward and one inverse transform
// of the 2^17 values that it is padded to. Each run begins with a copy of the same samples, which
// is timed with all.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <span>
#include <vector>

#include "krosac/dsp/Fft.h"
#include "krosac/seismogram/SacObject.h"

namespace {

using krosac::SacObject;

constexpr std::size_t kSamples = 1 << 16;
constexpr float kDelta = 0.05f;

const std::vector<float>& noise() {
  static const std::vector<float> samples = [] {
    std::mt19937 random(1);
    std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
    std::vector<float> x(kSamples);
    for (float& value : x) value = uniform(random);
    return x;
  }();
  return samples;
}

krosac::Ref<SacObject> noiseTrace() {
  auto s = krosac::make<SacObject>();
  s->initWithCapacity(static_cast<std::int32_t>(kSamples));
  s->setDelta(kDelta);
  std::ranges::copy(noise(), s->GetSacSeis());
  return s;
}

void bothTransforms(benchmark::State& state) {
  std::vector<float> data(2 * kSamples);
  for (auto _ : state) {
    std::ranges::copy(noise(), data.begin());
    std::fill(data.begin() + kSamples, data.end(), 0.0f);
    krosac::realft(data.data() - 1, data.size(), 1);
    krosac::realft(data.data() - 1, data.size(), -1);
    benchmark::DoNotOptimize(data.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(bothTransforms)->Unit(benchmark::kMillisecond);

using Operation = void (*)(SacObject& s, SacObject& other);

void onATrace(benchmark::State& state, Operation operation) {
  const auto s = noiseTrace(), other = noiseTrace();
  std::ranges::reverse(std::span(other->GetSacSeis(), kSamples));
  for (auto _ : state) {
    std::ranges::copy(noise(), s->GetSacSeis());
    operation(*s, *other);
    benchmark::ClobberMemory();
  }
}

const struct {
  const char* name;
  Operation operation;
} kOperations[] = {
    {"RGaussianFilter", [](SacObject& s, SacObject&) { s.RGaussianFilter(5); }},
    {"RGaussianFilterSwap", [](SacObject& s, SacObject&) { s.RGaussianFilterSwapOld_New(5, 10); }},
    {"SGaussianFilter", [](SacObject& s, SacObject&) { s.SGaussianFilter_Alpha(1, 0.5f); }},
    {"CosineTaperFilter",
     [](SacObject& s, SacObject&) { s.CosineTaperFilter(0.01f, 0.02f, 4, 8); }},
    {"TstarFilter", [](SacObject& s, SacObject&) { s.TstarFilter(0.1f); }},
    {"Envelope", [](SacObject& s, SacObject&) { s.Envelope(); }},
    {"InstantaneousPeriod", [](SacObject& s, SacObject&) { s.InstantaneousPeriod(); }},
    {"NoiseFilter", [](SacObject& s, SacObject&) { s.NoiseFilterStartingAtTime(300); }},
    {"spectrum", [](SacObject& s, SacObject&) { benchmark::DoNotOptimize(s.spectrum()); }},
    {"WaterLevelDecon",
     [](SacObject& s, SacObject& w) { s.WaterLevelDeconWith_wlevel_tshift(w, 0.01f, 5); }},
    {"WaterLevelDeconGaussian",
     [](SacObject& s, SacObject& w) {
       s.WaterLevelDeconWith_wlevel_tshift_gwidth(w, 0.01f, 5, 2.5f);
     }},
    {"correlateWith", [](SacObject& s, SacObject& w) { s.correlateWith(w); }},
    {"GetOptimalShift",
     [](SacObject& s, SacObject& w) { benchmark::DoNotOptimize(s.GetOptimalShift(w)); }},
    {"ConvolveInstrument", [](SacObject& s, SacObject&) { s.ConvolveInstrument(1); }},
};

const bool kRegistered = [] {
  for (const auto& [name, operation] : kOperations)
    benchmark::RegisterBenchmark(name, onATrace, operation)->Unit(benchmark::kMillisecond);
  return true;
}();

}  // namespace
