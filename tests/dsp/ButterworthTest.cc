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

TEST(Butterworth, ResponseIsTheDesign) {
  for (const int poles : {2, 3, 4, 7, 8}) {
    for (const bool low : {true, false}) {
      const auto filter = low ? GRLPBUfilter : GRHPBUfilter;
      std::vector<float> x(4096), thrice(4096);
      x[0] = thrice[0] = 1.0f;
      filter(x.data(), 4096, 1, poles, kDt, 12.0f);
      filter(thrice.data(), 4096, 3, poles, kDt, 12.0f);
      EXPECT_EQ(x, thrice) << "three passes are one";
      for (const double f : {0.5, 3.0, 12.0, 20.0, 49.0}) {
        const double warped = std::tan(kPi * f * kDt) / std::tan(kPi * 12 * kDt);
        const double ratio = low ? warped : 1 / warped;
        const double realPole = poles % 2 == 1 ? 1 + ratio * ratio : 1;  // is left out
        std::complex<double> sum;
        for (int j = 0; j < 4096; ++j) sum += double{x[j]} * std::polar(1.0, 2 * kPi * f * kDt * j);
        // Single-precision coefficients move poles near the unit circle by about 1e-5.
        EXPECT_NEAR(std::abs(sum), std::sqrt(realPole / (1 + std::pow(ratio, 2 * poles))), 3e-4)
            << poles << " " << low << " " << f;
      }
    }
  }
}

TEST(Butterworth, ArgumentsThatDoNotFitDoNoHarm) {
  std::vector<float> data = {1, -2, 3, -4};
  for (const int poles : {INT_MIN, 1, 22, INT_MAX}) GRHPBUfilter(&data[0], 4, 2, poles, kDt, 3.0f);
  for (const int npts : {0, INT_MIN}) GRHPBUfilter(&data[0], npts, 2, 4, kDt, 3.0f);
  EXPECT_EQ(data, (std::vector<float>{1, -2, 3, -4}));
  for (const float fc : {0.0f, 75.0f, 1e30f, std::nanf("")})
    GRLPBUfilter(&data[1], 2, 2, 21, kDt, fc);
  EXPECT_EQ(data[0] - data[3], 5.0f) << "only the given samples change";
}

}  // namespace
}  // namespace krosac
