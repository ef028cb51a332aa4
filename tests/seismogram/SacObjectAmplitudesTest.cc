#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <numeric>

#include "CapturedLog.h"
#include "krosac/dsp/Butterworth.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using S = SacObject;

// Extrema and flag as every operation leaves them that ends with ComputeExtrema.
void expectFinished(const S& s) {
  const Samples x = samplesIn(s);
  ASSERT_FALSE(x.empty());
  const auto count = static_cast<float>(x.size());
  EXPECT_EQ(s.smin(), std::ranges::min(x));
  EXPECT_EQ(s.smax(), std::ranges::max(x));
  EXPECT_EQ(s.smean(), std::accumulate(x.begin() + 1, x.end(), x[0]) / count);
  EXPECT_TRUE(s.mSeisHasChanged());
}

TEST(SacObjectAmplitudes, ExtremaAndPowerOfAWindow) {
  const struct {
    float t1, t2;
    double least, greatest;
    float power;
  } cases[] = {
      {10.0f, 14.0f, -77, 77, 0.5f / 8 * 173},  // the whole trace: from the header
      {10.0f, 15.0f, -9, 6, 0.5f / 8 * 173},    // clamped to the end, but not the whole trace
      {10.4f, 11.9f, -1, 4, 0.5f / 3 * 26},     // indexes 0.8 to 3
      {9.8f, 10.6f, 3, 3, 0.5f * 9},            // -0.4 is 0 too
      {9.0f, 11.0f, -1, 3, 0.5f / 2 * 10},      // from index -2
      {13.5f, 99.0f, 6, 6, 0.5f * 36},
      {0.0f, 9.9f, 3, 3, NAN},  // an empty window before the first sample
      {11.0f, 11.0f, 4, 4, NAN},
      {14.0f, 20.0f, 0, 0, NAN},  // starts right behind the last sample
      {14.6f, 20.0f, 0, 0, 0},
      {NAN, 12.0f, 0, 0, 0},
      {3e9f, 4.5e9f, 0, 0, 0},  // an index beyond 32 bits
  };
  const auto s = traceOf({3, -1, 4, -1, 5, -9, 2, 6}, 0.5f, 10.0f);
  s->GetSacHeader()->DEPMIN = -77.0f;
  s->GetSacHeader()->DEPMAX = 77.0f;
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.t1 << " " << c.t2);
    EXPECT_EQ(s->ComputeMinMaxInRange(c.t1, c.t2), std::pair(c.least, c.greatest));
    const float power = s->ComputePowerFrom_To(c.t1, c.t2);
    EXPECT_TRUE(std::isnan(c.power) ? std::isnan(power) : power == c.power) << power;
  }
  EXPECT_EQ(traceOf({})->ComputeMinMaxInRange(0.0f, 0.0f), std::pair(-12345.0, -12345.0));
  EXPECT_EQ(traceOf({})->ComputeMinMaxInRange(0.0f, 5.0f), std::pair(0.0, 0.0));
}

TEST(SacObjectAmplitudes, SampleBySample) {
  const float root = static_cast<float>(3 * std::sqrt(1.5));
  const std::pair<void (*)(S&), Samples> cases[] = {
      {[](S& s) { s.FlipPolarity(); }, {0, 2, -3}},
      {[](S& s) { s.ScaleByLinearTime(); }, {0, -2, 4.5f}},  // at 0.5, 1 and 1.5
      {[](S& s) { s.ScaleBySquareTime(); }, {0, -2, 6.75f}},
      {[](S& s) { s.ScaleBySquareRootTime(); }, {0, -2, root}},
      {[](S& s) { s.ScaleByDistance(); }, {0, -2469, 3703.5f}},
      {[](S& s) { s.ScaleAmplitudes(0.1f); }, {0, -2 * 0.1f, 3 * 0.1f}},
      {[](S& s) { s.sqrAmplitudes(); }, {0, 4, 9}},
      {[](S& s) { s.absAmplitudes(); }, {0, 2, 3}},
      {[](S& s) { s.ZeroAmplitudes(); }, {0, 0, 0}},
      {[](S& s) { s.binary(); }, {0, -1, 1}}};
  for (const auto& [apply, expected] : cases) {
    const auto s = traceOf({0, -2, 3}, 0.5f, 50.0f);
    s->setDistance(1234.5f);
    apply(*s);
    EXPECT_EQ(samplesIn(*s), expected);
    expectFinished(*s);
    apply(*traceOf({}));
  }
}

