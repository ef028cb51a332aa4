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
    for (int n = 0; n <= 600; n += n < 10 ? 1 : 37) {
      const std::vector<float> x = noise(n);
      std::vector<float> y(n / factor), expected = y;
      std::int32_t length = -1;
      plain::decimate(h.data(), std::ssize(h), factor, x.data(), n - n % factor, expected.data());
      EXPECT_EQ(decimateSignal(factor, n, x.data(), y.data(), &length), 0);
      ASSERT_TRUE(length == n / factor && y == expected) << n << " by " << factor;
    }
  }
}

TEST(Decimation, StreamInBlocksEqualsOneShot) {
  for (const int factor : {1, 5, 9}) {
    std::vector<float> x = noise(60 * factor), h = noise(7), delay(7), y(60), expected(60);
    std::int32_t done = 0, length = -1;
    for (const int blocks : {1, 0, 7, 52}) {
      decimorig(factor, 7, h.data(), delay.data(), blocks * factor, &x[done * factor], &y[done],
                &length);
      ASSERT_EQ(length, blocks);
      done += blocks;
    }
    // In reversed time the newest sample of an output is the centre of the filter.
    std::ranges::reverse(x);
    std::ranges::reverse(y);
    h.insert(h.begin(), 6, 0.0f);
    plain::decimate(h.data(), 13, factor, x.data(), std::ssize(x), expected.data());
    EXPECT_EQ(y, expected) << factor;
  }
}

TEST(Decimation, RefusedFactorsAndEmptyInputs) {
  std::int32_t length = 77;
  for (const int factor : {INT_MIN, 0, 6, 1})
    EXPECT_EQ(decimateSignal(factor, 10, nullptr, nullptr, &length), factor != 1);
  EXPECT_EQ(length, 77) << "factor 1 does not write the length";
  for (const auto& [factor, n] : {std::pair{2, 0}, {2, INT_MIN}, {0, 10}, {INT_MIN, 10}}) {
    std::int32_t streamed = length = 77;
    decim(factor, 95, DECIMATEby2, nullptr, n, nullptr, nullptr, &length);
    decimorig(factor, 95, DECIMATEby2, nullptr, n, nullptr, nullptr, &streamed);
    EXPECT_TRUE(length == 0 && streamed == 0) << factor << " " << n;
  }
  EXPECT_TRUE(decimateSignal(2, -3, nullptr, nullptr, &length) == 0 && length == 0);
  const float x[] = {1, 2, 3};
  float y = 0;
  decim(INT_MAX, 3, x, nullptr, 3, x, &y, &length);
  EXPECT_TRUE(length == 1 && y == 2 * 1 + 3 * 2);
  EXPECT_EXIT(decimorig(3, 95, DECIMATEby2, nullptr, 10, nullptr, nullptr, &length),
              testing::KilledBySignal(SIGABRT),
              "\\(num_inp % factor_M == 0\\), function decimorig, file adecimateSignal");
}

}  // namespace
}  // namespace krosac
