#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/source/BodyWaveResponse.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using testing::ElementsAre;

constexpr float kUndefined = -12345.0f;

// Zeros from -10 s at 10 samples a second, 50 degrees from a shallow earthquake at time 0.
Ref<S> trace(std::size_t n = 1000) {
  auto s = traceOf(Samples(n), 0.1f, -10.0f);
  s->setDistance(50.0f * 111.19f);
  s->setoriginTimeOffset(0.0f);
  s->GetSacHeader()->EVDP = 33.0f;
  return s;
}

// What GetBWResponse takes, and what it gives.
struct Block : std::array<float, 13> {
  explicit Block(bool shear)
      : array{30.0f, 60.0f, 80.0f, 20.0f, 50.0f, 0.06f, 0.0f, shear ? 1.0f : 0.0f, 50.0f} {}
  Block response() const {
    Block block = *this;
    GetBWResponse(block.data());
    return block;
  }
};

// The samples with spikes at some times added to them.
Samples withSpikes(Samples x, std::initializer_list<std::pair<float, float>> spikes) {
  for (const auto& [t, amplitude] : spikes)
    x[static_cast<std::size_t>((t + 10.0f) / 0.1f)] += amplitude;
  return x;
}

TEST(SacObjectMarks, TimesComeFromTheTablesAndAreLabelled) {
  auto tables = make<JBTableObject>();
  ASSERT_TRUE(tables->init());
  for (const auto& [evdp, depth] :
       {std::pair(33.0f, 33.0f), {33000.0f, 33.0f}, {1000.0f, 1000.0f}}) {
    const auto s = trace(), timesOnly = trace();
    s->GetSacHeader()->EVDP = evdp;
    s->setoriginTimeOffset(-3.5f);
    s->setVerbose(2);
    CapturedLog log;
    s->markJBTimesAndSlowness();
    const SeismicPhase p = tables->GetJBPhase_GCARC_Depth("p", 50.0f, depth);
    const SeismicPhase shear = tables->GetJBPhase_GCARC_Depth("s", 50.0f, depth);
    EXPECT_NEAR(s->pTime(), p.time - 3.5f, 1e-3f);
    EXPECT_NEAR(s->t0(), shear.time - 3.5f, 1e-3f);
    EXPECT_NEAR(s->userValue(2), p.slowness, 1e-6f);
    EXPECT_NEAR(s->userValue(3), shear.slowness, 1e-6f);
    EXPECT_EQ(s->pickLabelWithKey(10) + s->pickLabelWithKey(0), "P(JB)S(JB)");
    EXPECT_THAT(log.texts,
                ElementsAre(formatText(
                    "From markJBTimesAndSlowness: gcarc:50.0 depth:%.1f pTime:%.1f sTime:%.1f\n",
                    double{depth}, double{p.time}, double{shear.time})));
    timesOnly->markJBTimes();
    EXPECT_EQ(timesOnly->userValue(2), kUndefined);
  }
}

TEST(SacObjectMarks, NothingIsMarkedWithoutATime) {
  const TemporaryFolder folder;
  folder.write("jbtables.txt", "no numbers\n");
  void (*const spoils[])(S&) = {[](S& s) { s.setDistance(12000.0f); },
                                [](S& s) { s.setDistance(kUndefined); },
                                [](S& s) { s.setoriginTimeOffset(kUndefined); },
                                [](S& s) { s.GetSacHeader()->EVDP = kUndefined; }, [](S&) {}};
  for (const auto& spoil : spoils) {
    const auto s = trace();
    spoil(*s);
    if (spoil == spoils[4]) ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
    s->markJBTimes();
    EXPECT_EQ(s->pTime(), kUndefined);
    EXPECT_EQ(s->t0(), kUndefined);
  }
  ::unsetenv("KROSAC_DATA");
}

TEST(SacObjectMarks, SpikesStandWhereTheWavesArrive) {
  for (const bool shear : {false, true}) {
    Block block(shear), off(shear);
    const Block r = block.response();
    const auto s = trace();
    s->GetSacSeis()[0] = 7.0f;
    s->GetSacSeis()[500] = 3.0f;
    if (shear) s->setTimePickKey_Value(0, 20.0f);
    s->computeBWResponse(block.data());
    Samples first(1000);
    first[0] = 7.0f;
    EXPECT_EQ(samplesIn(*s),
              shear ? withSpikes(first, {{20.0f, r[6] / 0.2f}, {20.0f + r[10], r[7] / 0.2f}})
                    : withSpikes(first, {{5.0f, r[0] / 0.2f},
                                         {5.0f + r[8], r[1] / 0.2f},
                                         {5.0f + r[9], r[2] / 0.2f}}));
    EXPECT_EQ(s->evdp(), 20.0f);
    EXPECT_TRUE(s->mSeisHasChanged());
    EXPECT_GE(s->smax(), 7.0f);
    // Times off the trace do no harm.
    s->setPTime(1e30f);
    s->setTimePickKey_Value(0, -1e6f);
    s->computeBWResponse(off.data());
    EXPECT_EQ(samplesIn(*s), first);
  }
}

