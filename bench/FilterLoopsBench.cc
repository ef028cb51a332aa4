// Convolution, recursive filters and decimation, compared with their plain loops.
#include <benchmark/benchmark.h>

#include <random>
#include <vector>

#include "dsp/PlainLoops.h"
#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/dsp/internal/Kernels.h"

namespace {

std::vector<float> noise(std::size_t n) {
  std::mt19937 random(1);
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  std::vector<float> x(n);
  for (float& value : x) value = uniform(random);
  return x;
}

template <typename Convolve>
void runConvolution(benchmark::State& state, Convolve convolve) {
  const std::vector<float> a = noise(100000), b = noise(static_cast<std::size_t>(state.range(0)));
  std::vector<float> out(a.size());
  for (auto _ : state) {
    convolve(a.data(), b.data(), out.data(), a.size(), b.size(), 0.3f);
    benchmark::ClobberMemory();
  }
}
void convolve(benchmark::State& state) {
  runConvolution(state, [](auto a, auto b, auto out, auto n, auto m, auto scale) {
    krosac::TDconvolve(a, b, out, static_cast<unsigned>(n), static_cast<int>(m), scale);
  });
}
void convolveBaseline(benchmark::State& state) {
  runConvolution(state, krosac::baseline::convolve);
}
void convolvePlain(benchmark::State& state) {
  runConvolution(state, [](auto a, auto b, auto out, auto n, auto m, auto scale) {
    krosac::plain::convolve(a, b, out, static_cast<long>(n), static_cast<long>(m), scale);
  });
}
BENCHMARK(convolve)->Arg(31)->Arg(301)->Arg(3001);
BENCHMARK(convolveBaseline)->Arg(31)->Arg(301)->Arg(3001);
BENCHMARK(convolvePlain)->Arg(31)->Arg(301)->Arg(3001);

template <typename Run>
void runCascade(benchmark::State& state, Run run) {
  const std::vector<float> samples = noise(1000000);
  krosac::BUFilterDesign design;
  krosac::BUroots(&design, 2 * static_cast<int>(state.range(0)));
  krosac::LP(&design);
  krosac::CutOffs(&design, krosac::warp(0.1f, 2.0f));
  krosac::BiLin(&design);
  std::vector<float> data = samples;
  for (auto _ : state) {
    state.PauseTiming();
    data = samples;
    state.ResumeTiming();
    run(design, data);
    benchmark::ClobberMemory();
  }
}
void cascade(benchmark::State& state) {
  runCascade(state, [](const auto& design, auto& data) {
    krosac::Apply(&design, data.data(), static_cast<int>(data.size()), 1);
  });
}
void cascadePlain(benchmark::State& state) {
  runCascade(state, [](const auto& design, auto& data) {
    for (int k = 0; k < design.nSections; ++k)
      krosac::plain::section(design.num[k], design.den[k], data.data(),
                             static_cast<long>(data.size()), 1);
  });
}
BENCHMARK(cascade)->Arg(1)->Arg(2)->Arg(4)->Arg(10);
BENCHMARK(cascadePlain)->Arg(1)->Arg(2)->Arg(4)->Arg(10);

// The plain loop uses a multiple of the factor, like decimateSignal.
void decimate(benchmark::State& state) {
  const std::vector<float> x = noise(120000);
  std::vector<float> y(x.size());
  std::int32_t length = 0;
  for (auto _ : state) {
    krosac::decimateSignal(static_cast<std::int32_t>(state.range(0)),
                           static_cast<std::int32_t>(x.size()), x.data(), y.data(), &length);
    benchmark::ClobberMemory();
  }
}
void decimatePlain(benchmark::State& state) {
  const float* const tables[] = {krosac::DECIMATEby2, krosac::DECIMATEby3, krosac::DECIMATEby4,
                                 krosac::DECIMATEby5};
  const long taps[] = {95, 141, 181, 221};
  const auto f = static_cast<std::size_t>(state.range(0)) - 2;
  const std::vector<float> x = noise(120000);
  std::vector<float> y(x.size());
  for (auto _ : state) {
    krosac::plain::decimate(tables[f], taps[f], state.range(0), x.data(),
                            static_cast<long>(x.size()), y.data());
    benchmark::ClobberMemory();
  }
}
BENCHMARK(decimate)->DenseRange(2, 5);
BENCHMARK(decimatePlain)->DenseRange(2, 5);

}  // namespace
