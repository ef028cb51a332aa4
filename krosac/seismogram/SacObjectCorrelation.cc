#include <algorithm>
#include <cmath>
#include <limits>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

constexpr int kEnergyKey = 9;

// Multiplies the bins of a by conj(b), which makes them the spectrum of the cross-correlation.
void correlateBins(PackedSpectrum& a, PackedSpectrum& b) {
  const float* other = b.values();
  a.multiplyBins([&](std::size_t k, double& re, double& im) {
    re = other[2 * k];
    im = -other[2 * k + 1];
  });
}

// The sums of squares of a and of as many samples of b. One loop for both hides the latency of the
// additions, each of which waits for the one before.
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

// Index of the largest absolute value, ignoring NaN, the first on ties; 0 if all are NaN. Finding
// the block that holds it first lets compilers use vectors.
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

void SacObject::correlateWith(const SacObject& other) {
  clearReason();
  const auto x = samplesOf(*this);
  if (x.empty()) return;
  auto [a, b] = spectraOf(*this, other);
  if (!a) return;
  a.forward();
  b.forward();
  a.dc() *= b.dc();
  a.nyquist() *= b.nyquist();
  correlateBins(a, b);
  const auto correlation = a.inverse();

  // After a rotation by N/2 entry m holds lag m - N/2; the middle npts entries are kept.
  const std::size_t n = a.size(), half = n / 2, first = (n - x.size()) / 2;
  for (std::size_t j = 0; j < x.size(); ++j) x[j] = correlation[(first + j + half) & (n - 1)];
  const auto firstLag =
      static_cast<float>(static_cast<std::int64_t>(first) - static_cast<std::int64_t>(half));
  setBeginTime(firstLag * delta());
  setEndTime(this->b() + static_cast<float>(x.size() - 1) * delta());
  samplesChanged(*this);
}

std::pair<double, double> SacObject::GetOptimalShift(SacObject& other) {
  clearReason();
  const auto x = samplesOf(*this), y = samplesOf(other);
  auto [a, b] = spectraOf(*this, other);
  if (!a) return {0.0, 0.0};
  const auto [energyA, energyB] = energies(x, y);
  setUserValueKey_Value(kEnergyKey, energyA);
  other.setUserValueKey_Value(kEnergyKey, energyB);
  if (x.empty()) return {0.0, std::numeric_limits<double>::quiet_NaN()};

  a.forward();
  b.forward();
  // The values of this trace are squared; this is intended.
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

}  // namespace krosac
