#include "krosac/dsp/Fft.h"

#include "SpectralTraces.h"

namespace krosac {
namespace {

// Each of the log2(n) passes rounds values of size about sqrt(n) to single precision twice.
void expectNear(const float* bin, Complex expected, double n) {
  const double tolerance = 6e-8 * std::sqrt(n) * (2.0 + std::log2(n));
  ASSERT_NEAR(bin[0], expected.real(), tolerance) << n;
  ASSERT_NEAR(bin[1], expected.imag(), tolerance) << n;
}

TEST(Fft, MatchesDirectSumsAndComesBackTimesHalfTheLength) {
  for (int n = 1; n <= 1024; n *= 2) {
    for (const int sign : {1, -1}) {
      Samples data = noise(2 * n);
      Spectrum x;
      for (int j = 0; j < n; ++j) x.emplace_back(data[2 * j], data[2 * j + 1]);
      four1(data.data() - 1, n, sign);
      const Spectrum f = slowTransform(x, sign);
      for (int k = 0; k < n; ++k) expectNear(&data[2 * k], f[k], n);
    }
    if (n == 1) continue;
    const Samples samples = noise(n);
    const Spectrum f = slowSpectrum(samples, n);
    Samples data = samples;
    realft(data.data() - 1, n, 1);
    expectNear(&data[0], {f[0].real(), f[n / 2].real()}, n);
    for (int k = 1; k < n / 2; ++k) expectNear(&data[2 * k], f[k], n);
    for (const int inverse : {0, -1, 2}) {
      Samples back = data;
      realft(back.data() - 1, n, inverse);
      // Relative to n/2, two transforms lose some ten roundings.
      for (int j = 0; j < n; ++j) ASSERT_NEAR(back[j] * 2.0 / n, samples[j], 1e-6) << n;
    }
  }
}

TEST(Fft, OtherLengthsLeaveTheDataUnchanged) {
  Samples data = noise(12);
  for (const unsigned long n : {0ul, 3ul, 6ul, ~0ul}) {
    four1(data.data() - 1, n, 1);
    realft(data.data() - 1, n, 1);
  }
  realft(data.data() - 1, 1, -1);
  EXPECT_EQ(data, noise(12));
}

}  // namespace
}  // namespace krosac