TEST(SacObjectMarks, AddedSpikesScaleWithTheMomentAndTheLastOneDecidesTheFlag) {
  Block block(false), second = block;
  const Block r = block.response();
  const auto s = trace(), late = trace();
  s->GetSacSeis()[170] = 1.0f;
  s->addBWResponse_Delay_Moment(block.data(), 2.0f, 3.0f);
  EXPECT_EQ(s->GetSacSeis()[170], 1.0f + r[0] * 3.0f / 0.2f);
  EXPECT_TRUE(s->mSeisHasChanged());
  EXPECT_EQ(s->smax(), kUndefined) << "the extrema are not searched";

  late->addBWResponse_Delay_Moment(second.data(), 84.0f, 1.0f);  // pP and sP lie behind the end
  EXPECT_EQ(samplesIn(*late), withSpikes(Samples(1000), {{89.0f, r[0] / 0.2f}}));
  late->addSpikeDelay_Moment(100.0f, 1.0f);
  EXPECT_FALSE(late->mSeisHasChanged());
  late->addSpikeDelay_Moment(-10.0f, 2.0f);
  EXPECT_EQ(late->GetSacSeis()[0], 20.0f);
  EXPECT_TRUE(late->mSeisHasChanged());
}

TEST(SacObjectMarks, WaterReverberatesFromAOnlyWhenT0IsSet) {
  for (const bool hasT0 : {false, true}) {
    Block plain(false), water = plain;
    const Block r = plain.response();
    const auto s = trace(20000), direct = trace(20000);
    for (const auto& t : {s, direct}) {
      t->setPTime(40.0f);
      if (hasT0) t->setTimePickKey_Value(0, 60.0f);
    }
    direct->addBWResponse_Delay_Moment(plain.data(), 1.0f, 2.0f);
    s->addBWResponseWater_Delay_Moment_WDepth(water.data(), 1.0f, 2.0f, 3.0f);
    EXPECT_TRUE(s->mSeisHasChanged());
    Samples expected = samplesIn(*direct);
    const float twoWay = 6.0f * static_cast<float>(std::sqrt(4.0 / 9.0 - 0.06f * double{0.06f}));
    for (const auto& [first, delay] : {std::pair(r[11] * -0.4f * 0.675f * 10.0f, r[8]),
                                       std::pair(r[12] * 0.044f * 0.675f * 10.0f, r[9])}) {
      float t = (hasT0 ? 41.0f : 6.0f) + delay, amplitude = first;
      for (int i = 0; i < 125; ++i, amplitude *= -0.825f)
        expected = withSpikes(expected, {{t += twoWay, amplitude}});
    }
    EXPECT_EQ(samplesIn(*s), expected);
  }
}

TEST(SacObjectMarks, AddingATraceAddsWhatBothHave) {
  const auto s = traceOf(Samples(3));
  s->addSeismogram(*traceOf({1, 2, 3, 4}));
  s->addSeismogram(*traceOf({1, 2}));
  EXPECT_EQ(samplesIn(*s), (Samples{2, 4, 3}));
  EXPECT_EQ(s->smax(), 4.0f);
}

TEST(SacObjectMeasures, MatchTheirFormulas) {
  const auto s = traceOf({1, -2, 1, 6, -4, 2}, 0.1f, -10.0f), empty = traceOf({});
  EXPECT_FLOAT_EQ(s->simpleRMS(), std::sqrt(62.0f / 6.0f));
  EXPECT_FLOAT_EQ(s->signalPower(), 6.2f);
  EXPECT_FLOAT_EQ(s->centroid(), 0.1f * (0 * 1 + 1 * -2 + 2 * 1 + 3 * 6 + 4 * -4 + 5 * 2) / 4.0f);
  // The powers from A to F, or to E, and before A; E is sample 5.
  const std::tuple<float, float, float> ratios[] = {
      {kUndefined, kUndefined, kUndefined},
      {-9.76f, kUndefined, std::sqrt(53 / 3.0f / 2.5f)},
      {-9.76f, -9.62f, std::sqrt(37 / 2.0f / 2.5f)},
      {-9.76f, -9.8f, kUndefined},
      {-9.99f, -9.8f, NAN},
      {-9.5f, kUndefined, kUndefined}};
  for (const auto& [a, f, ratio] : ratios) {
    s->setPTime(a);
    s->setTimePickKey_Value(11, f);
    EXPECT_THAT(s->simpleSNR(), testing::NanSensitiveFloatEq(ratio)) << a << " " << f;
  }
  CapturedLog log;
  s->GetSacSeis()[5] = 6.0f;
  s->FindMaximum();
  s->FindMinimum();
  empty->FindMaximum();
  EXPECT_THAT(log.texts,
              ElementsAre("Max Value: 6.000e+00, Index: 3, Time (Relative to start): 0.300, "
                          "Time (Relative to Reference): -9.700"));
  EXPECT_EQ(traceOf({1, -1})->centroid(), kUndefined) << "a sum of zero";
  for (const float measure :
       {empty->simpleRMS(), empty->signalPower(), empty->centroid(), empty->simpleSNR()})
    EXPECT_EQ(measure, kUndefined);
}

}  // namespace
}  // namespace krosac
