#include "krosac/dsp/Butterworth.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace krosac {
namespace {

using Signal = std::vector<float>;

constexpr double kPi = std::numbers::pi;
constexpr float kDt = 0.01f;

// The transform at f Hz, with time counted from the sample at.
std::complex<double> transform(const Signal& x, int at, double f) {
  std::complex<double> sum;
  for (int j = 0; j < static_cast<int>(x.size()); ++j)
    sum += double(x[j]) * std::polar(1.0, 2.0 * kPi * f * kDt * (j - at));
  return sum;
}

// A Butterworth amplitude at the warped frequency ratio; an odd design lacks its real pole.
double design(double ratio, int poles) {
  const double missing = poles % 2 == 1 ? 1.0 + ratio * ratio : 1.0;
  return std::sqrt(missing / (1.0 + std::pow(ratio, 2.0 * poles)));
}

TEST(Butterworth, ResponseIsTheDesignAndTwoPassesHaveNoPhase) {
  for (const int poles : {2, 3, 4, 7, 8}) {
    for (const float fc : {3.0f, 12.0f, 35.0f}) {
      for (const bool low : {true, false}) {
        const auto filter = low ? GRLPBUfilter : GRHPBUfilter;
        Signal once(4096), three, twice(8192);
        once[0] = twice[4096] = 1.0f;
        three = once;
        filter(once.data(), 4096, 1, poles, kDt, fc);
        filter(three.data(), 4096, 3, poles, kDt, fc);
        filter(twice.data(), 8192, 2, poles, kDt, fc);
        EXPECT_EQ(once, three);
        for (const double f : {0.0, 0.5, 2.9, 3.0, 5.0, 12.0, 20.0, 35.0, 44.0, 49.0}) {
          SCOPED_TRACE(testing::Message() << poles << " " << fc << " " << f);
          const double ratio = std::tan(kPi * f * kDt) / std::tan(kPi * fc * kDt);
          const double expected = f > 0 || low ? design(low ? ratio : 1.0 / ratio, poles) : 0.0;
          // Single-precision coefficients move poles near the unit circle by some 1e-5.
          EXPECT_NEAR(std::abs(transform(once, 0, f)), expected, 3e-4);
          EXPECT_LE(std::abs(transform(twice, 4096, f) - expected * expected), 8e-4);
        }
      }
    }
  }
}

TEST(Butterworth, ArgumentsThatDoNotFitDoNoHarm) {
  for (const auto filter : {GRLPBUfilter, GRHPBUfilter}) {
    Signal data = {1, -2, 3, -4};
    for (const int poles : {INT_MIN, 0, 1, 22, INT_MAX}) filter(&data[0], 4, 2, poles, kDt, 3.0f);
    for (const int npts : {0, -1, INT_MIN}) filter(data.data(), npts, 2, 4, kDt, 3.0f);
    EXPECT_EQ(data, (Signal{1, -2, 3, -4}));
    for (const float fc : {0.0f, -1.0f, 50.0f, 75.0f, 1e30f, std::nanf("")}) {
      data.assign(66, 1.0f);
      filter(&data[1], 64, 2, 21, kDt, fc);
      EXPECT_EQ(data.front() + data.back(), 2.0f) << fc;
      EXPECT_NE(data, Signal(66, 1.0f)) << fc;
    }
  }
}

}  // namespace
}  // namespace krosac
