#include "krosac/timegeo/Ellipticity.h"

#include <gtest/gtest.h>

#include <cmath>
#include <numbers>
#include <numeric>

namespace krosac {
namespace {

TEST(Ellipticity, CoefficientTable) {
  // The sums over the look-up rows in hundredths.
  const int sums[8] = {-2144, -2124, -2122, -2130, -2098, -2091, -2122, -1950};
  for (int j = 0; j < 8; ++j) {
    const float* row = pEllipCoeff + 63 * j;
    EXPECT_EQ(std::lround(100 * std::accumulate(row, row + 63, 0.0)), sums[j]) << "row " << j;
  }
}

TEST(Ellipticity, PathsWorkedOutApart) {
  // One path for each depth row and one from above the surface, in double precision throughout.
  const double cases[][6] = {{38.3, 142.4, 29, 35.6, 51.4, -0.142163679},
                             {64, -150, 80, 34.05, -118.25, 0.066872136},
                             {-58, -26, 140, -77.8, 166.7, -0.681205112},
                             {-6.2, 106.8, 250, 27.7, 85.3, 0.037541040},
                             {-17.7, -178.1, 420, -43.5, 172.6, -0.382010133},
                             {-21.2, -179.3, 560, -33.4, -70.6, 0.061989470},
                             {0.3, -91, 650, 64.1, -21.9, -0.313777185},
                             {54.9, 153.3, -2, 39.9, 116.4, -0.037053919}};
  for (const auto& c : cases) {
    float p[5];
    for (int i = 0; i < 5; ++i) p[i] = static_cast<float>(c[i]);
    // Single precision leaves the distance good to 1e-5 degrees, where the table changes by 0.2 s
    // in a degree at most.
    EXPECT_NEAR(ellipCorrection(p[0], p[1], p[2], p[3], p[4]), c[5], 2e-6) << "depth " << c[2];
  }
}

// From the pole tau0 alone acts, whatever the azimuth.
float fromPole(double distance, float depth) {
  const double degree = std::numbers::pi / 180;
  const double latitude = std::atan(std::tan((90 - distance) * degree) / 0.9966102) / degree;
  return ellipCorrection(90, 0, depth, static_cast<float>(latitude), 0);
}

TEST(Ellipticity, EdgesHoldBeyond) {
  EXPECT_NEAR(fromPole(52.5, 17.5f), (-0.62 - 0.58 - 0.41 - 0.39) / 4, 2e-6);
  EXPECT_NEAR(fromPole(150, 0), -0.55, 2e-6);
  EXPECT_EQ(fromPole(110, 600), fromPole(150, 600));
  for (const float depth : {700.0f, 1e30f, HUGE_VALF}) {
    EXPECT_NEAR(fromPole(52.5, depth), (-0.46 - 0.39) / 2, 2e-6) << depth;
    EXPECT_EQ(fromPole(150, depth), fromPole(110, 700)) << depth;
  }
  EXPECT_TRUE(std::isnan(fromPole(NAN, 0)) && std::isnan(fromPole(50, NAN)));
  EXPECT_FALSE(std::isfinite(ellipCorrection(0, 0, -HUGE_VALF, 30, 30)));
}

}  // namespace
}  // namespace krosac
