// The expected results of spectral operations, by a slow transform in double precision.
#ifndef KROSAC_TESTS_SPECTRALTRACES_H
#define KROSAC_TESTS_SPECTRALTRACES_H

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>

#include "dsp/Noise.h"
#include "seismogram/Traces.h"

namespace krosac {

using Complex = std::complex<double>;
using Reals = std::vector<double>;
using Spectrum = std::vector<Complex>;

inline constexpr double kPi = std::numbers::pi;

// Noise whose values at zero and Nyquist frequency are as large as the other bins.
inline Samples richNoise(int n) {
  Samples x = noise(n);
  for (std::size_t j = 0; j < x.size(); j += 2) x[j] += 0.6f;
  return x;
}

inline Samples cutTo(Samples x, std::size_t n) {
  x.resize(n);
  return x;
}

inline Spectrum slowTransform(const Spectrum& x, int sign) {
  const auto n = static_cast<double>(x.size());
  Spectrum bins(x.size());
  for (std::size_t k = 0; k < x.size(); ++k)
    for (std::size_t j = 0; j < x.size(); ++j)
      bins[k] += x[j] * std::polar(1.0, sign * 2 * kPi * static_cast<double>(j * k % x.size()) / n);
  return bins;
}

// The bins of the samples, padded with zeros or cut to n.
inline Spectrum slowSpectrum(const Samples& x, std::size_t n) {
  const Samples padded = cutTo(x, n);
  return slowTransform(Spectrum(padded.begin(), padded.end()), 1);
}

// The real samples whose spectrum has these bins in its lower half.
inline Reals slowInverse(Spectrum bins) {
  const std::size_t n = bins.size();
  for (const std::size_t end : {std::size_t{0}, n / 2}) bins[end] = bins[end].real() / 2;
  for (std::size_t k = n / 2 + 1; k < n; ++k) bins[k] = 0;
  Reals x;
  for (const Complex value : slowTransform(bins, -1))
    x.push_back(2 * value.real() / static_cast<double>(n));
  return x;
}

// The samples filtered by factor(k, omega) of bin k = 0 .. N/2 at omega rad/s.
template <typename Factor>
Reals slowlyFiltered(const Samples& x, double delta, Factor factor) {
  const std::size_t n = 2 * std::bit_floor(x.size());
  Spectrum bins = slowSpectrum(x, n);
  for (std::size_t k = 0; k <= n / 2; ++k)
    bins[k] *= factor(k, 2 * kPi * static_cast<double>(k) / (static_cast<double>(n) * delta));
  return slowInverse(bins);
}

// Expects a changed trace whose samples are the first of these, within a share of the largest to
// allow for the roundings of a transform, and whose header has the new extrema.
inline void expectSamples(const S& s, const Reals& expected, double share = 2e-6) {
  const Samples x = samplesIn(s);
  double greatest = 0;
  for (const double value : expected) greatest = std::max(greatest, std::abs(value));
  ASSERT_LE(x.size(), expected.size());
  for (std::size_t j = 0; j < x.size(); ++j)
    ASSERT_NEAR(x[j], expected[j], share * greatest) << "sample " << j;
  EXPECT_TRUE(s.mSeisHasChanged());
  EXPECT_EQ(s.smin(), *std::ranges::min_element(x));
  EXPECT_EQ(s.smax(), *std::ranges::max_element(x));
}

inline void expectUnchanged(const S& s, const Samples& x) {
  EXPECT_EQ(samplesIn(s), x);
  EXPECT_FALSE(s.mSeisHasChanged());
}

inline void expectNotANumber(const S& s) {
  for (const float value : samplesIn(s)) EXPECT_TRUE(std::isnan(value));
}

}  // namespace krosac

#endif
