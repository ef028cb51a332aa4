#include <algorithm>
#include <cmath>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

float power(float re, float im) {
  return re * re + im * im;
}

// Divides the spectrum of s by that of the other trace and multiplies each bin by window(omega) and
// the phase shift.
template <typename Window>
void divideSpectrum(SacObject& s, const SacObject& other, float level, float tshift,
                    Window window) {
  clearReason();
  if (samplesOf(s).empty()) return;
  auto spectra = spectraOf(s, other);
  PackedSpectrum &u = spectra.first, &w = spectra.second;
  if (!u) return;
  u.forward();
  w.forward();
  const float* divisor = w.values();
  const auto powerAt = [divisor](std::size_t k) {
    return power(divisor[2 * k], divisor[2 * k + 1]);
  };
  const float greatest =
      greatestOf(w.size() / 2 - 1, [&](std::size_t i) { return powerAt(i + 1); });
  const float water =
      level * std::max(std::max(w.dc() * w.dc(), w.nyquist() * w.nyquist()), greatest);

  // In these two bins the numerator is squared, not multiplied by the denominator; this is
  // intended.
  u.dc() = u.dc() * u.dc() / std::max(water, w.dc() * w.dc());
  u.nyquist() = u.nyquist() * u.nyquist() / std::max(water, w.nyquist() * w.nyquist());
  u.multiplyBins([&](std::size_t k, double& re, double& im) {
    const double floored = std::max(water, powerAt(k));
    re = divisor[2 * k] / floored;
    im = -divisor[2 * k + 1] / floored;
  });
  u.multiplyBins([&](std::size_t k, double& re, double& im) {
    const double omega = u.omega(k), g = window(omega), phase = omega * tshift;
    re = g * std::cos(phase);
    im = g * std::sin(phase);
  });
  takeBack(s, u);
}

}  // namespace

void SacObject::WaterLevelDeconWith_wlevel_tshift(const SacObject& other, float level,
                                                  float tshift) {
  divideSpectrum(*this, other, level, tshift, [](double) { return 1.0; });
}

void SacObject::WaterLevelDeconWith_wlevel_tshift_gwidth(const SacObject& other, float level,
                                                         float tshift, float a) {
  divideSpectrum(*this, other, level, tshift, [a](double omega) { return gaussian(omega, a); });
}

void SacObject::iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(const SacObject& other, float level,
                                                               float tshift, float a, int, float) {
  WaterLevelDeconWith_wlevel_tshift_gwidth(other, level, tshift, a);
}

void SacObject::subtractZeroLagGaussian(float k) {
  constexpr double kFitted = 5.0;  // s before time 0
  float* const x = samplesOf(*this).data();
  const std::int64_t n = std::ssize(samplesOf(*this)), zero = truncInt32(-b() / delta()),
                     first = truncInt32((-kFitted - b()) / delta());
  if (!(b() <= 0.0f) || zero == kNoInt32 || first == kNoInt32) return;
  const auto pulse = [&](std::int64_t m) {
    const double t = static_cast<double>(m) * delta();
    return std::exp(-k * t * t);
  };
  float sum = 0.0f;
  for (std::int64_t j = std::max<std::int64_t>(first, 0); j < std::min(zero, n); ++j) {
    sum = static_cast<float>(sum + x[j] * pulse(zero - j));
  }
  // The square of the last weight normalises the sum, not the sum of squared weights; this is
  // intended.
  const double last = first < zero ? pulse(1) : 0.0;
  const double amplitude = sum / (last * last);
  for (std::int64_t j = 0; j < n; ++j)
    x[j] = static_cast<float>(x[j] - amplitude * pulse(zero - j));
  samplesChanged(*this);
}

}  // namespace krosac
