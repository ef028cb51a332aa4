#include "krosac/timegeo/Ellipticity.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <numbers>
#include <numeric>

namespace krosac {
namespace {

TEST(Ellipticity, AgreesWithPathsComputedIndependently) {
  // The sum of each row of coefficients, in hundredths, and a path from its depth range (source
  // latitude, longitude and depth, station latitude and longitude, correction in double precision).
  const std::pair<int, std::array<double, 6>> rows[] = {
      {-2144, {38.3, 142.4, 29, 35.6, 51.4, -0.142163679}},
      {-2124, {64, -150, 80, 34.05, -118.25, 0.066872136}},
      {-2122, {-58, -26, 140, -77.8, 166.7, -0.681205112}},
      {-2130, {-6.2, 106.8, 250, 27.7, 85.3, 0.037541040}},
      {-2098, {-17.7, -178.1, 420, -43.5, 172.6, -0.382010133}},
      {-2091, {-21.2, -179.3, 560, -33.4, -70.6, 0.061989470}},
      {-2122, {0.3, -91, 650, 64.1, -21.9, -0.313777185}},
      {-1950, {54.9, 153.3, -2, 39.9, 116.4, -0.037053919}}};
  const float* coefficients = pEllipCoeff;
  for (const auto& [sum, path] : rows) {
    EXPECT_EQ(std::lround(100 * std::accumulate(coefficients, coefficients + 63, 0.0)), sum);
    coefficients += 63;
    float p[5];
    std::copy_n(path.begin(), 5, p);
    // The single-precision distance is accurate to 1e-5 degrees, and the correction changes by at
    // most 0.2 s per degree.
    EXPECT_NEAR(ellipCorrection(p[0], p[1], p[2], p[3], p[4]), path[5], 2e-6) << path[2] << " km";
  }
}

// At the pole tau1 and tau2 vanish.
TEST(Ellipticity, ClampsDistanceAndDepth) {
  const auto fromPole = [](double distance, float depth) {
    const double degree = std::numbers::pi / 180;
    const double latitude = std::atan(std::tan((90 - distance) * degree) / 0.9966102) / degree;
    return ellipCorrection(90, 0, depth, static_cast<float>(latitude), 0);
  };
  EXPECT_NEAR(fromPole(52.5, 17.5f), (-0.62 - 0.58 - 0.41 - 0.39) / 4, 2e-6);
  EXPECT_NEAR(fromPole(150, 0), -0.55, 2e-6);
  for (const float depth : {700.0f, 1e30f, HUGE_VALF})
    EXPECT_NEAR(fromPole(52.5, depth), (-0.46 - 0.39) / 2, 2e-6) << depth;
  EXPECT_TRUE(std::isnan(fromPole(NAN, 0)) && std::isnan(fromPole(50, NAN)));
  EXPECT_FALSE(std::isfinite(ellipCorrection(0, 0, -HUGE_VALF, 30, 30)));
}

}  // namespace
}  // namespace krosac
