#include <utility>

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr float kDelta = 0.1f;

Samples scaled(Samples x, float factor) {
  for (float& value : x) value *= factor;
  return x;
}

TEST(SacObjectDeconvolution, OfADelayedCopyIsItsDelay) {
  Samples w(100), delayed(100);
  for (int j = 0; j < 40; ++j) w[j] = delayed[j + 40] = std::pow(0.5f, static_cast<float>(j));
  const auto s = traceOf(delayed, kDelta);
  s->WaterLevelDeconWith_wlevel_tshift(*traceOf(w, kDelta), 0, 20 * kDelta);
  Reals spike(100);
  spike[60] = 1;
  expectSamples(*s, spike);
}

TEST(SacObjectDeconvolution, HoldsTheDivisorsPowerAboveTheWater) {
  constexpr float kLevel = 0.3f, kA = 4, kShift = 1.7f;
  const Samples u = richNoise(100);
  for (const int otherCount : {60, 300}) {
    SCOPED_TRACE(otherCount);
    const auto s = traceOf(u, kDelta), iterated = traceOf(u, kDelta),
               other = traceOf(richNoise(otherCount), 9);
    s->WaterLevelDeconWith_wlevel_tshift_gwidth(*other, kLevel, kShift, kA);
    iterated->iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(*other, kLevel, kShift, kA, -5, 1e9f);
    EXPECT_EQ(imageOf(*iterated), imageOf(*s));
    expectUnchanged(*other, richNoise(otherCount));

    const std::size_t n = otherCount < 128 ? 128 : 512;
    Spectrum r = slowSpectrum(u, n);
    const Spectrum w = slowSpectrum(cutTo(richNoise(otherCount), u.size()), n);
    double greatest = 0;
    for (const Complex bin : w) greatest = std::max(greatest, std::norm(bin));
    for (std::size_t k = 0; k <= n / 2; ++k) {
      const double omega = 2 * kPi * static_cast<double>(k) / (static_cast<double>(n) * kDelta);
      const double low = std::exp(-omega * omega / (4.0 * kA * kA));
      // At zero and Nyquist frequency the numerator is squared, neither shifted nor low-passed.
      r[k] *= k % (n / 2) ? std::conj(w[k]) * std::polar(low, omega * kShift) : r[k];
      r[k] /= std::max(kLevel * greatest, std::norm(w[k]));
    }
    expectSamples(*s, slowInverse(r), 5e-6);  // omega tshift up to 50 rad in single precision
  }
  const auto s = traceOf(u);
  s->WaterLevelDeconWith_wlevel_tshift(*traceOf(Samples(20)), 0.1f, 0);
  expectNotANumber(*s);
}

TEST(SacObjectCorrelation, IsTheDirectSumWithZeroLagAtTimeZero) {
  const struct {
    long count, otherCount, n;
  } rows[] = {{100, 100, 128}, {101, 30, 128}, {100, 300, 512}, {9, 0, 16}};
  for (const auto& [count, otherCount, n] : rows) {
    SCOPED_TRACE(testing::Message() << count << " " << otherCount);
    const Samples a = richNoise(static_cast<int>(count)),
                  b = richNoise(static_cast<int>(otherCount));
    const auto s = traceOf(a, kDelta, 12);
    s->correlateWith(*traceOf(b, 9, 5));
    const long first = (n - count) / 2 - n / 2;
    Reals expected(a.size());
    for (long j = 0; j < count; ++j)
      for (long l = 0; l < std::min(count, otherCount); ++l)
        if (const long i = (l + first + j + n) % n; i < count) expected[j] += double{a[i]} * b[l];
    expectSamples(*s, expected);
    EXPECT_EQ(s->b(), static_cast<float>(first) * kDelta);
    EXPECT_EQ(s->e(), s->b() + static_cast<float>(count - 1) * kDelta);
  }
}

TEST(SacObjectCorrelation, OptimalShiftHasTheSignOfTheReceiversDelay) {
  Samples early(200), late(200), impulse(100), end(100);
  for (std::size_t j = 60; j < 160; ++j) early[j] = late[j + 3] = noise(200)[j];
  impulse[0] = end[64] = 2;
  const struct {
    const Samples receiver, argument;
    double shift, correlation, tolerance = 0.02;  // for the squares at two frequencies
  } rows[] = {{early, late, -3, 1},
              {late, scaled(early, -1), 3, -1},
              {end, impulse, -64, 1, 1e-6},  // of the lags N/2 and -N/2, which are one
              // Two bins of 3, and two squares of the receiver; the last sample counts nowhere.
              {{1, 0}, {3, 0, 7}, 0, (1 + 1 + 2 * 3) / 4.0 / 3, 1e-6}};
  for (const auto& row : rows) {
    const auto receiver = traceOf(row.receiver, kDelta), argument = traceOf(row.argument, 9);
    const auto [shift, correlation] = receiver->GetOptimalShift(*argument);
    EXPECT_EQ(shift, row.shift * double{kDelta});
    EXPECT_NEAR(correlation, row.correlation, row.tolerance);
    const auto energy = [&](const Samples& x) {
      float sum = 0;
      for (std::size_t i = 0; i < row.receiver.size(); ++i) sum += x[i] * x[i];
      return sum;
    };
    EXPECT_EQ(receiver->userValue(9), energy(row.receiver));
    EXPECT_EQ(argument->userValue(9), energy(row.argument));
    expectUnchanged(*receiver, row.receiver);
  }
  for (const auto& nothing : {traceOf(Samples(9)), traceOf({})}) {  // the first of equal lags
    const auto [shift, correlation] = nothing->GetOptimalShift(*traceOf(early));
    EXPECT_EQ(shift, 0.0);
    EXPECT_TRUE(std::isnan(correlation));
  }
}

TEST(SacObjectDeconvolution, ZeroLagGaussianIsFittedBeforeTimeZero) {
  const struct {
    float delta, b;
    int count;
    float sum;  // of the ones from 5 s before time 0
  } rows[] = {{0.125f, -10, 200, 40},
              {0.03125f, -1, 200, 32},
              {0.125f, -10, 50, 10},
              {0.1f, -10, 200, 51}};  // 5 / 0.1f is below 50 in double
  for (const auto& row : rows) {
    // With k = 0 all weights are 1, and every sample loses the sum.
    const auto flat = traceOf(Samples(row.count, 1), row.delta, row.b);
    flat->subtractZeroLagGaussian(0);
    expectSamples(*flat, Reals(row.count, 1 - row.sum), 0);
  }
  const auto emptyWindow = traceOf(Samples(20, 1), 10, -3);
  emptyWindow->subtractZeroLagGaussian(0);
  expectNotANumber(*emptyWindow);
  // A Gaussian that is narrow against DELTA is found by its one sample before time 0.
  Samples x;
  for (int j = -20; j < 20; ++j) x.push_back(7 * std::exp(-4.0f * static_cast<float>(j * j)));
  const auto narrow = traceOf(x, 0.5f, -10), late = traceOf(x, 0.5f, 0.1f);
  narrow->subtractZeroLagGaussian(16);
  for (const float value : samplesIn(*narrow)) EXPECT_NEAR(value, 0, 1e-6);
  late->subtractZeroLagGaussian(16);
  expectUnchanged(*late, x);
}

}  // namespace
}  // namespace krosac
