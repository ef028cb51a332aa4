#include "krosac/dsp/Fft.h"

#include "SpectralTraces.h"

namespace krosac {
namespace {

TEST(Fft, MatchesDirectSumsAndComesBackTimesHalfTheLength) {
  for (unsigned long n = 2; n <= 1024; n *= 2) {
    const Samples x = noise(static_cast<int>(n));
    const double length = static_cast<double>(n);
    // Each of the log2(n) passes rounds values of about sqrt(n) twice to single precision.
    const double tolerance = 6e-8 * std::sqrt(length) * (2 + std::log2(length));
    Spectrum f = slowSpectrum(x, n);
    f[0].imag(f[n / 2].real());  // where the Nyquist value is packed
    Samples bins = x;
    realft(bins.data() - 1, n, 1);
    for (std::size_t k = 0; k < n / 2; ++k)
      ASSERT_LE(std::abs(Complex(bins[2 * k], bins[2 * k + 1]) - f[k]), tolerance) << n;
    for (const int inverse : {0, -1, 2}) {
      Samples back = bins;
      realft(back.data() - 1, n, inverse);
      // Relative to n/2, two transforms accumulate about ten roundings.
      for (std::size_t j = 0; j < n; ++j) ASSERT_NEAR(back[j] * 2 / length, x[j], 1e-6) << n;
    }
  }
}

TEST(Fft, OtherLengthsLeaveTheDataUnchanged) {
  Samples data = noise(12);
  for (const unsigned long n : {0ul, 1ul, 3ul, 6ul, ~0ul}) {
    four1(data.data() - 1, n, 1);
    realft(data.data() - 1, n, -1);
  }
  EXPECT_EQ(data, noise(12));
}

}  // namespace
}  // namespace krosac
