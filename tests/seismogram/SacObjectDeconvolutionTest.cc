#include <utility>

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr float kDelta = 0.1f;

Samples cutTo(Samples x, std::size_t n) {
  x.resize(n);
  return x;
}

Samples scaled(Samples x, float factor) {
  for (float& value : x) value *= factor;
  return x;
}

TEST(SacObjectDeconvolution, OfItselfIsTheGaussianPulse) {
  constexpr double kA = 2.5, kScale = 3;
  const auto w = madeTrace(richNoise(100), kDelta);
  for (const double shift : {0.0, 3.0}) {
    const auto s = madeTrace(scaled(richNoise(100), kScale), kDelta);
    s->WaterLevelDeconWith_wlevel_tshift_gwidth(*w, 0, static_cast<float>(shift), kA);
    expectChanged(*s);
    Reals expected;
    for (int j = 0; j < 100; ++j) {
      const double t = j * double{kDelta} - shift;
      // At zero and Nyquist frequency the numerator is squared, neither shifted nor low-passed.
      expected.push_back(kScale * kDelta * kA / std::sqrt(kPi) * std::exp(-kA * kA * t * t) +
                         (kScale * kScale - kScale) / 128 +
                         kScale * kScale * (j % 2 ? -1 : 1) / 128);
    }
    expectSamples(*s, expected);
  }
}

TEST(SacObjectDeconvolution, OfADelayedCopyIsItsDelay) {
  Samples w(100), delayed(100);
  for (int j = 0; j < 40; ++j) w[j] = delayed[j + 40] = std::pow(0.5f, static_cast<float>(j));
  const auto s = madeTrace(delayed, kDelta);
  s->WaterLevelDeconWith_wlevel_tshift(*madeTrace(w, kDelta), 0, 20 * kDelta);
  Reals spike(100);
  spike[60] = 1;
  expectSamples(*s, spike);
}

TEST(SacObjectDeconvolution, FollowsItsRuleAtEveryFrequency) {
  const Samples u = richNoise(100);
  for (const int otherCount : {100, 60, 300}) {
    for (const auto& [level, a] : {std::pair{0.3f, 4.0f}, {0.05f, 1e9f}}) {
      SCOPED_TRACE(testing::Message() << otherCount << " " << level);
      const auto s = madeTrace(u, kDelta), iterated = madeTrace(u, kDelta),
                 unfiltered = madeTrace(u, kDelta), other = madeTrace(richNoise(otherCount), 9);
      s->WaterLevelDeconWith_wlevel_tshift_gwidth(*other, level, 1.7f, a);
      iterated->iterDeconWith_wlevel_tshift_gwidth_nIter_minMF(*other, level, 1.7f, a, -5, 1e9f);
      unfiltered->WaterLevelDeconWith_wlevel_tshift(*other, level, 1.7f);
      EXPECT_EQ(imageOf(*iterated), imageOf(*s));
      EXPECT_EQ(valuesOf(*other), richNoise(otherCount));

      const std::size_t n = otherCount < 128 ? 128 : 512;
      Spectrum r = slowSpectrum(u, n);
      const Spectrum w = slowSpectrum(cutTo(richNoise(otherCount), u.size()), n);
      double greatest = 0;
      for (const Complex bin : w) greatest = std::max(greatest, std::norm(bin));
      for (std::size_t k = 0; k <= n / 2; ++k) {
        const double omega = 2 * kPi * static_cast<double>(k) / (static_cast<double>(n) * kDelta);
        const double low = std::exp(-omega * omega / (4.0 * a * a));
        r[k] *= k == 0 || k == n / 2 ? r[k] : std::conj(w[k]) * std::polar(low, omega * 1.7f);
        r[k] /= std::max(level * greatest, std::norm(w[k]));
      }
      expectSamples(*s, slowInverse(r), 5e-6);  // omega tshift up to 50 rad in single precision
      if (a > 1e6f) expectSamples(*unfiltered, slowInverse(r), 5e-6);
    }
  }
  const auto s = madeTrace(u);
  s->WaterLevelDeconWith_wlevel_tshift(*madeTrace(Samples(20)), 0.1f, 0);
  for (const float value : valuesOf(*s)) EXPECT_TRUE(std::isnan(value));
}

TEST(SacObjectCorrelation, IsTheDirectSumWithZeroLagAtTimeZero) {
  const struct {
    long count, otherCount, n;
  } rows[] = {{100, 100, 128}, {100, 30, 128}, {100, 300, 512}, {128, 128, 256}, {101, 0, 128}};
  for (const auto& [count, otherCount, n] : rows) {
    SCOPED_TRACE(testing::Message() << count << " " << otherCount);
    const Samples a = richNoise(static_cast<int>(count)),
                  b = richNoise(static_cast<int>(otherCount));
    const auto s = madeTrace(a, kDelta, 12);
    s->correlateWith(*madeTrace(b, 9, 5));
    const long first = (n - count) / 2 - n / 2;
    Reals expected(a.size());
    for (long j = 0; j < count; ++j)
      for (long l = 0; l < std::min(count, otherCount); ++l)
        if (const long i = (l + first + j + n) % n; i < count) expected[j] += double{a[i]} * b[l];
    expectSamples(*s, expected);
    expectChanged(*s);
    EXPECT_EQ(s->b(), static_cast<float>(first) * kDelta);
    EXPECT_EQ(s->e(), s->b() + static_cast<float>(count - 1) * kDelta);
  }
}

