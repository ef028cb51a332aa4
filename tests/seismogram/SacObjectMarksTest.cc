#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdlib>
#include <vector>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/krosac.h"

namespace krosac {
namespace {

using ::testing::ElementsAre;
using Block = std::array<float, 13>;

constexpr float kUndefined = -12345.0f;

// 100 s of zeros from -10 s at 10 samples a second, 50 degrees from a shallow earthquake at time 0.
Ref<SacObject> trace(std::int32_t n = 1000) {
  auto s = make<SacObject>();
  s->initWithCapacity(n);
  s->setDelta(0.1f);
  s->setBeginTime(-10.0f);
  s->fixEndTime();
  s->setDistance(50.0f * 111.19f);
  s->setoriginTimeOffset(0.0f);
  s->GetSacHeader()->EVDP = 33.0f;
  s->setMSeisHasChanged(false);
  return s;
}

Block block(float selector) {
  return {30.0f, 60.0f, 80.0f, 20.0f, 50.0f, 0.06f, 0.0f, selector, 50.0f, 0.0f, 0.0f, 0.0f, 0.0f};
}

// What the spikes add up to: the sample indexes that are not zero, and their values.
std::vector<std::pair<int, float>> spikesOf(const SacObject& s) {
  std::vector<std::pair<int, float>> spikes;
  for (int i = 0; i < s.npts(); ++i) {
    if (s.GetSacSeis()[i] != 0.0f) spikes.emplace_back(i, s.GetSacSeis()[i]);
  }
  return spikes;
}

TEST(SacObjectMarks, TimesComeFromTheTablesAndAreLabelled) {
  auto tables = make<JBTableObject>();
  ASSERT_TRUE(tables->init());
  const struct {
    float evdp, depth;
  } cases[] = {{33.0f, 33.0f}, {33000.0f, 33.0f}, {1000.0f, 1000.0f}};
  for (const auto& c : cases) {
    const auto s = trace();
    s->GetSacHeader()->EVDP = c.evdp;
    s->setoriginTimeOffset(-3.5f);
    s->setVerbose(2);
    CapturedLog log;
    s->markJBTimesAndSlowness();
    const SeismicPhase p = tables->GetJBPhase_GCARC_Depth("p", 50.0f, c.depth);
    const SeismicPhase shear = tables->GetJBPhase_GCARC_Depth("s", 50.0f, c.depth);
    EXPECT_NEAR(s->pTime(), p.time - 3.5f, 1e-3f);
    EXPECT_NEAR(s->t0(), shear.time - 3.5f, 1e-3f);
    EXPECT_NEAR(s->userValue(2), p.slowness, 1e-6f);
    EXPECT_NEAR(s->userValue(3), shear.slowness, 1e-6f);
    EXPECT_EQ(s->pickLabelWithKey(10), "P(JB)");
    EXPECT_EQ(s->pickLabelWithKey(0), "S(JB)");
    EXPECT_THAT(log.texts,
                ElementsAre(formatText(
                    "From markJBTimesAndSlowness: gcarc:50.0 depth:%.1f pTime:%.1f sTime:%.1f\n",
                    static_cast<double>(c.depth), static_cast<double>(p.time),
                    static_cast<double>(shear.time))));
  }
}

TEST(SacObjectMarks, NothingIsMarkedWithoutATime) {
  using Spoil = void (*)(SacObject&);
  const Spoil spoils[] = {[](SacObject& s) { s.setDistance(12000.0f); },
                          [](SacObject& s) { s.setDistance(kUndefined); },
                          [](SacObject& s) { s.setoriginTimeOffset(kUndefined); },
                          [](SacObject& s) { s.GetSacHeader()->EVDP = kUndefined; },
                          [](SacObject&) { ::setenv("KROSAC_DATA", "/nowhere", 1); }};
  for (const Spoil spoil : spoils) {
    const auto s = trace();
    spoil(*s);
    s->markJBTimes();
    // The last case still finds the tables beside the library.
    const bool isMarked = std::getenv("KROSAC_DATA") != nullptr;
    EXPECT_EQ(s->pTime() != kUndefined, isMarked);
    EXPECT_EQ(s->t0() != kUndefined, isMarked);
    EXPECT_EQ(s->userValue(2), kUndefined);
  }
  ::unsetenv("KROSAC_DATA");
}

TEST(SacObjectMarks, ATableWithoutNumbersMarksNothing) {
  const TemporaryFolder folder;
  folder.write("jbtables.txt", "no numbers\n");
  ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
  const auto s = trace();
  s->markJBTimes();
  ::unsetenv("KROSAC_DATA");
  EXPECT_EQ(s->pTime(), kUndefined);
  EXPECT_EQ(s->t0(), kUndefined);
}

TEST(SacObjectMarks, SpikesStandWhereTheWavesArrive) {
  for (const bool shear : {false, true}) {
    Block response = block(shear), given = response;
    GetBWResponse(response.data());
    const auto s = trace();
    s->GetSacSeis()[0] = 7.0f;
    s->GetSacSeis()[500] = 3.0f;
    if (shear) s->setTimePickKey_Value(0, 20.0f);
    s->computeBWResponse(given.data());
    const float direct = shear ? 20.0f : 5.0f;
    const auto at = [&](float delay) { return static_cast<int>((direct + delay + 10.0f) / 0.1f); };
    std::vector<std::pair<int, float>> expected = {{0, 7.0f}};
    if (shear) {
      expected.insert(expected.end(),
                      {{at(0), response[6] / 0.2f}, {at(response[10]), response[7] / 0.2f}});
    } else {
      expected.insert(expected.end(), {{at(0), response[0] / 0.2f},
                                       {at(response[8]), response[1] / 0.2f},
                                       {at(response[9]), response[2] / 0.2f}});
    }
    EXPECT_EQ(spikesOf(*s), expected);
    EXPECT_EQ(s->evdp(), 20.0f);
    EXPECT_TRUE(s->mSeisHasChanged());
    EXPECT_GE(s->smax(), 7.0f);

    // Times off the trace do no harm.
    Block off = block(shear);
    s->setPTime(1e30f);
    s->setTimePickKey_Value(0, -1e6f);
    s->computeBWResponse(off.data());
    EXPECT_EQ(spikesOf(*s).size(), 1u);
  }
}

TEST(SacObjectMarks, AddedSpikesScaleWithTheMomentAndTheLastOneDecidesTheFlag) {
  Block response = block(0.0f), first = response, second = response;
  GetBWResponse(response.data());
  const auto s = trace();
  s->GetSacSeis()[170] = 1.0f;
  s->addBWResponse_Delay_Moment(first.data(), 2.0f, 3.0f);
  EXPECT_EQ(s->GetSacSeis()[170], 1.0f + response[0] * 3.0f / 0.2f);
  EXPECT_TRUE(s->mSeisHasChanged());
  EXPECT_EQ(s->smax(), kUndefined) << "the extrema are not searched";

  const auto late = trace();
  late->addBWResponse_Delay_Moment(second.data(), 84.0f, 1.0f);  // pP and sP lie behind the end
  EXPECT_EQ(spikesOf(*late).size(), 1u);
  EXPECT_FALSE(late->mSeisHasChanged());

  late->addSpikeDelay_Moment(100.0f, 1.0f);
  EXPECT_FALSE(late->mSeisHasChanged());
  late->addSpikeDelay_Moment(0.0f, 2.0f);
  EXPECT_EQ(late->GetSacSeis()[100], 20.0f);
  EXPECT_TRUE(late->mSeisHasChanged());
}

TEST(SacObjectMarks, WaterReverberatesFromAOnlyWhenT0IsSet) {
  for (const bool hasT0 : {false, true}) {
    Block response = block(0.0f), plain = response, water = response;
    GetBWResponse(response.data());
    const auto s = trace(20000), direct = trace(20000);
    for (const auto& t : {s, direct}) {
      t->setPTime(40.0f);
      if (hasT0) t->setTimePickKey_Value(0, 60.0f);
    }
    direct->addBWResponse_Delay_Moment(plain.data(), 1.0f, 2.0f);
    s->addBWResponseWater_Delay_Moment_WDepth(water.data(), 1.0f, 2.0f, 3.0f);
    std::vector<double> expected(20000);
    const float twoWay =
        6.0f * static_cast<float>(std::sqrt(4.0 / 9.0 - 0.06f * static_cast<double>(0.06f)));
    const struct {
      float amplitude, delay;
    } trains[] = {{response[11] * -0.4f * 0.675f * 10.0f, response[8]},
                  {response[12] * 0.044f * 0.675f * 10.0f, response[9]}};
    for (const auto& train : trains) {
      float t = (hasT0 ? 40.0f : 5.0f) + 1.0f + train.delay;
      double amplitude = train.amplitude;
      for (int i = 0; i < 125; ++i, amplitude *= -0.825) {
        t += twoWay;
        expected[static_cast<std::size_t>((t + 10.0f) / 0.1f)] += amplitude;
      }
    }
    for (int i = 0; i < 20000; ++i) {
      // 125 roundings of each amplitude.
      ASSERT_NEAR(s->GetSacSeis()[i], direct->GetSacSeis()[i] + expected[i],
                  1e-5 * std::fabs(trains[0].amplitude))
          << i;
    }
    EXPECT_TRUE(s->mSeisHasChanged());
  }
}

TEST(SacObjectMarks, AddingATraceAddsWhatBothHave) {
  const auto s = trace(3), other = trace(5);
  for (int i = 0; i < 5; ++i) other->GetSacSeis()[i] = static_cast<float>(i + 1);
  s->addSeismogram(*other);
  s->addSeismogram(*other);
  EXPECT_EQ(std::vector(s->GetSacSeis(), s->GetSacSeis() + 3), (std::vector{2.0f, 4.0f, 6.0f}));
  EXPECT_EQ(s->smax(), 6.0f);
}

TEST(SacObjectMeasures, MatchTheirFormulas) {
  const auto s = trace(6);
  const float x[] = {1, -2, 1, 6, -4, 2};
  std::copy(x, x + 6, s->GetSacSeis());
  EXPECT_FLOAT_EQ(s->simpleRMS(), std::sqrt(62.0f / 6.0f));
  EXPECT_FLOAT_EQ(s->signalPower(), 6.2f);
  EXPECT_FLOAT_EQ(s->centroid(), 0.1f * (0 * 1 + 1 * -2 + 2 * 1 + 3 * 6 + 4 * -4 + 5 * 2) / 4.0f);

  EXPECT_EQ(s->simpleSNR(), kUndefined);
  s->setPTime(-9.76f);  // nearest sample 2
  EXPECT_FLOAT_EQ(s->simpleSNR(), std::sqrt((1.0f + 36.0f + 16.0f) / 3.0f) / std::sqrt(5.0f / 2.0f))
      << "E is sample 5";
  s->setTimePickKey_Value(11, -9.62f);
  EXPECT_FLOAT_EQ(s->simpleSNR(), std::sqrt((1.0f + 36.0f) / 2.0f) / std::sqrt(5.0f / 2.0f));
  s->setTimePickKey_Value(11, -9.8f);
  EXPECT_EQ(s->simpleSNR(), kUndefined) << "no sample between A and F";
  s->setPTime(-9.99f);
  EXPECT_FALSE(std::isfinite(s->simpleSNR())) << "no sample before A";
  s->setPTime(s->e());
  EXPECT_EQ(s->simpleSNR(), kUndefined);

  CapturedLog log;
  s->GetSacSeis()[5] = 6.0f;
  s->FindMaximum();
  s->FindMinimum();
  EXPECT_THAT(log.texts,
              ElementsAre("Max Value: 6.000e+00, Index: 3, Time (Relative to start): 0.300, "
                          "Time (Relative to Reference): -9.700"));
  s->setNpts(2);
  s->GetSacSeis()[1] = -1.0f;
  EXPECT_EQ(s->centroid(), kUndefined) << "a sum of zero";
  const auto empty = trace(0);
  empty->FindMaximum();
  EXPECT_EQ(log.texts.size(), 1u);
  for (const float measure :
       {empty->simpleRMS(), empty->signalPower(), empty->centroid(), empty->simpleSNR()})
    EXPECT_EQ(measure, kUndefined);
}

}  // namespace
}  // namespace krosac
