#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>

#include "dsp/Noise.h"
#include "krosac/platform/LastReason.h"
#include "krosac/series/momentRateFtn.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using Series = uniformSampleTimeSeries;
using testing::ElementsAre;

Ref<Series> seriesOf(const Samples& x, float delta) {
  auto s = make<Series>();
  s->initWithZerosNpts_Delta(static_cast<std::int32_t>(x.size()), delta);
  std::ranges::copy(x, s->dataPointer());
  return s;
}

Samples listOf(const Series& s) {
  return {s.dataPointer(), s.dataPointer() + s.data()->length() / sizeof(float)};
}

TEST(TimeSeries, HasATypeAndTimes) {
  const auto basic = make<timeSeries>();
  basic->init();
  EXPECT_EQ(basic->copyWithZone()->description(), "Basic Time Series\nNPTS:0");
  EXPECT_FALSE(make<Series>()->initWithZerosNpts_Delta(-1, 0.1f));
  EXPECT_STREQ(lastReason(), "-1 samples: no such number or no memory for it");
  const auto s = seriesOf(Samples(100), 0.05f);
  EXPECT_NEAR(s->epochStartTime(), static_cast<double>(std::time(nullptr)), 60.0);
  s->setEpochStartTime(1e9);
  EXPECT_NEAR(s->epochEnd(), 1e9 + 4.95, 8e-7);  // the last bits of the float and of the double
  EXPECT_EQ(s->beginDateTime().description(), "2001-09-09 01:46:40 +0000");

  const auto rate = make<momentRateFtn>();
  rate->initWithZerosNpts_Delta(2, 0.5f);
  for (const float t : {-0.6f, -0.4f, 0.9f, 0.5f, 1.0f, NAN})
    rate->addSpikeAtTimeDelay_Amplitude(t, 3.0f);
  const timeSeries& base = *rate;
  const auto copy = base.copyWithZone();
  rate->zeroAmplitudes();
  EXPECT_EQ(copy->description(), "Moment Rate Function\nNPTS:2");
  EXPECT_THAT(listOf(dynamic_cast<const momentRateFtn&>(*copy)), ElementsAre(3.0f, 6.0f));
}

#define KROSAC_BOTH(ours, theirs)                     \
  {                                                   \
    [](Series& t) { t.ours; }, [](S& s) { s.theirs; } \
  }

// Operations that both classes share, compared with their extrema.
TEST(TimeSeries, DoesWhatASeismogramDoes) {
  const std::pair<void (*)(Series&), void (*)(S&)> rows[] = {
      KROSAC_BOTH(removeMean(), RemoveMean()),
      KROSAC_BOTH(subtractLinearTrend(), SubtractLinearTrend()),
      KROSAC_BOTH(scaleAmplitudes(-2), ScaleAmplitudes(-2)),
      KROSAC_BOTH(squareAmplitudes(), sqrAmplitudes()),
      KROSAC_BOTH(absAmplitudes(), absAmplitudes()),
      KROSAC_BOTH(zeroAmplitudes(), ZeroAmplitudes()),
      KROSAC_BOTH(taper(0.2f), Taper(0.2f)),
      KROSAC_BOTH(taper(), defaultTaper()),
      KROSAC_BOTH(integrate(), Integrate()),
      KROSAC_BOTH(differentiate(), Differentiate()),
      KROSAC_BOTH(LPBUfilter_NPasses_NPoles(3, 2, 4), LPBUfilter_NPasses_NPoles(3, 2, 4)),
      KROSAC_BOTH(HPBUfilter_NPasses_NPoles(3, 1, 6), HPBUfilter_NPasses_NPoles(3, 1, 6)),
      KROSAC_BOTH(cosineTimeFunctionFilterDuration(0.26f), CosineTimeFunctionFilterDuration(0.26f)),
      KROSAC_BOTH(trapezoidFilter(0.4f, 0.2f, 0.5f), TrapezoidFilter(0.4f, 0.2f, 0.5f))};
  for (const auto& [ours, seismograms] : rows) {
    SCOPED_TRACE(&ours - &rows[0].first);
    const auto t = seriesOf(noise(300), 0.05f);
    const auto s = traceOf(noise(300), 0.05f);
    ours(*t);
    seismograms(*s);
    Samples x = listOf(*t), y = samplesIn(*s);
    x.insert(x.end(), {t->min(), t->max(), t->mean(), t->simpleRMS(), t->signalPower() / 10});
    y.insert(y.end(), {s->smin(), s->smax(), s->smean(), s->simpleRMS(), s->signalPower() / 10});
    // SacObject sums means and intercepts in single precision, the series in double precision.
    EXPECT_THAT(x, testing::Pointwise(testing::FloatNear(1e-5f), y));
  }
  Samples uneven(1025, 1.0f);  // a float sum would stop at 2^24
  uneven[0] = 16777216.0f;
  const auto s = seriesOf(uneven, 1.0f), x = seriesOf(noise(30), 0.05f);
  s->computeExtrema();
  EXPECT_EQ(s->mean(), static_cast<float>((16777216.0 + 1024.0) / 1025.0));
  for (const float refused : {-1.0f, NAN}) {
    x->LPBUfilter_NPasses_NPoles(refused, 2, 4);
    x->HPBUfilter_NPasses_NPoles(refused, 2, 4);
    x->cosineTimeFunctionFilterDuration(refused);
    x->trapezoidFilter(1.0f, refused, 1.0f);
  }
  x->cosineTimeFunctionFilterDuration(0.07f);
  EXPECT_TRUE(listOf(*x) == noise(30) && x->max() == 0.0f) << "the extrema do not change either";
}

