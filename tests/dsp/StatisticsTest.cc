#include "krosac/dsp/Statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "krosac/dsp/internal/PackedSpectrum.h"

namespace krosac {
namespace {

using Values = std::vector<float>;

TEST(Statistics, ExtremaMeanAndSum) {
  Values x = {2, -3, NAN, 7, 1, -2e30f, 2e30f};
  EXPECT_EQ((Values{vmax(&x[0], 5), vmin(&x[0], 5), vmax(&x[5], 1), vmin(&x[6], 1)}),
            (Values{7, -3, -1e30f, 1e30f}));
  EXPECT_EQ((Values{vmax(nullptr, -4), vmin(nullptr, -4), vmean(nullptr, -4)}),
            (Values{-1e30f, 1e30f, 0}));
  EXPECT_EQ(kahanSum(nullptr, 0), 0.0f);
  for (const auto function : {vmax, vmin, vmean}) EXPECT_EQ(function(nullptr, 0), -12345.0f);
  x.assign(10002, 1.0f);
  x[0] = 16777216.0f;  // 2^24 swallows each 1 in single precision
  EXPECT_EQ(vmean(x.data(), 128), 131072.0f);
  x[0] = 1e17f;  // swallows each 1 in double precision
  x.back() = -1e17f;
  EXPECT_EQ(kahanSum(x.data(), 10002), 10000.0f);
  EXPECT_EQ(kahanSum(x.data(), -5), 1e17f);
}

// The array as text, which does not distinguish NaNs, nor -0 and 0.
std::string asText(Values x) {
  for (float& value : x) value = std::isnan(value) ? NAN : value + 0.0f;
  return testing::PrintToString(x);
}

TEST(Statistics, MediansAreThoseOfACopySortedWithNaNLast) {
  std::mt19937 random(3);
  std::normal_distribution<float> normal;
  const float infinity = HUGE_VALF, big = std::numeric_limits<float>::max();
  const float odd[] = {big, -big, infinity, -infinity, NAN, 0.0f, 1.0f, 1.0f};
  for (int kind = 0; kind < 5; ++kind) {
    for (int n = 1; n <= 80; ++n) {
      Values x(n), median(2);
      for (float& value : x)
        value = kind == 0   ? std::round(normal(random))
                : kind == 1 ? std::exp(30.0f * normal(random))
                : kind == 2 ? (random() % 2 ? 1e6f : -1.0f) + 1e-3f * normal(random)
                : kind == 3 ? std::ldexp(random() % 2 ? 1.0f : -1.0f, int(random() % 270) - 145)
                            : odd[random() % 8];
      Values sorted = x, copy = x;
      std::ranges::sort(sorted, [](float a, float b) { return a < b || (a == a && b != b); });
      mdian2(copy.data() - 1, n, &median[1]);
      EXPECT_EQ(asText(copy), asText(x)) << "mdian2 does not change the array";
      mdian1(copy.data() - 1, n, &median[0]);
      EXPECT_EQ(asText(copy), asText(sorted));
      const double twice = double{sorted[(n - 1) / 2]} + double{sorted[n / 2]};
      EXPECT_EQ(asText(median), asText(Values(2, static_cast<float>(twice / 2)))) << asText(x);
    }
  }
  float first = 0, second = 0;
  mdian1(nullptr, 0, &first);
  mdian2(nullptr, -1, &second);
  EXPECT_TRUE(first == -12345.0f && second == first);
}

TEST(Statistics, GreatestIsFoundInEveryLane) {
  for (const std::size_t count : {0, 1, 31, 32, 33, 100}) {
    for (std::size_t place = 0; place < count; ++place) {
      Values sizes(count, 1.0f);
      sizes[(place + 32) % count] = NAN;  // the next value in the same lane
      sizes[place] = 2.0f;
      EXPECT_EQ(greatestOf(count, [&](std::size_t i) { return sizes[i]; }), 2.0f) << place;
    }
    EXPECT_EQ(greatestOf(count, [](std::size_t) { return NAN; }), 0.0f);
  }
}

}  // namespace
}  // namespace krosac
