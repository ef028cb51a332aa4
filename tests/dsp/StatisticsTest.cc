#include "krosac/dsp/Statistics.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <functional>
#include <limits>
#include <random>
#include <vector>

namespace krosac {
namespace {

using Values = std::vector<float>;

constexpr float kInfinity = std::numeric_limits<float>::infinity();
constexpr float kNan = std::numeric_limits<float>::quiet_NaN();
constexpr float kBig = std::numeric_limits<float>::max();

TEST(Statistics, ExtremaMeanAndSum) {
  Values x = {2, -3, kNan, 7, 1, -2e30f, 2e30f};
  EXPECT_EQ(vmax(&x[0], 5), 7.0f);
  EXPECT_EQ(vmin(&x[0], 5), -3.0f);
  EXPECT_EQ(vmax(&x[5], 1), -1e30f);
  EXPECT_EQ(vmin(&x[6], 1), 1e30f);
  for (const auto function : {vmax, vmin, vmean}) EXPECT_EQ(function(nullptr, 0), -12345.0f);
  EXPECT_EQ(vmax(nullptr, -4), -1e30f);
  EXPECT_EQ(vmin(nullptr, -4), 1e30f);
  EXPECT_EQ(vmean(nullptr, -4), 0.0f);
  x.assign(10002, 1.0f);
  x[0] = 16777216.0f;  // 2^24 swallows each 1 in single precision
  EXPECT_EQ(vmean(x.data(), 128), 131072.0f);
  x[0] = 1e17f;  // swallows each 1 in double precision
  x.back() = -1e17f;
  EXPECT_EQ(kahanSum(x.data(), 10002), 10000.0f);
  for (const int n : {1, 0, -5}) EXPECT_EQ(kahanSum(x.data(), n), 1e17f) << n;
  EXPECT_EQ(kahanSum(nullptr, 0), 0.0f);
}

// The array as text, which makes NaN equal NaN and tells -0 from 0.
std::string asText(const Values& x) {
  return testing::PrintToString(x);
}

// Both medians against a copy sorted without NaN.
void expectMedian(const Values& x) {
  const int n = static_cast<int>(x.size());
  Values plain = x, sorted = x, untouched = x;
  const auto nans = std::partition(plain.begin(), plain.end(), [](float v) { return v == v; });
  std::sort(plain.begin(), nans);
  std::fill(nans, plain.end(), kNan);
  const double twice = double{plain[(n - 1) / 2]} + double{plain[n / 2]};
  float median1 = 0, median2 = 0;
  mdian1(sorted.data() - 1, n, &median1);
  mdian2(untouched.data() - 1, n, &median2);
  for (const float median : {median1, median2})
    EXPECT_TRUE(median == static_cast<float>(twice / 2) || (median != median && twice != twice))
        << median << " " << twice / 2 << " in " << asText(x);
  EXPECT_EQ(asText(untouched), asText(x));
  for (int i = 0; i < n; ++i)
    EXPECT_TRUE(sorted[i] == plain[i] || (std::isnan(sorted[i]) && std::isnan(plain[i])));
}

TEST(Statistics, Medians) {
  std::mt19937 random(3);
  std::normal_distribution<float> normal;
  const float odd[] = {kBig, -kBig, kInfinity, -kInfinity, kNan, -0.0f, 1.0f, 1.0f};
  const std::function<float()> kinds[] = {
      [&] { return normal(random); },
      [&] { return std::round(normal(random)); },
      [&] { return std::exp(30.0f * normal(random)); },
      [&] { return (random() % 2 ? 1e6f : -1.0f) + 1e-3f * normal(random); },
      [&] { return std::ldexp(random() % 2 ? 1.0f : -1.0f, int(random() % 270) - 145); },
      [&] { return odd[random() % 8]; },
      [&] { return random() % 2 ? normal(random) : odd[random() % 8]; }};
  for (const auto& kind : kinds) {
    for (int n = 1; n <= 80; ++n) {
      Values x(n);
      std::generate(x.begin(), x.end(), kind);
      expectMedian(x);
    }
  }
  expectMedian({1, 1, 1, 1, 5, 7, 9});
  expectMedian({kNan, kNan, kNan, 1});
  float median1 = 0, median2 = 0;
  mdian1(nullptr, 0, &median1);
  mdian2(nullptr, -1, &median2);
  EXPECT_EQ(median1 + median2, -24690.0f);
}

}  // namespace
}  // namespace krosac
