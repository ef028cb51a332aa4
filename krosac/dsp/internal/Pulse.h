// Convolution with a pulse of unit area.
#ifndef KROSAC_DSP_INTERNAL_PULSE_H
#define KROSAC_DSP_INTERNAL_PULSE_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <span>

#include "krosac/dsp/Convolution.h"
#include "krosac/platform/ByteBuffer.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {

// Replaces the samples by their convolution with a pulse of m weights, made by weight(i) and scaled
// to unit area. Says whether it did: not for no samples, nor where there is no memory, nor for more
// than 2^24 weights, whose indexes and sum are not exact in single precision.
template <typename Weight>
bool convolveWithPulse(std::span<float> x, float dt, std::int64_t m, Weight weight) {
  constexpr std::int64_t kMostWeights = 1 << 24;
  if (x.empty() || m > kMostWeights) return false;
  const auto pulse = ByteBuffer::zeroed(sizeof(float) * static_cast<std::size_t>(m));
  const auto out = ByteBuffer::zeroed(x.size_bytes());
  if (!pulse || !out) return false;
  const std::span w(reinterpret_cast<float*>(pulse->mutableBytes()), static_cast<std::size_t>(m));
  float sum = 0.0f;
  for (std::size_t i = 0; i < w.size(); ++i)
    sum += w[i] = static_cast<float>(weight(static_cast<float>(i)));
  if (sum != 0.0f) {  // a pulse without area gives zeros
    for (float& value : w) value /= dt * sum;
  }
  auto* convolved = reinterpret_cast<float*>(out->mutableBytes());
  TDconvolve(x.data(), w.data(), convolved, static_cast<unsigned>(x.size()), static_cast<int>(m),
             dt);
  std::copy_n(convolved, x.size(), x.begin());
  return true;
}

// One cycle of 1 - cos that lasts so many seconds, cut to m weights.
inline bool convolveWithCosinePulse(std::span<float> x, float dt, float duration, std::int64_t m) {
  constexpr float kTwoPiSingle = 6.2831855f;
  return convolveWithPulse(x, dt, m, [&](float i) {
    const double phase = i * dt * kTwoPiSingle / duration;
    return (1.0 - std::cos(phase)) / duration;
  });
}

// A trapezoid of three durations in seconds; refused when one of them is negative or no number.
inline bool convolveWithTrapezoid(std::span<float> x, float dt, float rise, float top, float fall) {
  const auto count = [dt](float t) { return std::int64_t{truncInt32(t / dt + 0.5)}; };
  const std::int64_t nRise = count(rise), nTop = count(top), nFall = count(fall);
  if (nRise < 0 || nTop < 0 || nFall < 0) return false;
  const auto fallBegins = static_cast<float>(nRise + nTop);
  return convolveWithPulse(x, dt, nRise + nTop + nFall, [&](float i) {
    if (i < static_cast<float>(nRise)) return i * dt / rise;
    // The top is one weight longer than nTop; where there is no fall that weight is dropped.
    return i <= fallBegins ? 1.0f : 1.0f - (i - fallBegins) * dt / fall;
  });
}

}  // namespace krosac

#endif
