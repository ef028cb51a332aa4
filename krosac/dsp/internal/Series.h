// What a seismogram and a plain time series do with their samples by one rule. Where their rules
// differ in a place, that place is an argument.
#ifndef KROSAC_DSP_INTERNAL_SERIES_H
#define KROSAC_DSP_INTERNAL_SERIES_H

#include <algorithm>
#include <cstddef>
#include <span>

namespace krosac {

struct Extrema {
  float min = 0.0f, max = 0.0f, mean = 0.0f;
};

// Three zeros for no samples. The sum of the mean is a Sum, taken in index order. The extrema are
// found in lanes beside it, since a comparison would wait for the last one longer than an addition.
template <typename Sum>
Extrema extremaOf(std::span<const float> x) {
  if (x.empty()) return {};
  constexpr std::size_t kLanes = 8;
  float least[kLanes], greatest[kLanes];
  std::ranges::fill(least, x[0]);
  std::ranges::fill(greatest, x[0]);
  const auto include = [&](std::size_t lane, float sample) {
    least[lane] = sample < least[lane] ? sample : least[lane];
    greatest[lane] = sample > greatest[lane] ? sample : greatest[lane];
  };
  Sum sum = x[0];
  std::size_t i = 1;
  for (; i + kLanes <= x.size(); i += kLanes) {
    for (std::size_t lane = 0; lane < kLanes; ++lane) include(lane, x[i + lane]);
    for (std::size_t lane = 0; lane < kLanes; ++lane) sum += x[i + lane];
  }
  for (; i < x.size(); ++i) {
    include(0, x[i]);
    sum += x[i];
  }
  // The first of several zeros gives the sign.
  const auto signedAsFirst = [x](float value) {
    return value == 0.0f ? *std::ranges::find(x, value) : value;
  };
  return {signedAsFirst(*std::ranges::min_element(least)),
          signedAsFirst(*std::ranges::max_element(greatest)),
          static_cast<float>(sum / static_cast<Sum>(x.size()))};
}

inline float sumOfSquares(std::span<const float> x) {
  float sum = 0.0f;
  for (const float sample : x) sum += sample * sample;
  return sum;
}

// Subtracts the least-squares line over t = dt, 2 dt, ..., whose slope is rounded to single
// precision and whose intercept to an Intercept.
template <typename Intercept>
void subtractLinearTrend(std::span<float> y, double dt) {
  const double n = static_cast<double>(y.size());
  double t = 0.0, sumT = 0.0, sumTT = 0.0, sumY = 0.0, sumTY = 0.0;
  for (const float sample : y) {
    t += dt;
    sumT += t;
    sumTT += t * t;
    sumY += sample;
    sumTY += t * sample;
  }
  const double determinant = n * sumTT - sumT * sumT;
  if (determinant == 0.0) return;  // all times are one, and there is no trend
  const auto slope = static_cast<float>((n * sumTY - sumT * sumY) / determinant);
  const auto intercept = static_cast<Intercept>((sumTT * sumY - sumTY * sumT) / determinant);
  // The time runs on from the sums and is not set back, which leaves a constant offset; this is
  // intended.
  for (float& sample : y) {
    t += dt;
    sample = static_cast<float>(sample - (slope * t + intercept));
  }
}

// Trapezoid rule. The result is advanced by one sample; the sum and the first step both start from
// sample 0 already times dt / 2. All of this is intended.
inline void integrate(std::span<float> x, float dt) {
  if (x.empty()) return;
  const double h = 0.5 * dt;
  double sum = x[0] * h;
  float previous = x[0] = static_cast<float>(sum);
  for (std::size_t i = 1; i < x.size(); ++i) {
    sum += (previous + x[i]) * h;
    previous = x[i];
    x[i - 1] = static_cast<float>(sum);
  }
  x.back() = static_cast<float>(sum);
}

// Forward difference; the last value is given twice, and a single sample stays.
inline void differentiate(std::span<float> x, float dt) {
  for (std::size_t i = 0; i + 1 < x.size(); ++i) x[i] = (x[i + 1] - x[i]) / dt;
  if (x.size() > 1) x.back() = x[x.size() - 2];
}

}  // namespace krosac

#endif
