// What the tests of the kernels share: every set that this processor runs, difficult samples, and
// the comparison of bits.
#ifndef KROSAC_TESTS_DSP_KERNELSETS_H
#define KROSAC_TESTS_DSP_KERNELSETS_H

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <functional>
#include <random>
#include <vector>

#include "krosac/dsp/KernelsInternal.h"

namespace krosac {

struct KernelSet {
  const char* name;
  decltype(&baseline::four1) four1;
  decltype(&baseline::realftForward) realftForward;
  decltype(&baseline::realftInverse) realftInverse;
  decltype(&baseline::convolve) convolve;
  decltype(&baseline::decimate) decimate;
  decltype(&baseline::cascade) cascade;
};

#define KROSAC_KERNEL_SET(set)                                                              \
  {                                                                                         \
#set, set::four1, set::realftForward, set::realftInverse, set::convolve, set::decimate, \
        set::cascade                                                                        \
  }

inline std::vector<KernelSet> kernelSets() {
  std::vector<KernelSet> sets{KROSAC_KERNEL_SET(baseline)};
#ifdef KROSAC_AVX2
  if (__builtin_cpu_supports("avx2")) sets.push_back(KROSAC_KERNEL_SET(avx2));
#endif
  return sets;
}

enum class Samples { kNoise, kImpulse, kZeros, kDenormal, kHuge, kWide, kCancelling, kCount };

// Signed zeros come with a few ones; wide samples have any exponent; cancelling ones repeat a value
// whose products are inexact with both signs, so that a fused operation leaves a rest.
inline std::vector<float> makeSamples(Samples kind, std::size_t n) {
  std::mt19937 random(static_cast<unsigned>(n));
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  const auto signOf = [&](float size) { return std::copysign(size, uniform(random)); };
  const std::function<float()> makers[] = {
      [&] { return uniform(random); },
      [&] { return 0.0f; },
      [&] { return signOf(random() % 16 == 0 ? 1.0f : 0.0f); },
      [&] { return uniform(random) * 1e-41f; },
      [&] { return uniform(random) * 3e38f; },
      [&] { return std::ldexp(uniform(random), static_cast<int>(random() % 280) - 150); },
      [&] { return signOf(1.0f / 3.0f); }};
  std::vector<float> x(n);
  std::ranges::generate(x, makers[static_cast<int>(kind)]);
  if (kind == Samples::kImpulse && n > 0) x[n / 3] = 1.0f;
  return x;
}

// The same bits, but for what a NaN holds.
inline void expectSameBits(const std::vector<float>& expected, const std::vector<float>& x,
                           const char* what) {
  ASSERT_EQ(expected.size(), x.size());
  for (std::size_t i = 0; i < x.size(); ++i) {
    if (std::isnan(expected[i]) && std::isnan(x[i])) continue;
    ASSERT_EQ(std::bit_cast<std::uint32_t>(expected[i]), std::bit_cast<std::uint32_t>(x[i]))
        << what << ": " << expected[i] << " and " << x[i] << " at " << i << " of " << x.size();
  }
}

}  // namespace krosac

#endif
