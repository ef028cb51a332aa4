#include "krosac/dsp/Butterworth.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <complex>
#include <numbers>
#include <vector>

namespace krosac {
namespace {

constexpr double kPi = std::numbers::pi;
constexpr float kDt = 0.01f;

TEST(Butterworth, ResponseIsTheDesignAndTwoPassesHaveNoPhase) {
  for (const int poles : {2, 3, 4, 7, 8}) {
    for (const bool low : {true, false}) {
      const auto filter = low ? GRLPBUfilter : GRHPBUfilter;
      std::vector<float> once(4096), three(4096), twice(8192);
      once[0] = three[0] = twice[4096] = 1.0f;
      filter(once.data(), 4096, 1, poles, kDt, 12.0f);
      filter(three.data(), 4096, 3, poles, kDt, 12.0f);
      filter(twice.data(), 8192, 2, poles, kDt, 12.0f);
      EXPECT_EQ(once, three);
      for (const double f : {0.5, 3.0, 12.0, 20.0, 49.0}) {
        const double warped = std::tan(kPi * f * kDt) / std::tan(kPi * 12 * kDt);
        const double ratio = low ? warped : 1 / warped;
        // An odd design lacks its real pole.
        const double missing = poles % 2 == 1 ? 1 + ratio * ratio : 1;
        const double design = std::sqrt(missing / (1 + std::pow(ratio, 2 * poles)));
        std::complex<double> forward, both;
        for (int j = 0; j < 8192; ++j) {
          if (j < 4096) forward += double{once[j]} * std::polar(1.0, 2 * kPi * f * kDt * j);
          both += double{twice[j]} * std::polar(1.0, 2 * kPi * f * kDt * (j - 4096));
        }
        // Single-precision coefficients move poles near the unit circle by some 1e-5.
        EXPECT_NEAR(std::abs(forward), design, 3e-4) << poles << " " << low << " " << f;
        EXPECT_LE(std::abs(both - design * design), 8e-4) << poles << " " << low << " " << f;
      }
    }
  }
}

TEST(Butterworth, ArgumentsThatDoNotFitDoNoHarm) {
  for (const auto filter : {GRLPBUfilter, GRHPBUfilter}) {
    std::vector<float> data = {1, -2, 3, -4};
    for (const int poles : {INT_MIN, 0, 1, 22, INT_MAX}) filter(&data[0], 4, 2, poles, kDt, 3.0f);
    for (const int npts : {0, -1, INT_MIN}) filter(&data[0], npts, 2, 4, kDt, 3.0f);
    EXPECT_EQ(data, (std::vector<float>{1, -2, 3, -4}));
    for (const float fc : {0.0f, -1.0f, 50.0f, 1e30f, std::nanf("")}) {
      filter(&data[1], 2, 2, 21, kDt, fc);
      EXPECT_EQ(data[0] - data[3], 5.0f) << fc;
    }
  }
}

}  // namespace
}  // namespace krosac
