// Travel-time marks, synthetics and measures.
#include <gmock/gmock.h>

#include <array>
#include <cmath>
#include <cstdlib>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/source/BodyWaveResponse.h"
#include "krosac/traveltimes/JBTableObject.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

constexpr float kUndefined = -12345.0f;

// Zeros from -10 s at 10 samples per second, 50 degrees from a shallow earthquake at time 0.
Ref<S> trace() {
  auto s = traceOf(Samples(8000), 0.1f, -10.0f);
  s->setDistance(50.0f * 111.19f);
  s->setoriginTimeOffset(0.0f);
  s->GetSacHeader()->EVDP = 33.0f;
  return s;
}

TEST(SacObjectMarks, TimesComeFromTheTablesAndAreLabelled) {
  auto tables = make<JBTableObject>();
  ASSERT_TRUE(tables->init());
  for (const auto& [evdp, depth] : {std::pair(33000.0f, 33.0f), {1000.0f, 1000.0f}}) {
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
    EXPECT_EQ(log.texts,
              Texts{formatText("From markJBTimesAndSlowness: gcarc:50.0 depth:%.1f "
                               "pTime:%.1f sTime:%.1f\n",
                               double{depth}, double{p.time} - 3.5, double{shear.time} - 3.5)});
    timesOnly->markJBTimes();
    EXPECT_EQ(timesOnly->userValue(2), kUndefined);
  }
}

TEST(SacObjectMarks, NothingIsMarkedWithoutATime) {
  const TemporaryFolder folder;
  folder.write("jbtables.txt", "no numbers\n");
  const auto far = trace(), nowhere = trace(), never = trace(), deep = trace(), unread = trace();
  far->setDistance(12000.0f);
  nowhere->setDistance(kUndefined);
  never->setoriginTimeOffset(kUndefined);
  deep->GetSacHeader()->EVDP = kUndefined;
  for (const auto& [s, reason] :
       {std::pair(far, "DIST is 107.9 degrees, and only distances up to 100 are marked"),
        {nowhere, "DIST is undefined"},
        {never, "O is undefined"},
        {deep, "EVDP is undefined"},
        {unread, nullptr}}) {
    if (s == unread) ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
    s->markJBTimes();
    EXPECT_EQ(s->pTime() + s->t0(), 2 * kUndefined);
    EXPECT_TRUE(reason ? lastReason() == std::string(reason) : *lastReason() != '\0');
  }
  ::unsetenv("KROSAC_DATA");
  trace()->markJBTimes();
  EXPECT_STREQ(lastReason(), "");
}

// The parameters of GetBWResponse.
std::array<float, 13> blockOf(bool shear) {
  return {30.0f, 60.0f, 80.0f, 20.0f, 50.0f, 0.06f, 0.0f, shear ? 1.0f : 0.0f, 50.0f};
}

TEST(SacObjectSynthetics, SpikesAreAtTheArrivalTimes) {
  const std::tuple<bool, bool, bool> rows[] = {
      {false, false, false}, {false, true, false}, {false, true, true}, {true, true, true}};
  for (const auto& [shear, hasA, hasT0] : rows) {
    auto r = blockOf(shear), forSet = r, forAdded = r, forWet = r, off = r;
    GetBWResponse(r.data());
    const auto set = trace(), added = trace(), wet = trace();
    for (const auto& s : {set, added, wet}) {
      if (hasA) s->setPTime(30.0f);
      if (hasT0) s->setTimePickKey_Value(0, 20.0f);
      s->GetSacSeis()[0] = 7.0f;
      s->GetSacSeis()[170] = 3.0f;
    }
    Samples expected(8000);
    expected[0] = 7.0f;  // stays unchanged
    const auto add = [&](float t, float amplitude) {
      expected[static_cast<std::size_t>((t + 10.0f) / 0.1f)] += amplitude;
    };
    const auto addGroup = [&, shear = shear, hasA = hasA](float delay, float moment) {
      const float start = (shear ? 20.0f : hasA ? 30.0f : 5.0f) + delay;
      add(start, r[shear ? 6 : 0] * moment / 0.2f);
      add(start + r[shear ? 10 : 8], r[shear ? 7 : 1] * moment / 0.2f);
      if (!shear) add(start + r[9], r[2] * moment / 0.2f);
    };
    const Samples silent = expected;
    addGroup(0.0f, 1.0f);
    set->computeBWResponse(forSet.data());
    EXPECT_EQ(samplesIn(*set), expected);
    EXPECT_EQ(set->evdp(), 20.0f);
    EXPECT_GE(set->smax(), 7.0f);
    EXPECT_TRUE(set->mSeisHasChanged());
    set->setPTime(1e30f);  // times outside the trace are skipped
    set->setTimePickKey_Value(0, -1e6f);
    set->computeBWResponse(off.data());
    EXPECT_EQ(samplesIn(*set), silent);

    expected = silent;
    expected[170] = 3.0f;
    addGroup(2.0f, 3.0f);
    added->addBWResponse_Delay_Moment(forAdded.data(), 2.0f, 3.0f);
    EXPECT_EQ(samplesIn(*added), expected);
    EXPECT_TRUE(added->mSeisHasChanged());
    EXPECT_EQ(added->smax(), kUndefined) << "the extrema are not computed";

    const float twoWay = 6.0f * static_cast<float>(std::sqrt(4.0 / 9.0 - 0.06f * double{0.06f}));
    float pP = r[11] * -0.4f * 0.675f * 3.0f / 0.2f, sP = r[12] * 0.044f * 0.675f * 3.0f / 0.2f;
    float t = hasT0 ? 32.0f : 7.0f, afterP = t + r[8], afterS = t + r[9];  // A counts only with T0
    for (int i = 0; i < (shear ? 0 : 125); ++i, pP *= -0.825f, sP *= -0.825f) {
      add(afterP += twoWay, pP);
      add(afterS += twoWay, sP);
    }
    wet->addBWResponseWater_Delay_Moment_WDepth(forWet.data(), 2.0f, 3.0f, 3.0f);
    EXPECT_EQ(samplesIn(*wet), expected);
    EXPECT_TRUE(wet->mSeisHasChanged());
  }
}

