#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <numbers>
#include <numeric>

#include "dsp/Noise.h"
#include "krosac/collections/momentRateFtn.h"
#include "krosac/dsp/Butterworth.h"

namespace krosac {
namespace {

using Series = uniformSampleTimeSeries;
using Operation = void (*)(Series&);
using testing::ElementsAre;

Ref<Series> seriesOf(const std::vector<float>& x, float delta) {
  auto s = make<Series>();
  s->initWithZerosNpts_Delta(static_cast<std::int32_t>(x.size()), delta);
  std::ranges::copy(x, s->dataPointer());
  return s;
}

std::vector<float> listOf(const Series& s) {
  return {s.dataPointer(), s.dataPointer() + s.data()->length() / sizeof(float)};
}

TEST(TimeSeries, KnowsItsKindAndTimes) {
  const auto basic = make<timeSeries>();
  basic->init();
  EXPECT_EQ(basic->copyWithZone()->description(), "Basic Time Series\nNPTS:0");
  EXPECT_FALSE(make<Series>()->initWithZerosNpts_Delta(-1, 0.1f));
  const auto s = seriesOf(std::vector<float>(100), 0.05f);
  EXPECT_EQ(s->description(), "Uniformly Sampled Time Series\nNPTS:100");
  EXPECT_NEAR(s->epochStartTime(), static_cast<double>(std::time(nullptr)), 60.0);
  EXPECT_EQ(s->beginDateTime().secondsSince1970, s->epochStartTime());
  // The float product is off by less than its last bit, and the doubles by 2.4e-7 s.
  EXPECT_NEAR(s->epochEnd() - s->epochStartTime(), 4.95, 8e-7);
  s->setEpochStartTime(1e9);
  EXPECT_EQ(s->beginDateTime().description(), "2001-09-09 01:46:40 +0000");

  const auto rate = make<momentRateFtn>();
  rate->initWithZerosNpts_Delta(2, 0.5f);
  rate->addSpikeAtTimeDelay_Amplitude(0.5f, 3.0f);
  const timeSeries& base = *rate;
  const auto copy = base.copyWithZone();
  const auto* same = dynamic_cast<const momentRateFtn*>(copy.get());
  ASSERT_TRUE(same);
  rate->zeroAmplitudes();
  EXPECT_EQ(same->description(), "Moment Rate Function\nNPTS:2");
  EXPECT_THAT(listOf(*same), ElementsAre(0.0f, 3.0f));
}

TEST(TimeSeries, ChangesAmplitudes) {
  struct Case {
    Operation operation;
    std::vector<float> result, minMaxMean;
  };
  const std::vector<Case> cases = {
      {[](Series& t) { t.removeMean(); }, {-4, 0, 1, 3}, {-4, 3, 0}},
      {[](Series& t) { t.scaleAmplitudes(-2.0f); }, {6, -2, -4, -8}, {-8, 6, -2}},
      {[](Series& t) { t.squareAmplitudes(); }, {9, 1, 4, 16}, {1, 16, 7.5f}},
      {[](Series& t) { t.absAmplitudes(); }, {3, 1, 2, 4}, {1, 4, 2.5f}},
      {[](Series& t) { t.zeroAmplitudes(); }, {0, 0, 0, 0}, {0, 0, 0}},
      {[](Series& t) { t.differentiate(); }, {8, 2, 4, 4}, {2, 8, 4.5f}},
      // h = 1/4: the sum starts at -0.75 and the first step from there too.
      {[](Series& t) { t.integrate(); },
       {-0.6875f, 0.0625f, 1.5625f, 1.5625f},
       {-0.6875f, 1.5625f, 0.625f}},
  };
  for (std::size_t i = 0; i < cases.size(); ++i) {
    const auto t = seriesOf({-3.0f, 1.0f, 2.0f, 4.0f}, 0.5f);
    cases[i].operation(*t);
    EXPECT_EQ(listOf(*t), cases[i].result) << i;
    EXPECT_EQ((std::vector{t->min(), t->max(), t->mean()}), cases[i].minMaxMean) << i;
  }
  // A float sum would stop at 2^24.
  std::vector<float> uneven(1025, 1.0f), line;
  uneven[0] = 16777216.0f;
  const auto s = seriesOf(uneven, 1.0f);
  s->computeExtrema();
  EXPECT_EQ(s->mean(), static_cast<float>((16777216.0 + 1024.0) / 1025.0));
  // Of a line only the offset is left by which the time has run on: -slope n delta.
  for (int i = 0; i < 50; ++i) line.push_back(7.0f + 3.0f * 0.1f * static_cast<float>(i));
  const auto trend = seriesOf(line, 0.1f);
  trend->subtractLinearTrend();
  for (const float sample : listOf(*trend)) EXPECT_NEAR(sample, -3.0 * 50 * 0.1, 2e-5);

  const auto tapered = seriesOf(std::vector<float>(100, 1.0f), 0.1f);
  tapered->taper(0.2f);
  for (int i = 0; i < 100; ++i) {  // 20 intervals at either end
    const double rise = 1.0 - std::cos(i * std::numbers::pi / 40.0),
                 fall = std::cos((i - 80) * std::numbers::pi / 40.0);
    // Single-precision times near 10 s, over 2 s.
    EXPECT_NEAR(tapered->dataPointer()[i], i <= 20 ? rise : i < 80 ? 1.0 : fall, 2e-6) << i;
  }
}

TEST(TimeSeries, Measures) {
  const auto s = seriesOf({1.0f, -2.0f, 3.0f, 2.0f}, 0.5f);
  EXPECT_FLOAT_EQ(s->simpleRMS(), std::sqrt(4.5f));
  EXPECT_EQ(s->signalPower(), 9.0f);
  EXPECT_EQ(s->area(), 2.0f);
  EXPECT_EQ(s->centroid(), (-1.0f + 3.0f + 3.0f) / 4.0f);
  EXPECT_EQ(seriesOf({1.0f, -1.0f}, 1.0f)->centroid(), -12345.0f);
  const std::vector<std::array<float, 3>> cases = {
      {0, 1, 1},    {0.25f, 1, -0.5f},       {0.75f, 1, 0.5f},        {1.25f, 3, 2.5f},
      {1.5f, 3, 2}, {1.51f, -12345, -12345}, {-0.1f, -12345, -12345}, {NAN, -12345, -12345}};
  for (const auto& [t, looked, interpolated] : cases) {
    EXPECT_EQ(s->lookupValueAtRelativeTime(t), looked) << t;
    EXPECT_EQ(s->interpolateValueAtRelativeTime(t), interpolated) << t;
  }
  s->setDelta(0.0f);
  EXPECT_EQ(s->lookupValueAtRelativeTime(0.0f), -12345.0f);

  // On a ramp the value is the time in samples, to the rounding of the quotient, up to the last.
  for (int n = 2; n < 400; ++n) {
    const float delta = 0.01f * static_cast<float>(n % 37 + 1);
    const auto ramp = seriesOf(std::vector<float>(static_cast<std::size_t>(n)), delta);
    for (int i = 0; i < n; ++i) ramp->dataPointer()[i] = static_cast<float>(i);
    const float end = delta * static_cast<float>(n - 1);
    EXPECT_EQ(ramp->interpolateValueAtRelativeTime(end), static_cast<float>(n - 1));
    EXPECT_NEAR(ramp->interpolateValueAtRelativeTime(std::nextafter(end, 0.0f)), n - 1, 1e-4);
    EXPECT_EQ(ramp->lookupValueAtRelativeTime(end), std::trunc(std::trunc(end) / delta));
  }
}

TEST(TimeSeries, FiltersAndPulses) {
  const auto x = noise(300);
  auto low = x;
  GRLPBUfilter(low.data(), 300, 2, 4, 0.05f, 3.0f);
  auto high = low;
  GRHPBUfilter(high.data(), 300, 1, 6, 0.05f, 3.0f);
  const auto s = seriesOf(x, 0.05f);
  for (const float refused : {-1.0f, NAN}) {
    s->LPBUfilter_NPasses_NPoles(refused, 2, 4);
    s->cosineTimeFunctionFilterDuration(refused);
    s->trapezoidFilter(1.0f, refused, 1.0f);
  }
  s->LPBUfilter_NPasses_NPoles(0.0f, 2, 4);
  s->cosineTimeFunctionFilterDuration(0.07f);
  EXPECT_EQ(listOf(*s), x);
  EXPECT_EQ(s->max(), 0.0f) << "nor are the extrema looked for";
  s->LPBUfilter_NPasses_NPoles(3.0f, 2, 4);
  EXPECT_EQ(listOf(*s), low);
  EXPECT_EQ(s->max(), std::ranges::max(low));
  s->HPBUfilter_NPasses_NPoles(3.0f, 1, 6);
  EXPECT_EQ(listOf(*s), high);

  std::vector<double> cosine;
  for (int i = 0; i < 3; ++i) cosine.push_back(1.0 - std::cos(2.0 * std::numbers::pi * i / 2.6));
  const std::vector<std::pair<Operation, std::vector<double>>> cases = {
      {[](Series& t) { t.cosineTimeFunctionFilterDuration(0.26f); }, cosine},
      {[](Series& t) { t.trapezoidFilter(0.4f, 0.2f, 0.5f); },
       {0.0, 0.25, 0.5, 0.75, 1.0, 1.0, 1.0, 0.8, 0.6, 0.4, 0.2}},
      {[](Series& t) { t.trapezoidFilter(0.2f, 0.3f, 0.0f); }, {0.0, 0.5, 1.0, 1.0, 1.0}},
      {[](Series& t) { t.trapezoidFilter(0.0f, 0.0f, 0.0f); }, {}},
  };
  for (const auto& [operation, weights] : cases) {
    const auto t = seriesOf(x, 0.1f);
    operation(*t);
    const double area = std::accumulate(weights.begin(), weights.end(), 0.0);
    for (std::size_t i = 0; i < x.size(); ++i) {  // every term, the output one sample early
      double sum = 0.0;
      for (std::size_t k = 0; k < std::min(weights.size(), i + 2); ++k)
        if (i + 1 - k < x.size()) sum += x[i + 1 - k] * weights[k];
      // Single-precision weights and sums of up to 11 terms of order 1.
      ASSERT_NEAR(listOf(*t)[i], area == 0.0 ? 0.0 : sum / area, 2e-6) << weights.size();
    }
    EXPECT_EQ(t->max(), std::ranges::max(listOf(*t)));
  }
  const auto spikes = seriesOf({0.0f, 0.0f, 0.0f}, 0.5f);
  for (const float t : {-0.6f, -0.4f, 0.9f, 1.0f, 1.5f, NAN, INFINITY})
    spikes->addSpikeAtTimeDelay_Amplitude(t, 2.0f);
  EXPECT_THAT(listOf(*spikes), ElementsAre(2.0f, 2.0f, 2.0f));
}

TEST(TimeSeries, IsSafeWithFewOrNoSamples) {
  const auto bare = make<Series>(), empty = seriesOf({}, 1.0f), single = seriesOf({4.0f}, 1.0f),
             cut = seriesOf(noise(7), 1.0f);
  single->differentiate();
  single->subtractLinearTrend();
  EXPECT_EQ(single->interpolateValueAtRelativeTime(0.0f), 4.0f);
  bare->setNpts(5);
  cut->setNpts(1 << 30);  // more than there is
  for (const auto& s : {cut, single, bare, empty}) {
    for (const auto operation : {&Series::removeMean, &Series::subtractLinearTrend,
                                 &Series::integrate, &Series::differentiate})
      (s.get()->*operation)();
    s->taper();
    s->LPBUfilter_NPasses_NPoles(0.1f, 2, 4);
    s->cosineTimeFunctionFilterDuration(5.0f);
    s->trapezoidFilter(1.0f, 2.0f, 3.0f);
    EXPECT_EQ(s->interpolateValueAtRelativeTime(6.5f), -12345.0f);
    single->setNpts(-1);
    if (s == cut) continue;
    EXPECT_EQ(s->area() + s->max(), 0.0f);
    EXPECT_EQ(s->simpleRMS(), -12345.0f);
    EXPECT_EQ(s->signalPower(), -12345.0f);
    EXPECT_EQ(s->centroid(), -12345.0f);
  }
}

}  // namespace
}  // namespace krosac
