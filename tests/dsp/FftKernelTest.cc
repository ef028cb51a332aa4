#include "krosac/dsp/Fft.h"

#include <gtest/gtest.h>

#include "dsp/KernelSets.h"
#include "dsp/PlainLoops.h"

namespace krosac {
namespace {

// The arrays begin one sample behind the alignment of their memory.
template <typename Transform>
std::vector<float> transformed(const std::vector<float>& samples, Transform transform) {
  std::vector<float> shifted(samples.size() + 1);
  std::copy(samples.begin(), samples.end(), shifted.begin() + 1);
  transform(shifted.data() + 1);
  return {shifted.begin() + 1, shifted.end()};
}

TEST(FftKernel, GivesTheBitsOfThePlainLoops) {
  for (std::size_t n = 2; n <= 1 << 20; n *= 2) {
    for (int kind = 0; kind < static_cast<int>(Samples::kCount); ++kind) {
      // All kinds at all lengths would take the tests a minute.
      if (n > 1 << 14 && kind != static_cast<int>(std::countr_zero(n) % 7)) continue;
      const std::vector<float> samples = makeSamples(static_cast<Samples>(kind), n);
      for (const int sign : {1, -1}) {
        const auto complex =
            transformed(samples, [&](float* x) { plain::four1(x - 1, n / 2, sign); });
        const auto real = transformed(samples, [&](float* x) { plain::realft(x - 1, n, sign); });
        expectSameBits(complex, transformed(samples, [&](float* x) { four1(x - 1, n / 2, sign); }),
                       "four1");
        expectSameBits(real, transformed(samples, [&](float* x) { realft(x - 1, n, sign); }),
                       "realft");
        if (n < 2 * kShortestTransform) continue;
        for (const KernelSet& set : kernelSets()) {
          const auto transform = sign == 1 ? set.realftForward : set.realftInverse;
          expectSameBits(complex,
                         transformed(samples, [&](float* x) { set.four1(x, n / 2, sign); }),
                         set.name);
          expectSameBits(real, transformed(samples, [&](float* x) { transform(x, n); }), set.name);
        }
        if (HasFatalFailure()) FAIL() << "length " << n << ", samples " << kind;
      }
    }
  }
}

}  // namespace
}  // namespace krosac