TEST(SacObjectAmplitudes, MeanAndReversal) {
  const auto s = traceOf({1, 2, 6});
  s->RemoveMean();
  EXPECT_EQ(samplesIn(*s), (Samples{-2, -1, 3}));
  expectFinished(*s);
  for (Samples samples : {Samples{}, {1}, {1, 2}, {1, 2, 3, 4, 5}}) {
    const auto r = traceOf(samples);
    r->reverseTime();
    std::ranges::reverse(samples);
    EXPECT_EQ(samplesIn(*r), samples);
    EXPECT_TRUE(r->mSeisHasChanged());
    EXPECT_EQ(r->smax(), -12345.0f);
  }
}

TEST(SacObjectAmplitudes, TrendLeavesTheSlopeTimesTheLength) {
  const float dt = 0.25f;
  const std::size_t n = 400;
  Samples x(n);
  for (std::size_t i = 0; i < n; ++i)
    x[i] = 2.0f - 0.125f * static_cast<float>(i) + static_cast<float>(i * i % 13);
  // The least-squares line from centred sums.
  const double mean = std::accumulate(x.begin(), x.end(), 0.0) / n;
  const auto t = [&](std::size_t i) { return (static_cast<double>(i) - (n - 1) / 2.0) * dt; };
  double ty = 0.0, tt = 0.0;
  for (std::size_t i = 0; i < n; ++i) {
    ty += t(i) * (x[i] - mean);
    tt += t(i) * t(i);
  }
  const double slope = ty / tt;
  const auto s = traceOf(x, dt, 1000.0f);
  s->SubtractLinearTrend();
  expectFinished(*s);
  for (std::size_t i = 0; i < n; ++i) {
    // The slope is a float, its time up to 200 s: 3e-8 * 0.5 * 200.
    EXPECT_NEAR(s->GetSacSeis()[i], x[i] - mean - slope * t(i) - slope * n * dt, 1e-5) << i;
  }
  const auto single = traceOf({5});
  single->SubtractLinearTrend();
  EXPECT_EQ(single->smean(), 5.0f);
}

TEST(SacObjectAmplitudes, IntegralAndDerivative) {
  const auto s = traceOf({2, 4, -6, 8}, 0.5f, 3.0f);
  s->Integrate();
  // From 2 / 4 the steps (0.5 + 4) / 4, (4 - 6) / 4 and (-6 + 8) / 4, one sample early.
  EXPECT_EQ(samplesIn(*s), (Samples{1.625f, 1.125f, 1.625f, 1.625f}));
  EXPECT_EQ(s->b(), 3.0f);
  EXPECT_EQ(s->e(), 4.5f);
  EXPECT_EQ(s->GetSacHeader()->IDEP, 5);
  expectFinished(*s);
  s->Differentiate();
  EXPECT_EQ(samplesIn(*s), (Samples{-1, 1, 0, 0}));
  expectFinished(*s);

  // A sum in single precision would stay at 2^26, where floats lie 8 apart.
  Samples ones(1001, 1.0f);
  ones[0] = 0.0f;
  ones[1] = 33554432.0f;
  const auto sum = traceOf(ones, 2.0f);
  sum->Integrate();
  EXPECT_EQ(sum->GetSacSeis()[1000], 67108864.0f + 2 * 998);
  for (const Samples& few : {Samples{}, Samples{4}}) {
    const auto t = traceOf(few);
    t->Differentiate();
    EXPECT_EQ(samplesIn(*t), few);
    t->Integrate();
    EXPECT_EQ(samplesIn(*t), Samples(few.size(), 2.0f));
  }
}

TEST(SacObjectAmplitudes, Tapers) {
  const auto rise = [](double i) { return 1.0 - std::cos(i * std::acos(-1.0) / 8.0); };
  const auto fall = [](double i) { return std::cos(i * std::acos(-1.0) / 8.0); };
  const std::pair<float, std::vector<double>> cases[] = {
      {0.5f, {0, rise(1), rise(2), rise(3), fall(0), fall(1), fall(2), fall(3)}},
      {0.25f, {0, rise(2), rise(4), 1, 1, 1, fall(0), fall(2)}},
      {0.0f, {0, 1, 1, 1, 1, 1, 1, 1}},
      {NAN, {0, 1, 1, 1, 1, 1, 1, 1}}};
  for (const auto& [fraction, weights] : cases) {
    const auto s = traceOf(Samples(8, 1.0f), 1.0f, 100.0f);
    s->Taper(fraction);
    for (std::size_t i = 0; i < 8; ++i)
      EXPECT_FLOAT_EQ(s->GetSacSeis()[i], static_cast<float>(weights[i])) << fraction << " " << i;
    expectFinished(*s);
  }
  CapturedLog captured;
  const auto a = traceOf(Samples(100, 1.0f), 0.5f), b = a->copyWithZone();
  a->setVerbose(1);
  a->Taper(0.05f);
  b->setVerbose(2);
  b->defaultTaper();
  EXPECT_EQ(samplesIn(*a), samplesIn(*b));
  EXPECT_THAT(captured.texts, testing::ElementsAre("Applied a taper with a fraction:5.00e-02 & "
                                                   "duration: 5.00e+01 seconds."));
}