TEST(SacObjectSynthetics, TheLastSpikeDecidesTheFlag) {
  auto block = blockOf(false);
  const auto s = trace();
  s->addBWResponse_Delay_Moment(block.data(), 784.0f, 1.0f);  // pP and sP are after the end
  s->addSpikeDelay_Moment(800.0f, 1.0f);
  EXPECT_NE(s->GetSacSeis()[7990], 0.0f);
  EXPECT_FALSE(s->mSeisHasChanged());
  s->addSpikeDelay_Moment(-10.0f, 2.0f);
  EXPECT_EQ(s->GetSacSeis()[0], 20.0f);
  EXPECT_TRUE(s->mSeisHasChanged());
  s->addSeismogram(*traceOf(Samples(9000, 2.0f)));  // the first 8000 are added
  s->addSeismogram(*traceOf({1}));
  EXPECT_EQ(std::pair(s->GetSacSeis()[0], s->GetSacSeis()[1]), std::pair(23.0f, 2.0f));
  EXPECT_EQ(s->smax(), 23.0f);
}

TEST(SacObjectMeasures, MatchTheirFormulas) {
  const auto s = traceOf({1, -2, 1, 6, -4, 6}, 0.1f, -10.0f), empty = traceOf({});
  EXPECT_FLOAT_EQ(s->simpleRMS(), std::sqrt(94.0f / 6.0f));
  EXPECT_FLOAT_EQ(s->signalPower(), 9.4f);
  EXPECT_FLOAT_EQ(s->centroid(), 0.1f * (-2 + 2 * 1 + 3 * 6 + 4 * -4 + 5 * 6) / 8.0f);
  EXPECT_EQ(traceOf({1, -1})->centroid(), kUndefined) << "a sum of zero";
  // Power from A to F, or to E (sample 5), over power before A.
  for (const auto& [a, f, ratio] : {std::tuple(-9.76f, kUndefined, std::sqrt(53 / 3.0f / 2.5f)),
                                    {-9.76f, -9.62f, std::sqrt(37 / 2.0f / 2.5f)},
                                    {-9.76f, -9.8f, kUndefined},
                                    {-9.99f, -9.8f, NAN},
                                    {-9.5f, kUndefined, kUndefined}}) {
    s->setPTime(a);
    s->setTimePickKey_Value(11, f);
    EXPECT_THAT(s->simpleSNR(), testing::NanSensitiveFloatEq(ratio)) << a << " " << f;
  }
  for (const auto measure : {&S::simpleRMS, &S::signalPower, &S::centroid, &S::simpleSNR})
    EXPECT_EQ((*empty.*measure)(), kUndefined);
  CapturedLog log;
  s->FindMaximum();
  s->FindMinimum();
  empty->FindMaximum();
  EXPECT_EQ(log.texts, Texts{"Max Value: 6.000e+00, Index: 3, Time (Relative to start): 0.300, "
                             "Time (Relative to Reference): -9.700"});
}

}  // namespace
}  // namespace krosac
