#include "krosac/dsp/Decimation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <csignal>
#include <span>

#include "dsp/Noise.h"
#include "dsp/PlainLoops.h"

namespace krosac {
namespace {

TEST(Decimation, KeepsWholeBlocksOfTheSignal) {
  const std::span<const float> filters[] = {DECIMATEby2, DECIMATEby3, DECIMATEby4, DECIMATEby5};
  for (int factor = 2; factor <= 5; ++factor) {
    const auto h = filters[factor - 2];
    for (int n = 0; n <= 600; n += n < 300 ? 1 : 37) {
      const std::vector<float> x = noise(n);
      std::vector<float> y(n / factor), expected = y;
      std::int32_t length = -1;
      plain::decimate(h.data(), std::ssize(h), factor, x.data(), n - n % factor, expected.data());
      EXPECT_EQ(decimateSignal(factor, n, x.data(), y.data(), &length), 0);
      ASSERT_EQ(length, n / factor);
      ASSERT_EQ(y, expected) << n << " by " << factor;
    }
  }
}

TEST(Decimation, StreamInBlocksEqualsOneShot) {
  for (const int factor : {1, 2, 5, 9}) {
    std::vector<float> x = noise(120 * factor), h = noise(7), delay(7), y(120), expected(120);
    int done = 0;
    for (const int blocks : {1, 0, 7, 50, 2, 60}) {
      std::int32_t length = -1;
      decimorig(factor, 7, h.data(), delay.data(), blocks * factor, &x[done * factor], &y[done],
                &length);
      ASSERT_EQ(length, blocks);
      done += blocks;
    }
    // Seen backward, an output starts at its newest sample, the filter's centre, and goes on to
    // older ones.
    std::ranges::reverse(x);
    std::ranges::reverse(y);
    h.insert(h.begin(), 6, 0.0f);
    plain::decimate(h.data(), 13, factor, x.data(), std::ssize(x), expected.data());
    EXPECT_EQ(y, expected) << factor;
  }
}

TEST(Decimation, RefusedFactorsAndEmptyInputs) {
  std::int32_t length = 77;
  const auto lengthOf = [&](auto function, int factor, int n) {
    function(factor, 95, DECIMATEby2, nullptr, n, nullptr, nullptr, &length);
    return length;
  };
  for (const int factor : {INT_MIN, -1, 0, 6})
    EXPECT_EQ(decimateSignal(factor, 10, nullptr, nullptr, &length), 1);
  EXPECT_EQ(decimateSignal(1, 10, nullptr, nullptr, &length), 0);
  EXPECT_EQ(length, 77);
  for (const int n : {0, -2, INT_MIN}) {
    EXPECT_EQ(decimateSignal(2, n + 1, nullptr, nullptr, &length) + length, 0);
    EXPECT_EQ(lengthOf(decim, 2, n) + lengthOf(decim, n, 10), 0);
    EXPECT_EQ(lengthOf(decimorig, 2, n) + lengthOf(decimorig, n, 10), 0);
  }
  const float x[3] = {1, 2, 3};
  float y = 0;
  decim(INT_MAX, 3, x, nullptr, 3, x, &y, &length);
  EXPECT_TRUE(length == 1 && y == 2 * 1 + 3 * 2);
  EXPECT_EXIT(lengthOf(decimorig, 3, 10), testing::KilledBySignal(SIGABRT),
              "\\(num_inp % factor_M == 0\\), function decimorig, file adecimateSignal");
}

}  // namespace
}  // namespace krosac
