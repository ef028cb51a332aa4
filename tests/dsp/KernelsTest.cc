// All kernels that this processor can run return the same bits as the plain loops.
#include <gtest/gtest.h>

#include <bit>
#include <cstdint>
#include <functional>
#include <limits>
#include <numeric>
#include <random>
#include <vector>

#include "dsp/PlainLoops.h"
#include "krosac/dsp/Butterworth.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/dsp/Fft.h"
#include "krosac/dsp/internal/Kernels.h"

namespace krosac {
namespace {

using Floats = std::vector<float>;

struct KernelSet {
  const char* name;
  decltype(&baseline::four1) four1;
  decltype(&baseline::realftForward) realftForward, realftInverse;
  decltype(&baseline::convolve) convolve;
  decltype(&baseline::decimate) decimate;
  decltype(&baseline::cascade) cascade;
};

#define KROSAC_KERNEL_SET(set)                                                              \
  {                                                                                         \
#set, set::four1, set::realftForward, set::realftInverse, set::convolve, set::decimate, \
        set::cascade                                                                        \
  }

std::vector<KernelSet> kernelSets() {
  std::vector<KernelSet> sets{KROSAC_KERNEL_SET(baseline)};
#ifdef KROSAC_AVX2
  if (__builtin_cpu_supports("avx2")) sets.push_back(KROSAC_KERNEL_SET(avx2));
#endif
  return sets;
}

constexpr int kKinds = 7;

// Kinds of samples: noise; an impulse; zeros of both signs with a few ones; denormal numbers; huge
// numbers; numbers of very different size; and numbers +-1/3, whose products are inexact and
// cancel, so that a fused operation leaves a residual.
Floats makeSamples(int kind, std::size_t n) {
  std::mt19937 random(static_cast<unsigned>(n));
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  const auto signOf = [&](float size) { return std::copysign(size, uniform(random)); };
  const std::function<float()> makers[kKinds] = {
      [&] { return uniform(random); },
      [&] { return 0.0f; },
      [&] { return signOf(random() % 16 == 0 ? 1.0f : 0.0f); },
      [&] { return uniform(random) * 1e-41f; },
      [&] { return uniform(random) * 3e38f; },
      [&] { return std::ldexp(uniform(random), static_cast<int>(random() % 280) - 150); },
      [&] { return signOf(1.0f / 3.0f); }};
  Floats x(n);
  std::ranges::generate(x, makers[kind]);
  if (kind == 1 && n > 0) x[n / 3] = 1.0f;
  return x;
}

// The kind of samples cycles with the length.
Floats someSamples(int n) {
  return makeSamples(n % kKinds, static_cast<std::size_t>(n));
}

std::vector<int> allShortAndSomeLong(std::initializer_list<int> some) {
  std::vector<int> lengths(301);
  std::iota(lengths.begin(), lengths.end(), 0);
  lengths.insert(lengths.end(), some);
  return lengths;
}

// Expects the same bits, except in the payload of NaN.
void expectSameBits(const Floats& expected, const Floats& x, const char* what) {
  ASSERT_EQ(expected.size(), x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (std::isnan(expected[i]) && std::isnan(x[i])) continue;
    ASSERT_EQ(std::bit_cast<std::uint32_t>(expected[i]), std::bit_cast<std::uint32_t>(x[i]))
        << what << ": " << expected[i] << " and " << x[i] << " at " << i << " of " << x.size();
  }
}

// The arrays start one sample after an aligned address.
template <typename Transform>
Floats transformed(Floats samples, Transform transform) {
  samples.insert(samples.begin(), 0.0f);
  transform(samples.data() + 1);
  return {samples.begin() + 1, samples.end()};
}

TEST(Kernels, Transform) {
  for (std::size_t n = 2; n <= 1 << 20; n *= 2) {
    for (int kind = 0; kind < kKinds; ++kind) {
      // All kinds at all lengths would take a minute.
      if (n > 1 << 14 && kind != std::countr_zero(n) % 7) continue;
      const Floats samples = makeSamples(kind, n);
      for (const int sign : {1, -1}) {
        const auto complex =
            transformed(samples, [&](float* x) { plain::four1(x - 1, n / 2, sign); });
        const auto real = transformed(samples, [&](float* x) { plain::realft(x - 1, n, sign); });
        const auto expect = [&](const Floats& expected, const char* name, auto transform) {
          expectSameBits(expected, transformed(samples, transform), name);
        };
        expect(complex, "four1", [&](float* x) { four1(x - 1, n / 2, sign); });
        expect(real, "realft", [&](float* x) { realft(x - 1, n, sign); });
        for (const KernelSet& set : kernelSets()) {
          if (n < 2 * kShortestTransform) continue;
          const auto kernel = sign == 1 ? set.realftForward : set.realftInverse;
          expect(complex, set.name, [&](float* x) { set.four1(x, n / 2, sign); });
          expect(real, set.name, [&](float* x) { kernel(x, n); });
        }
        if (HasFatalFailure()) FAIL() << "length " << n << ", samples " << kind;
      }
    }
  }
}

// The arrays hold only the samples that may be read.
TEST(Kernels, Convolve) {
  for (const int n : allShortAndSomeLong({1023, 1024, 1025, 5003})) {
    for (const int m : {-1, 0, 1, 2, 7, 31, 64, 65, 300, 3001}) {
      const Floats a = someSamples(n), b = makeSamples(0, std::max(m, 0));
      Floats expected(a.size()), out(a.size(), 9.0f);
      plain::convolve(a.data(), b.data(), expected.data(), n, m, 0.3f);
      TDconvolve(a.data(), b.data(), out.data(), static_cast<unsigned>(n), m, 0.3f);
      expectSameBits(expected, out, "TDconvolve");
      for (const KernelSet& set : kernelSets()) {
        set.convolve(a.data(), b.data(), out.data(), a.size(), b.size(), 0.3f);
        expectSameBits(expected, out, set.name);
      }
      if (HasFatalFailure()) FAIL() << n << " and " << m;
    }
  }
}

TEST(Kernels, Decimate) {
  for (const int n : allShortAndSomeLong({1000, 1001, 4099, 30011})) {
    const Floats x = someSamples(n);
    for (const int factor : {1, 2, 3, 4, 5, 7, 5000}) {
      for (const int taps : {0, 1, 2, 64, 95, 221}) {
        const Floats h = makeSamples(0, taps);
        Floats expected((n + factor - 1) / factor), y(expected.size(), 9.0f);
        plain::decimate(h.data(), taps, factor, x.data(), n, expected.data());
        std::int32_t length = -1;
        decim(factor, taps, h.data(), nullptr, n, x.data(), y.data(), &length);
        ASSERT_EQ(length, std::ssize(y));
        expectSameBits(expected, y, "decim");
        // The kernels compute complete sums only, starting at the first sample.
        if (taps == 0 || n < taps) continue;
        Floats whole((n - taps) / factor + 1);
        for (std::size_t i = 0; i < whole.size(); ++i)
          for (int t = 0; t < taps; ++t) whole[i] += h[t] * x[i * factor + t];
        y.resize(whole.size());
        for (const KernelSet& set : kernelSets()) {
          set.decimate(h.data(), taps, factor, x.data(), y.size(), y.data());
          expectSameBits(whole, y, set.name);
        }
        if (HasFatalFailure()) FAIL() << n << ", " << factor << " and " << taps;
      }
    }
  }
}

// Infinite and NaN coefficients must not affect outputs through samples outside the trace.
TEST(Kernels, FilterThroughSections) {
  for (int sections = 1; sections <= 10; ++sections) {
    for (int design = 0; design < 4; ++design) {
      BUFilterDesign f;
      BUroots(&f, 2 * sections);
      design == 1 ? LPtoHP(&f) : LP(&f);
      CutOffs(&f, warp(0.5f * (design == 2 ? 0.6f : 0.11f), 2.0f));
      BiLin(&f);
      if (design == 3)
        f.num[sections - 1][1] = f.den[sections / 2][2] = -std::numeric_limits<float>::infinity();
      for (int n = 0; n <= 310; ++n) {
        const int length = n <= 300 ? n : 97 * n;
        const Floats samples = makeSamples(n % kKinds, static_cast<std::size_t>(length));
        Floats expected = samples, data;
        for (const int nPasses : {1, 2}) {
          for (int k = 0; k < sections && n > 0; ++k) {
            float* const first = nPasses == 1 ? &expected.front() : &expected.back();
            plain::section(f.num[k], f.den[k], first, length, nPasses == 1 ? 1 : -1);
          }
          data = samples;
          Apply(&f, data.data(), length, nPasses);
          expectSameBits(expected, data, "Apply");
          for (const KernelSet& set : kernelSets()) {
            if (length == 0 || nPasses == 2) continue;
            data = samples;
            set.cascade(f.num, f.den, sections, data.data(), length, 1);
            expectSameBits(expected, data, set.name);
          }
          if (HasFatalFailure()) FAIL() << sections << " sections, " << design << ", " << length;
        }
      }
    }
  }
}

}  // namespace
}  // namespace krosac
