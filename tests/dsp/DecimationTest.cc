#include "krosac/dsp/Decimation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <climits>
#include <csignal>

#include "dsp/Noise.h"

namespace krosac {
namespace {

using Signal = std::vector<float>;

const Signal kTaps[] = {{DECIMATEby2, std::end(DECIMATEby2)},
                        {DECIMATEby3, std::end(DECIMATEby3)},
                        {DECIMATEby4, std::end(DECIMATEby4)},
                        {DECIMATEby5, std::end(DECIMATEby5)}};

int sizeOf(const Signal& x) {
  return static_cast<int>(x.size());
}

// One output at every factor-th sample, every tap asked whether it meets a sample.
Signal plainDecimation(const Signal& x, int factor, const Signal& h, int lead) {
  Signal y;
  for (std::int64_t i = 0; i < sizeOf(x); i += factor) {
    float sum = 0.0f;
    for (int t = 0; t < sizeOf(h); ++t)
      if (i - lead + t >= 0 && i - lead + t < sizeOf(x)) sum += h[t] * x[i - lead + t];
    y.push_back(sum);
  }
  return y;
}

TEST(Decimation, EqualsThePlainSumsBitForBit) {
  for (int factor = 2; factor <= 5; ++factor) {
    const Signal& h = kTaps[factor - 2];
    for (int n = 0; n <= 600; n += n < 300 ? 1 : 37) {
      const Signal x = noise(n);
      Signal y(n / factor);
      std::int32_t length = -1;
      EXPECT_EQ(decimateSignal(factor, n, x.data(), y.data(), &length), 0);
      ASSERT_EQ(length, n / factor);
      ASSERT_EQ(y, plainDecimation({x.begin(), x.end() - n % factor}, factor, h, sizeOf(h) / 2));
    }
  }
  for (const int factor : {1, 2, 3, 7, 49, 50, INT_MAX}) {
    for (const int taps : {0, 1, 2, 7, 80}) {
      const Signal x = noise(50), h = noise(taps);
      Signal y(50);
      std::int32_t length = -1;
      decim(factor, taps, h.data(), nullptr, 50, x.data(), y.data(), &length);
      y.resize(length);
      EXPECT_EQ(y, plainDecimation(x, factor, h, (taps - 1) / 2)) << factor << " " << taps;
    }
  }
}

TEST(Decimation, StreamInBlocksEqualsOneShot) {
  for (const int factor : {1, 2, 5, 9}) {
    const Signal x = noise(120 * factor), h = noise(7);
    Signal delay(7, 0.0f), y(120);
    int done = 0;
    for (const int blocks : {1, 0, 7, 50, 2, 60}) {
      std::int32_t length = -1;
      decimorig(factor, 7, h.data(), delay.data(), blocks * factor, &x[done * factor], &y[done],
                &length);
      ASSERT_EQ(length, blocks);
      done += blocks;
    }
    // Seen backward, a block's output starts at its newest sample and goes on to older ones.
    std::reverse(y.begin(), y.end());
    EXPECT_EQ(y, plainDecimation({x.rbegin(), x.rend()}, factor, h, 0)) << factor;
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
  EXPECT_EXIT(lengthOf(decimorig, 3, 10), testing::KilledBySignal(SIGABRT),
              "\\(num_inp % factor_M == 0\\), function decimorig, file adecimateSignal");
}

}  // namespace
}  // namespace krosac
