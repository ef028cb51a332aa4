// The forward transform of real samples in place: ours, ours without AVX2, the plain loop, and FFTW
// and KissFFT where they are found. All are given the same fresh samples before each run, and that
// copy is timed with all.
#include <benchmark/benchmark.h>

#include <algorithm>
#include <random>
#include <vector>

#include "dsp/PlainLoops.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/KernelsInternal.h"

#ifdef KROSAC_HAVE_FFTW
#include <fftw3.h>
#endif
#ifdef KROSAC_HAVE_KISSFFT
#include <kissfft/kiss_fftr.h>
#endif

namespace {

template <typename Transform>
void run(benchmark::State& state, float* data, Transform transform) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  std::vector<float> samples(static_cast<std::size_t>(state.range(0)));
  for (float& value : samples) value = uniform(random);
  for (auto _ : state) {
    std::copy(samples.begin(), samples.end(), data);
    transform();
    benchmark::DoNotOptimize(data);
    benchmark::ClobberMemory();
  }
}

template <typename Transform>
void runInPlace(benchmark::State& state, Transform transform) {
  const auto n = static_cast<std::size_t>(state.range(0));
  std::vector<float> data(n);
  run(state, data.data(), [&] { transform(data.data(), n); });
}

void realft(benchmark::State& state) {
  runInPlace(state, [](float* x, std::size_t n) { krosac::realft(x - 1, n, 1); });
}
void realftBaseline(benchmark::State& state) {
  runInPlace(state, krosac::baseline::realftForward);
}
void realftPlain(benchmark::State& state) {
  runInPlace(state, [](float* x, std::size_t n) { krosac::plain::realft(x - 1, n, 1); });
}
BENCHMARK(realft)->RangeMultiplier(4)->Range(1 << 8, 1 << 22);
BENCHMARK(realftBaseline)->RangeMultiplier(4)->Range(1 << 8, 1 << 18);
BENCHMARK(realftPlain)->RangeMultiplier(4)->Range(1 << 8, 1 << 18);

#ifdef KROSAC_HAVE_FFTW
void fftw(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  float* data = fftwf_alloc_real(n + 2);
  const fftwf_plan plan = fftwf_plan_dft_r2c_1d(
      static_cast<int>(n), data, reinterpret_cast<fftwf_complex*>(data), FFTW_ESTIMATE);
  run(state, data, [&] { fftwf_execute(plan); });
  fftwf_destroy_plan(plan);
  fftwf_free(data);
}
BENCHMARK(fftw)->RangeMultiplier(4)->Range(1 << 8, 1 << 22);
#endif

#ifdef KROSAC_HAVE_KISSFFT
void kissfft(benchmark::State& state) {
  const auto n = static_cast<std::size_t>(state.range(0));
  std::vector<float> data(n);
  std::vector<kiss_fft_cpx> bins(n / 2 + 1);
  kiss_fftr_cfg plan = kiss_fftr_alloc(static_cast<int>(n), 0, nullptr, nullptr);
  run(state, data.data(), [&] { kiss_fftr(plan, data.data(), bins.data()); });
  kiss_fftr_free(plan);
}
BENCHMARK(kissfft)->RangeMultiplier(4)->Range(1 << 8, 1 << 18);
#endif

}  // namespace
