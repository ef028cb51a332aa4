#include <gmock/gmock.h>

#include <numeric>

#include "CapturedLog.h"
#include "SpectralTraces.h"

namespace krosac {
namespace {

TEST(SacObjectAmplitudes, ExtremaAndPowerOfAWindow) {
  const struct {
    float t1, t2;
    double least, greatest;
    float power;
  } cases[] = {
      {10.0f, 14.0f, -77, 77, 0.5f / 8 * 173},  // the whole trace: from the header
      {10.0f, 15.0f, -9, 6, 0.5f / 8 * 173},    // clamped to the end, but not the whole trace
      {10.4f, 12.3f, -1, 4, 0.5f / 3 * 26},     // 1.9 s from index 0.8, cut to 0
      {9.0f, 11.0f, -1, 3, 0.5f / 2 * 10},      // from index -2
      {11.0f, 11.0f, 4, 4, NAN},                // an empty window
      {14.0f, 20.0f, 0, 0, NAN},                // starts right behind the last sample
      {14.6f, 20.0f, 0, 0, 0},
      {NAN, 12.0f, 0, 0, 0},
  };
  const auto s = traceOf({3, -1, 4, -1, 5, -9, 2, 6}, 0.5f, 10.0f);
  s->GetSacHeader()->DEPMIN = -77.0f;
  s->GetSacHeader()->DEPMAX = 77.0f;
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.t1 << " " << c.t2);
    EXPECT_EQ(s->ComputeMinMaxInRange(c.t1, c.t2), std::pair(c.least, c.greatest));
    EXPECT_THAT(s->ComputePowerFrom_To(c.t1, c.t2), testing::NanSensitiveFloatEq(c.power));
  }
  EXPECT_EQ(traceOf({})->ComputeMinMaxInRange(0.0f, 5.0f), std::pair(0.0, 0.0));
}

TEST(SacObjectAmplitudes, OperationsOnAllSamples) {
  const std::pair<void (*)(S&), Reals> cases[] = {
      {[](S& s) { s.FlipPolarity(); }, {-2, 0, 2, -4}},
      {[](S& s) { s.ScaleByLinearTime(); }, {1, 0, -3, 8}},  // at 0.5, 1, 1.5 and 2
      {[](S& s) { s.ScaleBySquareTime(); }, {0.5, 0, -4.5, 16}},
      {[](S& s) { s.ScaleBySquareRootTime(); }, {std::sqrt(2), 0, -std::sqrt(6), std::sqrt(32)}},
      {[](S& s) { s.ScaleByDistance(); }, {20, 0, -20, 40}},
      {[](S& s) { s.ScaleAmplitudes(0.25f); }, {0.5, 0, -0.5, 1}},
      {[](S& s) { s.sqrAmplitudes(); }, {4, 0, 4, 16}},
      {[](S& s) { s.absAmplitudes(); }, {2, 0, 2, 4}},
      {[](S& s) { s.ZeroAmplitudes(); }, {0, 0, 0, 0}},
      {[](S& s) { s.binary(); }, {1, 0, -1, 1}},
      {[](S& s) { s.RemoveMean(); }, {1, -1, -3, 3}},
      // The line has a slope of 0.8 and leaves that slope times 2 s.
      {[](S& s) { s.SubtractLinearTrend(); }, {0, -2.4, -4.8, 0.8}},
      {[](S& s) { s.Differentiate(); }, {-4, -4, 12, 12}},
      // From 2 / 4 the steps (0.5 + 0) / 4, (0 - 2) / 4 and (-2 + 4) / 4, one sample early.
      {[](S& s) { s.Integrate(); }, {0.625, 0.125, 0.625, 0.625}}};
  for (const auto& [apply, expected] : cases) {
    SCOPED_TRACE(testing::PrintToString(expected));
    const auto s = traceOf({2, 0, -2, 4}, 0.5f, 50.0f);
    s->setDistance(10.0f);
    apply(*s);
    expectSamples(*s, expected, 1e-7);
    EXPECT_FLOAT_EQ(s->smean(), std::accumulate(expected.begin(), expected.end(), 0.0f) / 4);
    apply(*traceOf({}));
  }
  const auto single = traceOf({4}), reversed = traceOf({1, 2, 3});
  single->Differentiate();
  single->SubtractLinearTrend();
  EXPECT_EQ(samplesIn(*single), Samples{4});
  reversed->reverseTime();
  EXPECT_EQ(samplesIn(*reversed), (Samples{3, 2, 1}));
  EXPECT_TRUE(reversed->mSeisHasChanged());
  EXPECT_EQ(reversed->smax(), -12345.0f);
}

