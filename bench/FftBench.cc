// The forward transform of real samples in place, beside FFTW where it is found. Both are given the
// same fresh samples before each run, and that copy is timed with both.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "krosac/dsp/Fft.h"

#ifdef KROSAC_HAVE_FFTW
#include <fftw3.h>
#endif

namespace {

std::vector<float> noise(std::size_t n) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  std::vector<float> x(n);
  for (float& value : x) value = uniform(random);
  return x;
}

void realftForward(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::vector<float> samples = noise(n);
  std::vector<float> data(n);
  for (auto _ : state) {
    std::copy(samples.begin(), samples.end(), data.begin());
    krosac::realft(data.data() - 1, n, 1);
    benchmark::DoNotOptimize(data.data());
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(realftForward)->RangeMultiplier(4)->Range(1 << 8, 1 << 20);

#ifdef KROSAC_HAVE_FFTW
void fftwForward(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  const std::vector<float> samples = noise(n);
  float* data = fftwf_alloc_real(n + 2);
  const fftwf_plan plan = fftwf_plan_dft_r2c_1d(
      static_cast<int>(n), data, reinterpret_cast<fftwf_complex*>(data), FFTW_ESTIMATE);
  for (auto _ : state) {
    std::copy(samples.begin(), samples.end(), data);
    fftwf_execute(plan);
    benchmark::DoNotOptimize(data);
    benchmark::ClobberMemory();
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
  fftwf_destroy_plan(plan);
  fftwf_free(data);
}
BENCHMARK(fftwForward)->RangeMultiplier(4)->Range(1 << 8, 1 << 20);
#endif

}  // namespace

BENCHMARK_MAIN();
