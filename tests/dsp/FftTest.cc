#include "krosac/dsp/Fft.h"

#include <gtest/gtest.h>

#include <cmath>
#include <complex>
#include <numbers>
#include <random>
#include <vector>

namespace krosac {
namespace {

using Complex = std::complex<double>;

std::vector<float> noise(std::size_t n) {
  std::mt19937 random(static_cast<unsigned>(n));
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  std::vector<float> x(n);
  for (float& value : x) value = uniform(random);
  return x;
}

std::vector<Complex> directTransform(const std::vector<Complex>& x, int sign) {
  const std::size_t n = x.size();
  std::vector<Complex> f(n);
  for (std::size_t k = 0; k < n; ++k)
    for (std::size_t j = 0; j < n; ++j)
      f[k] += x[j] * std::polar(1.0, sign * 2.0 * std::numbers::pi * double(j * k % n) / double(n));
  return f;
}

// Each of the log2(n) passes rounds a value of size about sqrt(n) to single precision twice.
double tolerance(std::size_t n) {
  return 6e-8 * std::sqrt(double(n)) * (2.0 + std::log2(double(n)));
}

TEST(Fft, ComplexTransformMatchesDirectSums) {
  for (std::size_t n = 1; n <= 1024; n *= 2) {
    for (const int sign : {1, -1}) {
      std::vector<float> data = noise(2 * n);
      std::vector<Complex> x(n);
      for (std::size_t j = 0; j < n; ++j) x[j] = {data[2 * j], data[2 * j + 1]};
      const std::vector<Complex> expected = directTransform(x, sign);
      four1(data.data() - 1, n, sign);
      for (std::size_t k = 0; k < n; ++k) {
        ASSERT_NEAR(data[2 * k], expected[k].real(), tolerance(n)) << n << " " << k;
        ASSERT_NEAR(data[2 * k + 1], expected[k].imag(), tolerance(n)) << n << " " << k;
      }
    }
  }
}

TEST(Fft, RealTransformIsPackedAndComesBackTimesHalfTheLength) {
  for (std::size_t n = 2; n <= 1024; n *= 2) {
    const std::vector<float> samples = noise(n);
    const std::vector<Complex> f = directTransform({samples.begin(), samples.end()}, 1);
    std::vector<float> data = samples;
    realft(data.data() - 1, n, 1);
    ASSERT_NEAR(data[0], f[0].real(), tolerance(n)) << n;
    ASSERT_NEAR(data[1], f[n / 2].real(), tolerance(n)) << n;
    for (std::size_t k = 1; k < n / 2; ++k) {
      ASSERT_NEAR(data[2 * k], f[k].real(), tolerance(n)) << n << " " << k;
      ASSERT_NEAR(data[2 * k + 1], f[k].imag(), tolerance(n)) << n << " " << k;
    }
    // Any direction but 1 is the inverse; rounding errors of two transforms, relative to n/2.
    for (const int inverse : {0, -1, 2}) {
      std::vector<float> back = data;
      realft(back.data() - 1, n, inverse);
      for (std::size_t j = 0; j < n; ++j)
        ASSERT_NEAR(back[j] * 2.0 / double(n), samples[j], 1e-6) << n;
    }
  }
}

TEST(Fft, ImpulseIsFlatExactlyAndLateImpulseTurnsForward) {
  std::vector<float> first(64, 0.0f), second(64, 0.0f);
  first[0] = second[1] = 1.0f;
  realft(first.data() - 1, 64, 1);
  realft(second.data() - 1, 64, 1);
  EXPECT_EQ(first[1], 1.0f);
  for (std::size_t k = 0; k < 32; ++k) EXPECT_EQ(first[2 * k], 1.0f) << k;
  for (std::size_t k = 1; k < 32; ++k) EXPECT_EQ(first[2 * k + 1], 0.0f) << k;
  // One sample late at a quarter of the sampling rate: exp(+i*pi/2).
  EXPECT_NEAR(second[32], 0.0, 1e-7);
  EXPECT_NEAR(second[33], 1.0, 1e-7);
}

TEST(Fft, OtherLengthsLeaveTheDataUnchanged) {
  const std::vector<float> samples = noise(12);
  std::vector<float> data = samples;
  for (const unsigned long n : {0ul, 3ul, 5ul, 6ul}) {
    four1(data.data() - 1, n, 1);
    realft(data.data() - 1, n, 1);
    realft(data.data() - 1, n, -1);
    EXPECT_EQ(data, samples) << n;
  }
  realft(data.data() - 1, 1, 1);
  four1(data.data() - 1, 1, 1);
  EXPECT_EQ(data, samples);
}

}  // namespace
}  // namespace krosac