TEST(SacObjectAmplitudes, IntegralIsSummedInDoublePrecision) {
  Samples x(1001, 1.0f);  // behind 2^26 a sum in single precision would stay
  x[0] = 0.0f;
  x[1] = 33554432.0f;
  const auto s = traceOf(x, 2.0f);
  s->Integrate();
  EXPECT_EQ(samplesIn(*s).back(), 67108864.0f + 2 * 998);
}

TEST(SacObjectAmplitudes, Tapers) {
  const auto fall = [](double i) { return std::cos(i * kPi / 8); };
  const auto rise = [=](double i) { return 1 - fall(i); };
  const std::pair<float, Reals> cases[] = {
      {0.25f, {0, rise(2), rise(4), 1, 1, 1, fall(0), fall(2)}}, {0.0f, {0, 1, 1, 1, 1, 1, 1, 1}}};
  for (const auto& [fraction, weights] : cases) {
    const auto s = traceOf(Samples(8, 1.0f), 1.0f, 100.0f);
    s->Taper(fraction);
    expectSamples(*s, weights, 1e-7);
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
  const auto after = [](S& s, float t, int) { s.ZeroAmplitudesAfterTime(t); };
  const auto rampAfter = [](S& s, float t, int n) { s.ZeroAmplitudesAfterTime_TaperLength(t, n); };
  const auto rampBefore = [](S& s, float t, int n) {
    s.ZeroAmplitudesBeforeTime_TaperLength(t, n);
  };
  const Samples ones(8, 1.0f), none;  // none: nothing happens
  const struct {
    void (*zero)(S&, float, int);
    float t;
    int length;
    Samples expected;
  } cases[] = {{after, 11.9f, 0, {1, 1, 0, 0, 0, 0, 0, 0}},  // 1 s behind the begin
               {after, 9.2f, 0, Samples(8)},                 // -0.8 s are cut to 0
               {after, 15.0f, 0, none},
               {after, NAN, 0, none},
               {rampAfter, 12.7f, 2, {1, 1, 1, 0.5f, 0, 0, 0, 0}},
               {rampAfter, 10.5f, 4, {1, 0.75f, 0.5f, 0.25f, 0, 0, 0, 0}},
               {rampAfter, 12.0f, -1, {1, 1, 1, 1, 1, 0, 0, 0}},
               {rampAfter, 12.0f, INT32_MIN, none},
               {rampBefore, 12.7f, 2, {0, 0, 0, 0, 0, 0.5f, 1, 1}},
               {rampBefore, 13.9f, 4, {0, 0, 0, 0, 0, 0.25f, 0.5f, 0.75f}},  // clamped to the end
               {rampBefore, 1e6f, 2, {0, 0, 0, 0, 0, 0, 0, 0.5f}},
               {rampBefore, 5.0f, 2, none},
               {rampBefore, 12.0f, -2, {0, 0, 0, 1, 1, 1, 1, 1}},
               {rampBefore, 12.0f, INT32_MAX, none}};
  for (const auto& [zero, t, length, expected] : cases) {
    SCOPED_TRACE(testing::Message() << t << " " << length);
    const auto s = traceOf(ones, 0.5f, 10.0f);
    zero(*s, t, length);
    if (expected.empty()) {
      expectUnchanged(*s, ones);
    } else {
      expectSamples(*s, Reals(expected.begin(), expected.end()), 0);
    }
  }
}

}  // namespace
}  // namespace krosac