TEST(SacObjectCorrelation, OptimalShiftHasTheSignOfTheReceiversDelay) {
  Samples early(200), late(200);
  for (std::size_t j = 60; j < 160; ++j) early[j] = late[j + 3] = noise(200)[j];
  const auto energy = [](const Samples& x) {
    float sum = 0;
    for (const float value : x) sum += value * value;
    return sum;
  };
  const Samples shortened = cutTo(early, 150);
  const struct {
    const Samples receiver, argument;
    double shift, correlation;
  } rows[] = {{early, late, -3, 1},
              {late, early, 3, 1},
              {early, scaled(late, -1), -3, -1},
              {late, shortened, 3, std::sqrt(energy(shortened) / energy(late))}};
  for (const auto& row : rows) {
    const auto receiver = madeTrace(row.receiver, kDelta), argument = madeTrace(row.argument, 9);
    const auto [shift, correlation] = receiver->GetOptimalShift(*argument);
    EXPECT_EQ(shift, row.shift * double{kDelta});
    EXPECT_NEAR(correlation, row.correlation, 0.02);  // squares at two frequencies change it
    EXPECT_EQ(receiver->userValue(9), energy(row.receiver));
    EXPECT_EQ(argument->userValue(9), energy(row.argument));
    EXPECT_EQ(valuesOf(*receiver), row.receiver);
    EXPECT_FALSE(receiver->mSeisHasChanged());
  }
}

TEST(SacObjectCorrelation, OptimalShiftSquaresTheReceiverAtBothEndsOfTheSpectrum) {
  for (const int count : {20, 31, 63}) {
    const Samples a = noise(count), b = richNoise(count + 1);
    const auto s = madeTrace(a), other = madeTrace(b);
    const auto [shift, correlation] = s->GetOptimalShift(*other);
    const std::size_t n = 2 * std::bit_floor(b.size());
    Spectrum c = slowSpectrum(a, n);
    const Spectrum w = slowSpectrum(cutTo(b, a.size()), n);
    for (std::size_t k = 0; k <= n / 2; ++k) c[k] *= k % (n / 2) ? std::conj(w[k]) : c[k];
    const Reals lags = slowInverse(c);
    const auto best = std::ranges::max_element(lags, {}, [](double v) { return std::abs(v); });
    const long index = best - lags.begin(), period = std::ssize(lags);
    EXPECT_EQ(shift, static_cast<double>(index < period / 2 ? index : index - period));
    const double energies = double{s->userValue(9)} * other->userValue(9);
    EXPECT_NEAR(correlation, *best / std::sqrt(energies), 2e-6);
  }
  // Of the lags N/2 and -N/2, which are one, the second is given; of equal ones the first.
  Samples first(100), last(100);
  first[0] = last[64] = 2;
  const auto end = madeTrace(last), begin = madeTrace(first), nothing = madeTrace(Samples(9));
  EXPECT_EQ(end->GetOptimalShift(*begin), (std::pair{-64.0, 1.0}));
  for (const auto& s : {nothing, madeTrace({})}) {
    const auto [shift, correlation] = s->GetOptimalShift(*nothing);
    EXPECT_EQ(shift, 0.0);
    EXPECT_TRUE(std::isnan(correlation));
  }
}

TEST(SacObjectDeconvolution, ZeroLagGaussianIsFittedBeforeTimeZero) {
  const struct {
    float delta, b;
    int count;
    float sum;  // of the ones from 5 s before time 0
  } rows[] = {
      {0.125f, -10, 200, 40}, {0.125f, -2, 200, 16}, {0.125f, -10, 30, 0},
      {0.125f, -10, 50, 10},  {0.1f, -10, 200, 51},  // 5 / 0.1f is below 50 in double precision
      {10, -3, 20, NAN}};                            // an empty window
  for (const auto& row : rows) {
    // With k = 0 all weights are 1, and every sample loses the sum.
    const auto flat = madeTrace(Samples(row.count, 1), row.delta, row.b);
    flat->subtractZeroLagGaussian(0);
    EXPECT_TRUE(flat->mSeisHasChanged());
    for (const float value : valuesOf(*flat))
      ASSERT_TRUE(std::isnan(row.sum) ? std::isnan(value) : value == 1 - row.sum)
          << row.delta << " " << row.b << " " << row.count << " " << value;
  }
  // A Gaussian that is narrow against DELTA is found by its one sample before time 0.
  Samples x;
  for (int j = -20; j < 20; ++j) x.push_back(7 * std::exp(-4.0f * static_cast<float>(j * j)));
  const auto narrow = madeTrace(x, 0.5f, -10), late = madeTrace(x, 0.5f, 0.1f);
  narrow->subtractZeroLagGaussian(16);
  for (const float value : valuesOf(*narrow)) EXPECT_NEAR(value, 0, 1e-6);
  late->subtractZeroLagGaussian(16);
  EXPECT_EQ(imageOf(*late), imageOf(*madeTrace(x, 0.5f, 0.1f)));
  EXPECT_FALSE(late->mSeisHasChanged());
}

}  // namespace
}  // namespace krosac