TEST(SacObjectAmplitudes, ZerosAfterAndBeforeATime) {
  enum Where { kAfter, kAfterRamp, kBeforeRamp };
  const Samples ones(8, 1.0f), none;  // none: nothing happens, not even to the flag
  const float third = 1.0f / 3.0f, twoThirds = 2.0f / 3.0f;
  const std::tuple<Where, float, std::int32_t, Samples> cases[] = {
      {kAfter, 12.7f, 0, {1, 1, 1, 1, 0, 0, 0, 0}},  // 2.7 s are cut to 2
      {kAfter, 9.2f, 0, Samples(8)},                 // -0.8 s to 0
      {kAfter, 14.9f, 0, ones},
      {kAfter, 15.0f, 0, none},
      {kAfter, NAN, 0, none},
      {kAfter, 1e30f, 0, none},
      {kAfterRamp, 12.7f, 2, {1, 1, 1, 0.5f, 0, 0, 0, 0}},
      {kAfterRamp, 10.5f, 3, {1, twoThirds, third, 0, 0, 0, 0, 0}},
      {kAfterRamp, 12.0f, -1, {1, 1, 1, 1, 1, 0, 0, 0}},
      {kAfterRamp, 15.0f, 2, ones},
      {kAfterRamp, 15.0f, 1, none},
      {kAfterRamp, 12.0f, INT32_MIN, none},
      {kBeforeRamp, 12.7f, 2, {0, 0, 0, 0, 0, 0.5f, 1, 1}},
      {kBeforeRamp, 9.0f, 3, {twoThirds, 1, 1, 1, 1, 1, 1, 1}},
      {kBeforeRamp, 13.9f, 4, {0, 0, 0, 0, 0, 0.25f, 0.5f, 0.75f}},  // clamped to the end
      {kBeforeRamp, 1e6f, 2, {0, 0, 0, 0, 0, 0, 0, 0.5f}},
      {kBeforeRamp, 5.0f, 2, none},
      {kBeforeRamp, NAN, 2, none},
      {kBeforeRamp, 12.0f, -2, {0, 0, 0, 1, 1, 1, 1, 1}},
      {kBeforeRamp, 12.0f, INT32_MAX, none}};
  for (const auto& [where, t, length, expected] : cases) {
    SCOPED_TRACE(testing::Message() << where << " " << t << " " << length);
    const auto s = traceOf(ones, 0.5f, 10.0f);
    if (where == kAfter) s->ZeroAmplitudesAfterTime(t);
    if (where == kAfterRamp) s->ZeroAmplitudesAfterTime_TaperLength(t, length);
    if (where == kBeforeRamp) s->ZeroAmplitudesBeforeTime_TaperLength(t, length);
    EXPECT_EQ(samplesIn(*s), expected.empty() ? ones : expected);
    if (expected.empty()) {
      EXPECT_FALSE(s->mSeisHasChanged());
    } else {
      expectFinished(*s);
    }
  }
}

TEST(SacObjectFilters, ButterworthLowAndHighPass) {
  Samples x(200);
  for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>(i * i % 17) - 7.0f;
  const auto check = [&](auto filter, auto plain) {
    const auto s = traceOf(x, 0.05f);
    const std::string before = imageOf(*s);
    for (const float corner : {0.0f, -1.0f, NAN}) (*s.*filter)(corner, 2, 4);
    EXPECT_EQ(imageOf(*s), before);
    EXPECT_FALSE(s->mSeisHasChanged());
    Samples expected = x;
    plain(expected.data(), 200, 2, 5, 0.05f, 1.5f);
    (*s.*filter)(1.5f, 2, 5);
    EXPECT_EQ(samplesIn(*s), expected);
    expectFinished(*s);
  };
  check(&S::LPBUfilter_NPasses_NPoles, GRLPBUfilter);
  check(&S::HPBUfilter_NPasses_NPoles, GRHPBUfilter);
}

}  // namespace
}  // namespace krosac
