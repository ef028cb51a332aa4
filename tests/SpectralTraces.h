// Traces made in memory, and what a spectral operation makes of them by a slow transform in double
// precision.
#ifndef KROSAC_TESTS_SPECTRALTRACES_H
#define KROSAC_TESTS_SPECTRALTRACES_H

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cmath>
#include <complex>
#include <numbers>
#include <string>
#include <vector>

#include "dsp/Noise.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

using Samples = std::vector<float>;
using Complex = std::complex<double>;
using Reals = std::vector<double>;
using Spectrum = std::vector<Complex>;

inline constexpr double kPi = std::numbers::pi;

inline Ref<SacObject> madeTrace(const Samples& x, float delta = 1.0f, float b = 0.0f) {
  auto s = make<SacObject>();
  s->initWithCapacity(static_cast<std::int32_t>(x.size()));
  std::ranges::copy(x, s->GetSacSeis());
  s->setDelta(delta);
  s->setBeginTime(b);
  s->setMSeisHasChanged(false);
  return s;
}

inline Samples valuesOf(const SacObject& s) {
  return {s.GetSacSeis(), s.GetSacSeis() + s.npts()};
}

inline std::string imageOf(const SacObject& s) {
  return {s.myData()->bytes(), s.myData()->bytes() + s.myData()->length()};
}

// Noise whose values at zero and Nyquist frequency are as strong as the others.
inline Samples richNoise(int n) {
  Samples x = noise(n);
  for (std::size_t j = 0; j < x.size(); j += 2) x[j] += 0.6f;
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

// The bins of the samples padded with zeros, or cut, to n.
inline Spectrum slowSpectrum(const Samples& x, std::size_t n) {
  Spectrum padded(x.begin(), x.end());
  padded.resize(n);
  return slowTransform(padded, 1);
}

// The real samples of the lower half of these bins.
inline Reals slowInverse(Spectrum bins) {
  const std::size_t n = bins.size();
  bins[0] = bins[0].real() / 2;
  bins[n / 2] = bins[n / 2].real() / 2;
  std::fill(bins.begin() + static_cast<std::ptrdiff_t>(n / 2) + 1, bins.end(), 0.0);
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

// The samples are the first of the expected ones to single precision: a share of the greatest that
// leaves room for the roundings of a transform.
inline void expectSamples(const SacObject& s, const Reals& expected, double share = 2e-6) {
  const Samples x = valuesOf(s);
  double greatest = 0;
  for (const double value : expected) greatest = std::max(greatest, std::abs(value));
  ASSERT_LE(x.size(), expected.size());
  for (std::size_t j = 0; j < x.size(); ++j)
    ASSERT_NEAR(x[j], expected[j], share * greatest) << "sample " << j;
}

// The flag is set and the extrema are those of the samples.
inline void expectChanged(const SacObject& s) {
  const Samples x = valuesOf(s);
  EXPECT_TRUE(s.mSeisHasChanged());
  EXPECT_EQ(s.smin(), *std::ranges::min_element(x));
  EXPECT_EQ(s.smax(), *std::ranges::max_element(x));
}

}  // namespace krosac

#endif
