#include "krosac/timegeo/Ellipticity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>
#include <random>

#include "krosac/timegeo/GreatCircle.h"

namespace krosac {
namespace {

constexpr double kDegree = std::numbers::pi / 180;
const double kHalfSqrt3 = std::sqrt(0.75);

// From the pole tau0 alone acts, whatever the azimuth.
float fromPole(double distance, float depth) {
  const double latitude = std::atan(std::tan((90 - distance) * kDegree) / 0.9966102) / kDegree;
  return ellipCorrection(90, 0, depth, static_cast<float>(latitude), 0);
}

TEST(Ellipticity, TableAndValuesByHand) {
  // The hundredths' sums over each look-up row.
  const int sums[8] = {-2144, -2124, -2122, -2130, -2098, -2091, -2122, -1950};
  for (int j = 0; j < 8; ++j) {
    const float* row = pEllipCoeff + 63 * j;
    EXPECT_EQ(std::lround(100 * std::accumulate(row, row + 63, 0.0)), sums[j]) << "row " << j;
  }
  // Distances are good to 1e-5 degrees, and tau0 changes by at most 0.3 s in 5 degrees.
  EXPECT_NEAR(fromPole(52.5, 0), (-0.62 - 0.39) / 2, 2e-6);
  EXPECT_NEAR(fromPole(52.5, 17.5f), (-0.62 - 0.58 - 0.41 - 0.39) / 4, 2e-6);
  // A source at the equator and a station in the east: -tau0 / 2 - sqrt(3) / 2 tau2.
  EXPECT_NEAR(ellipCorrection(0, 0, 0, 0, 52.5f), 0.505 / 2 + kHalfSqrt3 * 0.46, 2e-6);
  // Beyond the edges counts as the edge: 100 degrees, and row 7 for 700 km.
  EXPECT_NEAR(fromPole(150, 0), -0.55, 2e-6);
  EXPECT_EQ(fromPole(110, 600), fromPole(150, 600));
  for (const float depth : {700.0f, 1e30f, HUGE_VALF}) {
    EXPECT_NEAR(fromPole(52.5, depth), (-0.46 - 0.39) / 2, 2e-6) << depth;
    EXPECT_EQ(fromPole(150, depth), fromPole(150, 700)) << depth;
  }
  EXPECT_TRUE(std::isnan(fromPole(NAN, 0)) && std::isnan(fromPole(50, NAN)));
  EXPECT_FALSE(std::isfinite(ellipCorrection(0, 0, -HUGE_VALF, 30, 30)));
}

TEST(Ellipticity, AgreesWithTheFormulaWrittenInFull) {
  std::mt19937 random(19700531);
  const auto within = [&](float least, float most) {
    return std::uniform_real_distribution<float>(least, most)(random);
  };
  for (int compared = 0; compared < 10000;) {
    const float lat = within(-90, 90), lon = within(-180, 180), depth = within(-5, 700);
    const float staLat = within(-90, 90), staLon = within(-180, 180);
    float distance, azimuth;
    delta_az(&lat, &lon, &staLat, &staLon, &distance, &azimuth);
    // The correction jumps at the nodes, where rounding may choose either side.
    if (distance >= 99.999f || std::fabs(std::remainder(distance, 5.0f)) < 1e-3) continue;
    ++compared;
    int j = 0;
    for (int row = 0; row < 7; ++row) j = depth >= depths[row] ? row : j;
    const int i = static_cast<int>(distance / 5);
    const double right = distance / 5.0 - i, left = 1 - right;
    const double down = (depth - depths[j]) / (depths[j + 1] - depths[j]), up = 1 - down;
    const auto tau = [&](int k) {
      const float *here = pEllipCoeff + 63 * j + 3 * i + k, *below = here + 63;
      return left * (up * here[0] + down * here[3]) + right * (down * below[0] + up * below[3]);
    };
    const double t = (90 - lat) * kDegree, z = azimuth * kDegree;
    const double truth = tau(0) * (1 + 3 * std::cos(2 * t)) / 4 +
                         kHalfSqrt3 * (tau(1) * std::sin(2 * t) * std::cos(z) +
                                       tau(2) * std::sin(t) * std::sin(t) * std::cos(2 * z));
    // A few roundings of single precision on values up to 1 s, and on weights near 20 nodes.
    ASSERT_NEAR(ellipCorrection(lat, lon, depth, staLat, staLon), truth, 5e-6);
  }
}

}  // namespace
}  // namespace krosac
