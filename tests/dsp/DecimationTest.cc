#include "krosac/dsp/Decimation.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <csignal>
#include <numbers>
#include <random>
#include <vector>

namespace krosac {
namespace {

using Signal = std::vector<float>;

const Signal kTaps[] = {{std::begin(DECIMATEby2), std::end(DECIMATEby2)},
                        {std::begin(DECIMATEby3), std::end(DECIMATEby3)},
                        {std::begin(DECIMATEby4), std::end(DECIMATEby4)},
                        {std::begin(DECIMATEby5), std::end(DECIMATEby5)}};

Signal noise(std::size_t n) {
  std::mt19937 random(static_cast<unsigned>(n));
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  Signal x(n);
  for (float& value : x) value = uniform(random);
  return x;
}

// One output at every factor-th sample, every tap asked whether it meets a sample.
Signal plainDecimation(const Signal& x, int factor, const Signal& h, int lead) {
  Signal y;
  for (int i = 0; i < static_cast<int>(x.size()); i += factor) {
    float sum = 0.0f;
    for (int t = 0; t < static_cast<int>(h.size()); ++t) {
      const int j = i - lead + t;
      if (j >= 0 && j < static_cast<int>(x.size())) sum += h[t] * x[j];
    }
    y.push_back(sum);
  }
  return y;
}

TEST(Decimation, EqualsThePlainSumsBitForBit) {
  for (int factor = 2; factor <= 5; ++factor) {
    const Signal& h = kTaps[factor - 2];
    const int centre = static_cast<int>(h.size()) / 2;
    for (int n = 0; n <= 600; n += n < 300 ? 1 : 37) {
      const Signal x = noise(n);
      const Signal whole(x.begin(), x.end() - n % factor);
      Signal y(n / factor);
      std::int32_t length = -1;
      EXPECT_EQ(decimateSignal(factor, n, x.data(), y.data(), &length), 0);
      ASSERT_EQ(length, n / factor);
      ASSERT_EQ(y, plainDecimation(whole, factor, h, centre)) << factor << " " << n;

      y.assign((n + factor - 1) / factor, 9.0f);
      decim(factor, 2 * centre + 1, h.data(), nullptr, n, x.data(), y.data(), &length);
      ASSERT_EQ(length, static_cast<int>(y.size()));
      ASSERT_EQ(y, plainDecimation(x, factor, h, centre)) << factor << " " << n;
    }
  }
}

TEST(Decimation, UnsymmetricFiltersAndLargeFactors) {
  const Signal x = noise(50), h = {1, 2, 4, 8};
  for (const int factor : {1, 7, 49, 50, 2147483647}) {
    Signal y(50, 9.0f);
    std::int32_t length = -1;
    decim(factor, 4, h.data(), nullptr, 50, x.data(), y.data(), &length);
    y.resize(length);
    EXPECT_EQ(y, plainDecimation(x, std::min(factor, 1000), h, 1)) << factor;
  }
}

// Flat pass band, empty stop band: the tables' own promise, checked on the taps alone.
TEST(Decimation, TablesKeepThePassBandAndStopTheRest) {
  for (int factor = 2; factor <= 5; ++factor) {
    const Signal& h = kTaps[factor - 2];
    const int centre = static_cast<int>(h.size()) / 2;
    for (double f = 0.0; f <= 1.0; f += 0.0005) {  // in units of the old Nyquist frequency
      double gain = 0.0;
      for (int t = 0; t < static_cast<int>(h.size()); ++t)
        gain += h[t] * std::cos(std::numbers::pi * f * (t - centre));
      if (f <= 0.9 / factor) {
        EXPECT_NEAR(gain, 1.0, 0.0171) << factor << " " << f;
      } else if (f >= 1.0 / factor) {
        EXPECT_NEAR(gain, 0.0, 0.00418) << factor << " " << f;  // -47.6 dB
      }
    }
  }
}

TEST(Decimation, ConstantStaysConstantInsideAndSinksAtTheStart) {
  for (int factor = 2; factor <= 5; ++factor) {
    const Signal& h = kTaps[factor - 2];
    const int half = static_cast<int>(h.size()) / 2;
    const int n = 400 * factor;
    const Signal x(n, 3.0f);
    Signal y(400);
    std::int32_t length = 0;
    decimateSignal(factor, n, x.data(), y.data(), &length);
    for (int i = half / factor + 1; i * factor + half < n; ++i) ASSERT_NEAR(y[i], 3.0, 1e-5) << i;
    // The first output sees the centre tap and one of two equal halves.
    EXPECT_NEAR(y[0], 3.0 * (1.0 + h[half]) / 2.0, 1e-5);
  }
}

TEST(Decimation, StreamInBlocksEqualsOneShot) {
  for (int factor = 2; factor <= 5; ++factor) {
    Signal h = kTaps[factor - 2];
    h[3] += 0.5f;  // tells a reversed filter
    const int taps = static_cast<int>(h.size());
    const Signal x = noise(120 * factor);
    Signal delay(taps, 0.0f), y(120);
    int done = 0;
    for (const int blocks : {1, 0, 7, 50, 2, 60}) {
      std::int32_t length = -1;
      decimorig(factor, taps, h.data(), delay.data(), blocks * factor, x.data() + done * factor,
                y.data() + done, &length);
      ASSERT_EQ(length, blocks);
      done += blocks;
    }
    ASSERT_EQ(done, 120);
    // Seen backward, a block's output starts at its newest sample and goes on to older ones.
    Signal expected = plainDecimation({x.rbegin(), x.rend()}, factor, h, 0);
    std::reverse(expected.begin(), expected.end());
    ASSERT_EQ(y, expected) << factor;
  }
}

TEST(Decimation, BlockLongerThanTheDelayLineKeepsTheNewestSamples) {
  const Signal x = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10}, h = {1, 10};
  Signal delay(2, 0.0f), y(2);
  std::int32_t length = 0;
  decimorig(5, 2, h.data(), delay.data(), 10, x.data(), y.data(), &length);
  EXPECT_EQ(y, (Signal{45, 100}));
  EXPECT_EQ(delay, (Signal{10, 9}));
  decimorig(5, 0, h.data(), nullptr, 10, x.data(), y.data(), &length);
  EXPECT_EQ(y, (Signal{0, 0}));
}

TEST(Decimation, RefusedFactorsAndEmptyInputs) {
  std::int32_t length = 77;
  for (const int factor : {-2147483647 - 1, -1, 0, 6})
    EXPECT_EQ(decimateSignal(factor, 10, nullptr, nullptr, &length), 1);
  EXPECT_EQ(decimateSignal(1, 10, nullptr, nullptr, &length), 0);
  EXPECT_EQ(length, 77);
  for (const int n : {1, 0, -1, -2147483647 - 1}) {
    EXPECT_EQ(decimateSignal(2, n, nullptr, nullptr, &length), 0);
    EXPECT_EQ(length, 0);
  }
  for (const int factor : {0, -1, -3}) {
    length = 77;
    decim(factor, 95, DECIMATEby2, nullptr, 10, nullptr, nullptr, &length);
    EXPECT_EQ(length, 0);
    length = 77;
    decimorig(factor, 95, DECIMATEby2, nullptr, 10, nullptr, nullptr, &length);
    EXPECT_EQ(length, 0);
  }
  length = 77;
  decimorig(3, 95, DECIMATEby2, nullptr, -6, nullptr, nullptr, &length);
  EXPECT_EQ(length, 0);
}

TEST(DecimationDeathTest, StreamOfBrokenBlocksStopsTheProcess) {
  std::int32_t length = 0;
  EXPECT_EXIT(decimorig(3, 95, DECIMATEby2, nullptr, 10, nullptr, nullptr, &length),
              testing::KilledBySignal(SIGABRT),
              "\\(num_inp % factor_M == 0\\), function decimorig, file adecimateSignal");
}

}  // namespace
}  // namespace krosac
