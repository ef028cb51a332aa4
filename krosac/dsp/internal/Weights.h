// Small pieces that the spectral operations share.
#ifndef KROSAC_DSP_INTERNAL_WEIGHTS_H
#define KROSAC_DSP_INTERNAL_WEIGHTS_H

#include <algorithm>
#include <cmath>
#include <cstddef>

namespace krosac {

inline constexpr double kHalfPi = 1.5707963267948966;

// A pass band f1 < f < f4 with a rising edge 1 - cos up to f2 and a falling edge cos from f3 on:
// two different shapes, as intended. Later edges override earlier ones.
inline double cosineEdges(float f, float f1, float f2, float f3, float f4) {
  if (f3 <= f && f < f4) return std::cos((f - f3) * kHalfPi / (f4 - f3));
  if (f1 < f && f <= f2) return 1.0 - std::cos((f - f1) * kHalfPi / (f2 - f1));
  return f1 < f && f < f4 ? 1.0 : 0.0;
}

// The Gaussian low-pass of width a at an angular frequency, both in rad/s.
inline double gaussian(double omega, double a) {
  return std::exp(-omega * omega / (4.0 * a * a));
}

// (re + i im) times (a + i b), in double precision.
inline void multiply(float& re, float& im, double a, double b) {
  const double product = re * a - im * b;
  im = static_cast<float>(re * b + im * a);
  re = static_cast<float>(product);
}

// The greatest of the sizes size(0) .. size(count - 1), which are not negative; 0 for none, and NaN
// is passed over. Found in lanes, which a compiler may keep in one vector.
template <typename Size>
float greatestOf(std::size_t count, Size size) {
  constexpr std::size_t kLanes = 32;
  float greatest[kLanes] = {};
  const auto include = [&](std::size_t lane, float value) {
    greatest[lane] = greatest[lane] < value ? value : greatest[lane];
  };
  const std::size_t whole = count - count % kLanes;
  for (std::size_t i = 0; i < whole; i += kLanes)
    for (std::size_t lane = 0; lane < kLanes; ++lane) include(lane, size(i + lane));
  for (std::size_t i = whole; i < count; ++i) include(i - whole, size(i));
  return *std::ranges::max_element(greatest);
}

}  // namespace krosac

#endif
