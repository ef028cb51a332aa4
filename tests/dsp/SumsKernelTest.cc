#include <gtest/gtest.h>

#include <numeric>

#include "dsp/KernelSets.h"
#include "dsp/PlainLoops.h"
#include "krosac/dsp/Convolution.h"
#include "krosac/dsp/Decimation.h"

namespace krosac {
namespace {

std::vector<int> allShortAndSomeLong(std::initializer_list<int> some) {
  std::vector<int> lengths(301);
  std::iota(lengths.begin(), lengths.end(), 0);
  lengths.insert(lengths.end(), some);
  return lengths;
}

// Kinds of samples go round with the lengths.
std::vector<float> someSamples(int n) {
  return makeSamples(static_cast<Samples>(n % static_cast<int>(Samples::kCount)),
                     static_cast<std::size_t>(n));
}

// The arrays have exactly the samples that may be read.
TEST(SumsKernel, ConvolvesWithTheBitsOfThePlainLoop) {
  for (const int n : allShortAndSomeLong({1023, 1024, 1025, 5003})) {
    for (const int m : {-1, 0, 1, 2, 7, 31, 64, 65, 300, 3001}) {
      const std::vector<float> a = someSamples(n), b = makeSamples(Samples::kNoise, std::max(m, 0));
      std::vector<float> expected(a.size()), out(a.size(), 9.0f);
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

TEST(SumsKernel, DecimatesWithTheBitsOfThePlainLoop) {
  for (const int n : allShortAndSomeLong({1000, 1001, 4099, 30011})) {
    const std::vector<float> x = someSamples(n);
    for (const int factor : {1, 2, 3, 4, 5, 7, 5000}) {
      for (const int taps : {0, 1, 2, 64, 95, 221}) {
        const std::vector<float> h = makeSamples(Samples::kNoise, taps);
        std::vector<float> expected((n + factor - 1) / factor), y(expected.size(), 9.0f);
        plain::decimate(h.data(), taps, factor, x.data(), n, expected.data());
        std::int32_t length = -1;
        decim(factor, taps, h.data(), nullptr, n, x.data(), y.data(), &length);
        ASSERT_EQ(length, static_cast<std::int32_t>(y.size()));
        expectSameBits(expected, y, "decim");
        // Whole sums only, from the first sample on.
        if (taps == 0 || n < taps) continue;
        const std::size_t outputs = (n - taps) / factor + 1;
        std::vector<float> whole(outputs);
        for (std::size_t i = 0; i < outputs; ++i)
          for (int t = 0; t < taps; ++t) whole[i] += h[t] * x[i * factor + t];
        y.resize(outputs);
        for (const KernelSet& set : kernelSets()) {
          set.decimate(h.data(), taps, factor, x.data(), outputs, y.data());
          expectSameBits(whole, y, set.name);
        }
        if (HasFatalFailure()) FAIL() << n << ", " << factor << " and " << taps;
      }
    }
  }
}

}  // namespace
}  // namespace krosac
