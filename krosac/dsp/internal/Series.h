// Operations on samples that SacObject and uniformSampleTimeSeries share. Where the two differ, the
// difference is an argument.
#ifndef KROSAC_DSP_INTERNAL_SERIES_H
#define KROSAC_DSP_INTERNAL_SERIES_H

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <span>

#include "krosac/dsp/Convolution.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {

struct Extrema {
  float min = 0.0f, max = 0.0f, mean = 0.0f;
};

// Extrema and mean, or zeros if there are no samples. The mean is summed in index order in the type
// Sum. The extrema are found in independent lanes, because a chain of comparisons has a longer
// latency than the chain of additions.
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
  // An extremum of zero takes its sign from the first zero of the trace.
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

// Subtracts the least-squares line through the samples at t = dt, 2 dt, ... The slope is rounded to
// single precision and the intercept to the type Intercept.
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
  if (determinant == 0.0) return;  // all times are equal, so there is no trend
  const auto slope = static_cast<float>((n * sumTY - sumT * sumY) / determinant);
  const auto intercept = static_cast<Intercept>((sumTT * sumY - sumTY * sumT) / determinant);
  // The time continues from the loop above and does not restart at dt, which leaves a constant
  // offset; that is intended.
  for (float& sample : y) {
    t += dt;
    sample = static_cast<float>(sample - (slope * t + intercept));
  }
}

// Integrates by the trapezoid rule. The result is advanced by one sample. Both the sum and the
// first step start from sample 0 multiplied by dt / 2. All of this is intended.
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

// Forward differences over dt. The last value is repeated, and a single sample does not change.
inline void differentiate(std::span<float> x, float dt) {
  for (std::size_t i = 0; i + 1 < x.size(); ++i) x[i] = (x[i + 1] - x[i]) / dt;
  if (x.size() > 1) x.back() = x[x.size() - 2];
}

// A window over f1 < f < f4 that rises as 1 - cos up to f2 and falls as cos from f3 on. The two
// edges have different shapes; that is intended. Where they overlap, the falling edge applies.
inline double cosineEdges(float f, float f1, float f2, float f3, float f4) {
  constexpr double halfPi = std::numbers::pi / 2;
  if (f3 <= f && f < f4) return std::cos((f - f3) * halfPi / (f4 - f3));
  if (f1 < f && f <= f2) return 1.0 - std::cos((f - f1) * halfPi / (f2 - f1));
  return f1 < f && f < f4 ? 1.0 : 0.0;
}

// Convolves the samples with a pulse of m weights, weight(0) .. weight(m - 1), scaled to unit area.
// Returns false and changes nothing if there are no samples, if there is no memory, or if there are
// more than 2^24 weights, whose indexes are not exact in single precision.
template <typename Weight>
bool convolveWithPulse(std::span<float> x, float dt, std::int64_t m, Weight weight) {
  constexpr std::int64_t kMaxWeights = 1 << 24;
  if (x.empty() || m > kMaxWeights) return false;
  const auto pulse = ByteBuffer::zeroed(sizeof(float) * static_cast<std::size_t>(m));
  const auto out = ByteBuffer::zeroed(x.size_bytes());
  if (!pulse || !out) return false;
  const std::span w(reinterpret_cast<float*>(pulse->mutableBytes()), static_cast<std::size_t>(m));
  float sum = 0.0f;
  for (std::size_t i = 0; i < w.size(); ++i)
    sum += w[i] = static_cast<float>(weight(static_cast<float>(i)));
  if (sum != 0.0f) {  // a pulse of zero area yields zeros
    for (float& value : w) value /= dt * sum;
  }
  auto* convolved = reinterpret_cast<float*>(out->mutableBytes());
  TDconvolve(x.data(), w.data(), convolved, static_cast<unsigned>(x.size()), static_cast<int>(m),
             dt);
  std::copy_n(convolved, x.size(), x.begin());
  return true;
}

// Convolves with one cycle of 1 - cos of the given duration in seconds, cut to m weights.
inline bool convolveWithCosinePulse(std::span<float> x, float dt, float duration, std::int64_t m) {
  constexpr float kTwoPiSingle = 6.2831855f;
  return convolveWithPulse(x, dt, m, [&](float i) {
    const double phase = i * dt * kTwoPiSingle / duration;
    return (1.0 - std::cos(phase)) / duration;
  });
}

// Convolves with a trapezoid whose rise, top and fall last the given seconds. Returns false if one
// of them is negative or NaN.
inline bool convolveWithTrapezoid(std::span<float> x, float dt, float rise, float top, float fall) {
  const auto count = [dt](float t) { return std::int64_t{truncInt32(t / dt + 0.5)}; };
  const std::int64_t nRise = count(rise), nTop = count(top), nFall = count(fall);
  if (nRise < 0 || nTop < 0 || nFall < 0) return false;
  const auto fallBegins = static_cast<float>(nRise + nTop);
  return convolveWithPulse(x, dt, nRise + nTop + nFall, [&](float i) {
    if (i < static_cast<float>(nRise)) return i * dt / rise;
    // The top has one weight more than nTop, unless there is no fall; that is intended.
    return i <= fallBegins ? 1.0f : 1.0f - (i - fallBegins) * dt / fall;
  });
}

}  // namespace krosac

#endif