TEST(TimeSeries, TapersTheFirstSampleToZero) {
  for (const float fraction : {-1.0f, 0.0f, 0.3f, 1.0f, 1.5f, INFINITY}) {
    const auto s = seriesOf(Samples(10, 1.0f), 0.5f);
    s->taper(fraction);
    EXPECT_EQ(s->dataPointer()[0], 0.0f) << fraction;
    // With a fraction of 1 the other samples are a quarter period of cos over the whole series.
    EXPECT_TRUE(fraction != 1.0f || std::abs(s->dataPointer()[5] - std::sqrt(0.5f)) < 1e-6f);
  }
}

TEST(TimeSeries, MeasuresAndLooksUp) {
  const auto s = seriesOf({1.0f, -2.0f, 3.0f, 2.0f}, 0.5f);
  EXPECT_EQ(s->area(), 2.0f);
  EXPECT_EQ(s->centroid(), 5 / 4.0f);
  EXPECT_EQ(seriesOf({1.0f, -1.0f}, 1.0f)->centroid(), -12345.0f);
  const std::array<float, 3> cases[] = {
      {0, 1, 1},    {0.25f, 1, -0.5f},       {0.75f, 1, 0.5f},        {1.25f, 3, 2.5f},
      {1.5f, 3, 2}, {1.51f, -12345, -12345}, {-0.1f, -12345, -12345}, {NAN, -12345, -12345}};
  for (const auto& [t, looked, interpolated] : cases) {
    EXPECT_EQ(s->lookupValueAtRelativeTime(t), looked) << t;
    EXPECT_EQ(s->interpolateValueAtRelativeTime(t), interpolated) << t;
  }
  s->setDelta(0.0f);
  EXPECT_EQ(s->lookupValueAtRelativeTime(0.0f), -12345.0f);
  // On a ramp the value is the time in samples, up to the rounding of the quotient.
  const auto ramp = seriesOf(Samples(400), 0.0f);
  for (int i = 0; i < 400; ++i) ramp->dataPointer()[i] = static_cast<float>(i);
  for (int i = 0; i < 999; ++i) {
    ramp->setDelta(0.01f * static_cast<float>(i + 1));
    EXPECT_NEAR(ramp->interpolateValueAtRelativeTime(std::nextafter(ramp->delta() * 399, 0.0f)),
                399, 1e-3);
  }
}

TEST(TimeSeries, IsSafeWithFewOrNoSamples) {
  const auto bare = make<Series>(), single = seriesOf({4.0f}, 1.0f), cut = seriesOf(noise(7), 1.0f);
  bare->setNpts(5);
  cut->setNpts(1 << 30);  // more than the buffer holds
  for (const auto& s : {cut, single, bare}) {
    for (const auto operation : {&Series::removeMean, &Series::subtractLinearTrend,
                                 &Series::integrate, &Series::differentiate})
      (s.get()->*operation)();
    s->taper();
    s->LPBUfilter_NPasses_NPoles(0.1f, 2, 4);
    s->cosineTimeFunctionFilterDuration(5.0f);
    s->trapezoidFilter(1.0f, 2.0f, 3.0f);
    EXPECT_EQ(s->interpolateValueAtRelativeTime(6.5f), -12345.0f);
  }
  cut->setNpts(-1);
  for (const auto& s : {bare, cut})
    EXPECT_EQ((Samples{s->area(), s->simpleRMS(), s->signalPower(), s->centroid()}),
              (Samples{0.0f, -12345.0f, -12345.0f, -12345.0f}));
}

}  // namespace
}  // namespace krosac
