#include <algorithm>
#include <cmath>
#include <limits>

#include "krosac/dsp/PackedSpectrumInternal.h"
#include "krosac/dsp/WeightsInternal.h"
#include "krosac/platform/TruncIndexInternal.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {
namespace {

constexpr int kEnergyKey = 9;

float power(float re, float im) {
  return re * re + im * im;
}

// Turns the bins of a into a conj(b), the spectrum of their correlation.
void correlateBins(PackedSpectrum& a, PackedSpectrum& b) {
  const float* other = b.values();
  a.forEachBin([&](std::size_t k, float& re, float& im) {
    multiply(re, im, other[2 * k], -other[2 * k + 1]);
  });
}

}  // namespace

struct SacObject::SpectrumPair {
  PackedSpectrum own, others;
};

// Both traces as spectra of one length, the other cut or padded to this one's number of samples.
SacObject::SpectrumPair SacObject::spectraWith(const SacObject& other) const {
  const auto x = samples(), y = other.samples();
  const std::size_t n = paddedLength(std::max(x.size(), y.size()));
  return {PackedSpectrum(x, n, delta()),
          PackedSpectrum(y.first(std::min(x.size(), y.size())), n, delta())};
}

template <typename Window>
void SacObject::divideSpectrum(const SacObject& other, float level, float tshift, Window window) {
  if (samples().empty()) return;
  auto [u, w] = spectraWith(other);
  if (!u || !w) return;
  u.forward();
  w.forward();
  float greatest = std::max(w.dc() * w.dc(), w.nyquist() * w.nyquist());
  w.forEachBin(
      [&](std::size_t, float& re, float& im) { greatest = std::max(greatest, power(re, im)); });
  const float water = level * greatest;

  // The numerator is squared at these two frequencies, not multiplied by the denominator's value;
  // this is intended.
  u.dc() = u.dc() * u.dc() / std::max(water, w.dc() * w.dc());
  u.nyquist() = u.nyquist() * u.nyquist() / std::max(water, w.nyquist() * w.nyquist());
  const float* divisor = w.values();
  u.forEachBin([&](std::size_t k, float& re, float& im) {
    const double wRe = divisor[2 * k], wIm = divisor[2 * k + 1];
    const double floored = std::max(water, power(divisor[2 * k], divisor[2 * k + 1]));
    multiply(re, im, wRe / floored, -wIm / floored);
    const double omega = u.omega(k), g = window(omega), phase = omega * tshift;
    multiply(re, im, g * std::cos(phase), g * std::sin(phase));
  });
  takeBack(u);
}

void SacObject::WaterLevelDeconWith_wlevel_tshift(const SacObject& other, float level,
                                                  float tshift) {
  divideSpectrum(other, level, tshift, [](double) { return 1.0; });
}

void SacObject::WaterLevelDeconWith_wlevel_tshift_gwidth(const SacObject& other, float level,
                                                         float tshift, float a) {
  divideSpectrum(other, level, tshift, [a](double omega) { return gaussian(omega, a); });
}

void SacObject::iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(const SacObject& other, float level,
                                                               float tshift, float a, int, float) {
  WaterLevelDeconWith_wlevel_tshift_gwidth(other, level, tshift, a);
}

void SacObject::correlateWith(const SacObject& other) {
  const auto x = samples();
  if (x.empty()) return;
  auto [a, b] = spectraWith(other);
  if (!a || !b) return;
  a.forward();
  b.forward();
  a.dc() *= b.dc();
  a.nyquist() *= b.nyquist();
  correlateBins(a, b);
  a.inverse();

  // Entry m of the rotated result holds lag m - N/2; the middle npts of these are kept.
  const std::size_t n = a.size(), half = n / 2, first = (n - x.size()) / 2;
  for (std::size_t j = 0; j < x.size(); ++j) x[j] = a.values()[(first + j + half) % n];
  const auto firstLag =
      static_cast<float>(static_cast<std::int64_t>(first) - static_cast<std::int64_t>(half));
  setBeginTime(firstLag * delta());
  setEndTime(this->b() + static_cast<float>(x.size() - 1) * delta());
  samplesChanged();
}

std::pair<double, double> SacObject::GetOptimalShift(SacObject& other) {
  const auto x = samples(), y = other.samples();
  float energyA = 0.0f, energyB = 0.0f;
  for (const float sample : x) energyA += sample * sample;
  for (const float sample : y.first(std::min(x.size(), y.size()))) energyB += sample * sample;
  setUserValueKey_Value(kEnergyKey, energyA);
  other.setUserValueKey_Value(kEnergyKey, energyB);
  if (x.empty()) return {0.0, std::numeric_limits<double>::quiet_NaN()};

  auto [a, b] = spectraWith(other);
  if (!a || !b) return {0.0, 0.0};
  a.forward();
  b.forward();
  // This trace's own values are squared; this is intended.
  a.dc() *= a.dc();
  a.nyquist() *= a.nyquist();
  correlateBins(a, b);
  a.inverse();
  const std::span correlation(a.values(), a.size());
  const auto best = std::ranges::max_element(
      correlation, {}, [](float value) { return std::isnan(value) ? -1.0f : std::fabs(value); });
  const std::int64_t index = best - correlation.begin(), n = std::ssize(correlation);
  const std::int64_t lag = index < n / 2 ? index : index - n;
  return {static_cast<double>(lag) * delta(), *best / (std::sqrt(static_cast<double>(energyB)) *
                                                       std::sqrt(static_cast<double>(energyA)))};
}

void SacObject::subtractZeroLagGaussian(float k) {
  constexpr double kFitted = 5.0;  // s before time 0
  const auto x = samples();
  const std::int64_t n = std::ssize(x), zero = truncIndex(-b() / delta()),
                     first = truncIndex((-kFitted - b()) / delta());
  if (!(b() <= 0.0f) || zero == kNoIndex || first == kNoIndex) return;
  const auto pulse = [&](std::int64_t m) {
    const double t = static_cast<double>(m) * delta();
    return std::exp(-k * t * t);
  };
  float sum = 0.0f;
  for (std::int64_t j = std::max<std::int64_t>(first, 0); j < std::min(zero, n); ++j) {
    sum = static_cast<float>(sum + x[j] * pulse(zero - j));
  }
  // The last weight squared normalises the sum, not the sum of the squared weights; this is
  // intended.
  const double last = first < zero ? pulse(1) : 0.0;
  const double amplitude = sum / (last * last);
  for (std::int64_t j = 0; j < n; ++j)
    x[j] = static_cast<float>(x[j] - amplitude * pulse(zero - j));
  samplesChanged();
}

}  // namespace krosac
