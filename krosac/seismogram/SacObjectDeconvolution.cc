#include <algorithm>
#include <cmath>
#include <limits>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/dsp/internal/Weights.h"
#include "krosac/platform/internal/TruncIndex.h"
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
  a.multiplyBins([&](std::size_t k, double& re, double& im) {
    re = other[2 * k];
    im = -other[2 * k + 1];
  });
}

// The sums of squares of a and of as many samples of b, side by side, since each addition waits for
// the one before.
std::pair<float, float> energies(std::span<const float> a, std::span<const float> b) {
  float sumA = 0.0f, sumB = 0.0f;
  const std::size_t both = std::min(a.size(), b.size());
  for (std::size_t i = 0; i < both; ++i) {
    sumA += a[i] * a[i];
    sumB += b[i] * b[i];
  }
  for (const float sample : a.subspan(both)) sumA += sample * sample;
  return {sumA, sumB};
}

// The first of the values greatest in size; NaN is passed over, and 0 is the index of no number.
// The block that holds it is looked for in vectors.
std::int64_t indexOfGreatest(std::span<const float> x) {
  constexpr std::size_t kBlock = 64;
  const auto size = [](float value) { return std::fabs(value); };
  const float greatest = greatestOf(x.size(), [&](std::size_t i) { return size(x[i]); });
  const auto isIn = [&](std::span<const float> block) {
    int found = 0;
    for (const float value : block) found |= size(value) == greatest;
    return found != 0;
  };
  auto rest = x;
  while (rest.size() > kBlock && !isIn(rest.first<kBlock>())) rest = rest.subspan(kBlock);
  const auto at = std::ranges::find(rest, greatest, size);
  return at == rest.end() ? 0 : &*at - x.data();
}

}  // namespace

// Both traces padded to one length, the other first cut to this one's number of samples.
std::pair<PackedSpectrum, PackedSpectrum> SacObject::spectraWith(const SacObject& other) const {
  const auto x = samples(), y = other.samples();
  const std::size_t n = paddedLength(std::max(x.size(), y.size()));
  return PackedSpectrum::ofTwo(x, y.first(std::min(x.size(), y.size())), n, delta());
}

template <typename Window>
void SacObject::divideSpectrum(const SacObject& other, float level, float tshift, Window window) {
  if (samples().empty()) return;
  auto spectra = spectraWith(other);
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

  // The numerator is squared at these two frequencies, not multiplied by the denominator's value;
  // this is intended.
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
  if (!a) return;
  a.forward();
  b.forward();
  a.dc() *= b.dc();
  a.nyquist() *= b.nyquist();
  correlateBins(a, b);
  const auto correlation = a.inverse();

  // Entry m of the rotated result holds lag m - N/2; the middle npts of these are kept.
  const std::size_t n = a.size(), half = n / 2, first = (n - x.size()) / 2;
  for (std::size_t j = 0; j < x.size(); ++j) x[j] = correlation[(first + j + half) & (n - 1)];
  const auto firstLag =
      static_cast<float>(static_cast<std::int64_t>(first) - static_cast<std::int64_t>(half));
  setBeginTime(firstLag * delta());
  setEndTime(this->b() + static_cast<float>(x.size() - 1) * delta());
  samplesChanged();
}

std::pair<double, double> SacObject::GetOptimalShift(SacObject& other) {
  const auto x = samples(), y = other.samples();
  const auto [energyA, energyB] = energies(x, y);
  setUserValueKey_Value(kEnergyKey, energyA);
  other.setUserValueKey_Value(kEnergyKey, energyB);
  if (x.empty()) return {0.0, std::numeric_limits<double>::quiet_NaN()};

  auto [a, b] = spectraWith(other);
  if (!a) return {0.0, 0.0};
  a.forward();
  b.forward();
  // This trace's own values are squared; this is intended.
  a.dc() *= a.dc();
  a.nyquist() *= a.nyquist();
  correlateBins(a, b);
  const auto correlation = a.inverse();
  const std::int64_t best = indexOfGreatest(correlation), n = std::ssize(correlation);
  const std::int64_t lag = best < n / 2 ? best : best - n;
  return {static_cast<double>(lag) * delta(),
          correlation[static_cast<std::size_t>(best)] /
              (std::sqrt(static_cast<double>(energyB)) * std::sqrt(static_cast<double>(energyA)))};
}

void SacObject::subtractZeroLagGaussian(float k) {
  constexpr double kFitted = 5.0;  // s before time 0
  float* const x = samples().data();
  const std::int64_t n = std::ssize(samples()), zero = truncInt32(-b() / delta()),
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
  // The last weight squared normalises the sum, not the sum of the squared weights; this is
  // intended.
  const double last = first < zero ? pulse(1) : 0.0;
  const double amplitude = sum / (last * last);
  for (std::int64_t j = 0; j < n; ++j)
    x[j] = static_cast<float>(x[j] - amplitude * pulse(zero - j));
  samplesChanged();
}

}  // namespace krosac
