// Amplitudes, cutting, decimating and joining.
#include <gmock/gmock.h>

#include <functional>
#include <numeric>

#include "CapturedLog.h"
#include "SpectralTraces.h"
#include "krosac/dsp/Decimation.h"
#include "krosac/platform/LastReason.h"
#include "krosac/platform/internal/Text.h"

namespace krosac {
namespace {

TEST(SacObjectAmplitudes, ExtremaAndPowerOfAWindow) {
  const std::tuple<float, float, double, double, float> cases[] = {
      {10.0f, 14.0f, -77, 77, 0.5f / 8 * 173},  // the whole trace: extrema of the header
      {10.0f, 15.0f, -9, 6, 0.5f / 8 * 173},    // clamped to the end, but not the whole trace
      {10.4f, 12.3f, -1, 4, 0.5f / 3 * 26},     // 1.9 s from index 0.8, truncated to 0
      {9.0f, 11.0f, -1, 3, 0.5f / 2 * 10},      // from index -2
      {11.0f, 11.0f, 4, 4, NAN},                // an empty window
      {14.0f, 20.0f, 0, 0, NAN},                // starts one past the last sample
      {14.6f, 20.0f, 0, 0, 0},
      {11.0f, 1e30f, -9, 6, 0.5f / 6 * 163},  // to the end
      {-HUGE_VALF, HUGE_VALF, -9, 6, 0.5f / 8 * 173},
      {-1e30f, 12.0f, -1, 4, 0.5f / 4 * 27},  // from the beginning
      {1e30f, HUGE_VALF, 0, 0, 0},
      {12.0f, NAN, 0, 0, 0},
      {NAN, 12.0f, 0, 0, 0}};
  const auto s = traceOf({3, -1, 4, -1, 5, -9, 2, 6}, 0.5f, 10.0f);
  s->GetSacHeader()->DEPMIN = -77.0f;
  s->GetSacHeader()->DEPMAX = 77.0f;
  for (const auto& [t1, t2, least, greatest, power] : cases) {
    EXPECT_EQ(s->ComputeMinMaxInRange(t1, t2), std::pair(least, greatest)) << t1 << " " << t2;
    EXPECT_THAT(s->ComputePowerFrom_To(t1, t2), testing::NanSensitiveFloatEq(power)) << t1;
  }
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
      // The slope is 0.8; the offset of minus slope times 2 s is left.
      {[](S& s) { s.SubtractLinearTrend(); }, {0, -2.4, -4.8, 0.8}},
      {[](S& s) { s.Differentiate(); }, {-4, -4, 12, 12}},
      // 2 / 4, then steps of (0.5 + 0) / 4, (0 - 2) / 4 and (-2 + 4) / 4, one sample early.
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
  Samples x(1001, 1.0f);  // a single-precision sum would stop growing at 2^26
  x[0] = 0.0f;
  x[1] = 33554432.0f;
  const auto s = traceOf(x, 2.0f);
  s->Integrate();
  EXPECT_EQ(samplesIn(*s).back(), 67108864.0f + 2 * 998);
}

// Eight ones, every 0.5 s from 10 s.
TEST(SacObjectAmplitudes, TapersAndZeros) {
  const auto fall = [](double i) { return std::cos(i * kPi / 8); };
  const auto taper = [](S& s, float p, int) { s.Taper(p); };
  const auto after = [](S& s, float t, int) { s.ZeroAmplitudesAfterTime(t); };
  const auto rampAfter = &S::ZeroAmplitudesAfterTime_TaperLength;
  const auto rampBefore = &S::ZeroAmplitudesBeforeTime_TaperLength;
  const std::tuple<std::function<void(S&, float, int)>, float, int, Reals> cases[] = {
      {taper, 0.25f, 0, {0, 1 - fall(2), 1 - fall(4), 1, 1, 1, fall(0), fall(2)}},
      {taper, 0, 0, {0, 1, 1, 1, 1, 1, 1, 1}},
      {taper, 1, 0, {0, fall(0.5), fall(1), fall(1.5), fall(2), fall(2.5), fall(3), fall(3.5)}},
      {after, 11.9f, 0, {1, 1, 0, 0, 0, 0, 0, 0}},  // 1 s after B
      {after, 9.2f, 0, Reals(8)},                   // -0.8 s is truncated to 0
      {rampAfter, 12.7f, 2, {1, 1, 1, 0.5, 0, 0, 0, 0}},
      {rampAfter, 10.5f, 4, {1, 0.75, 0.5, 0.25, 0, 0, 0, 0}},
      {rampAfter, 12, -1, {1, 1, 1, 1, 1, 0, 0, 0}},
      {rampBefore, 12.7f, 2, {0, 0, 0, 0, 0, 0.5, 1, 1}},
      {rampBefore, 13.9f, 4, {0, 0, 0, 0, 0, 0.25, 0.5, 0.75}},  // clamped to the end
      {rampBefore, 12, -2, {0, 0, 0, 1, 1, 1, 1, 1}},
      {after, -1e30f, 0, Reals(8)},
      {rampAfter, -HUGE_VALF, 2, {1, 0.5, 0, 0, 0, 0, 0, 0}},
      {rampBefore, 1e30f, 2, {0, 0, 0, 0, 0, 0, 0, 0.5}}};
  for (const auto& [apply, t, n, expected] : cases) {
    SCOPED_TRACE(testing::PrintToString(expected));
    const auto s = traceOf(Samples(8, 1), 0.5f, 10);
    apply(*s, t, n);
    expectSamples(*s, expected, 1e-7);
  }
  const auto s = traceOf(Samples(8, 1), 0.5f, 10), other = s->copyWithZone();
  for (const float t : {15.0f, HUGE_VALF, NAN}) s->ZeroAmplitudesAfterTime(t);
  s->ZeroAmplitudesAfterTime_TaperLength(12, INT32_MIN);
  for (const float t : {5.0f, -1e30f, NAN}) s->ZeroAmplitudesBeforeTime_TaperLength(t, 2);
  expectUnchanged(*s, Samples(8, 1));

  CapturedLog captured;
  s->setVerbose(1);
  s->Taper(0.05f);
  other->setVerbose(2);
  other->defaultTaper();
  EXPECT_EQ(samplesIn(*s), samplesIn(*other));
  EXPECT_EQ(captured.texts,
            Texts{"Applied a taper with a fraction:5.00e-02 & duration: 4.00e+00 seconds."});
}

const Samples kSamples = {1, 2, 3, 4, 5, 6, 7, 8};  // at 10, 10.5, ... 13.5

// Expects a new buffer of these samples and matching header fields.
void expectNew(const S& s, const Samples& x) {
  EXPECT_EQ(samplesIn(s), x);
  EXPECT_EQ(s.myData()->length(), 632 + 4 * x.size());
  EXPECT_EQ(s.e(), s.b() + (static_cast<float>(x.size()) - 1.0f) * s.delta());
  EXPECT_EQ(s.smax(), x.empty() ? 0.0f : std::ranges::max(x));
  EXPECT_TRUE(s.mSeisHasChanged());
}

TEST(SacObjectCutting, CutsAtTheNearestSamples) {
  // The indexes are logged only where the trace is cut.
  const std::tuple<float, float, const char*, Samples> cases[] = {
      {10.75f, 11.74f, "2 3 2 10.750000 11.740000", {3, 4}},
      {9.25f, 10.24f, "0 0 1 9.250000 10.240000", {1}},
      {12.0f, 14.0f, "4 8 5 12.000000 14.000000", {5, 6, 7, 8, 0}},  // one past the last
      {0.0f, 50.0f, "0 7 8 0.000000 50.000000", kSamples},
      {14.0f, 20.0f, "8 7 0 14.000000 20.000000", {}},
      {12.0f, HUGE_VALF, "4 7 4 12.000000 inf", {5, 6, 7, 8}},
      {-HUGE_VALF, 10.5f, "0 1 2 -inf 10.500000", {1, 2}}};
  CapturedLog captured;
  for (const auto& [t1, t2, indexes, samples] : cases) {
    const auto s = traceOf(kSamples, 0.5f, 10.0f);
    s->ChopFromStart_END(t1, t2);
    EXPECT_EQ(captured.texts.back(), formatText("ib,ie,npts: %s\n", indexes));
    EXPECT_EQ(s->b(), 10.0f + 0.5f * static_cast<float>(indexes[0] - '0'));
    expectNew(*s, samples);
  }
  const auto s = traceOf(kSamples, 0.5f, 10.0f);
  s->ChopFromStart_END(10.0f, 14.0f);  // the whole trace exactly
  s->ChopFromStart_END(14.5f, 20.0f);
  s->ChopFromStart_END(NAN, 12.0f);
  s->ChopFromStart_END(12.0f, NAN);
  s->ChopFromStart_END(1e30f, 2e30f);
  expectUnchanged(*s, kSamples);
  EXPECT_EQ(captured.texts.size(), std::size(cases));
}

TEST(SacObjectCutting, GroupVelocityWindows) {
  CapturedLog captured;
  const std::pair<void (*)(S&), Samples> cuts[] = {
      {[](S& s) { s.ChopFromOriginToGVel(20.0f); }, {3, 4, 5, 6}},
      {[](S& s) { s.ChopWithGVelMin_Max(15.0f, 30.0f); }, {5, 6, 7}},
      {[](S& s) { s.ChopWithGVelMin_Max_MinDuration(15.0f, 30.0f, 0.5f); }, {5, 6, 7}},
      {[](S& s) { s.ChopWithGVelMin_Max_MinDuration(15.0f, 30.0f, 1.5f); }, {5, 6, 7, 8}}};
  const auto s = traceOf(kSamples, 0.5f, 10.0f), nowhere = s->copyWithZone();
  nowhere->setoriginTimeOffset(11.0f);
  s->setDistance(30.0f);
  for (const auto& [cut, samples] : cuts) {
    cut(*nowhere);
    cut(*s);
    const auto known = s->copyWithZone();
    known->setoriginTimeOffset(11.0f);
    cut(*known);
    expectNew(*known, samples);
  }
  expectUnchanged(*nowhere, kSamples);
  expectUnchanged(*s, kSamples);
  EXPECT_EQ(nowhere->getGroupVelocityRange(), std::pair(0.0, 0.0));
  for (const auto& [origin, least, greatest] :
       {std::tuple(13.5f, 0.0, 0.0), {10.0f, 30 / 3.5f, 1e10}, {9.5f, 7.5, 60.0}}) {
    s->setoriginTimeOffset(origin);
    EXPECT_EQ(s->getGroupVelocityRange(), std::pair(least, greatest)) << origin;
  }
}

TEST(SacObjectCutting, DecimationInANewBufferAndInPlace) {
  const Samples x = noise(607);
  for (const int factor : {2, 3, 4, 5}) {
    SCOPED_TRACE(factor);
    CapturedLog captured;
    const auto s = traceOf(x, 0.5f, 10.0f), in = traceOf(x, 0.5f, 10.0f);
    int count = 607 / factor;
    Samples expected(count);
    decimateSignal(factor, count * factor, x.data(), expected.data(), &count);
    s->setVerbose(2);
    s->Decimate(factor);
    expectNew(*s, expected);
    EXPECT_EQ(s->delta(), 0.5f * static_cast<float>(factor));
    const std::string numbers =
        formatText("n_new=%d n_in=%d, newdt=%f\n", count, count * factor, 0.5 * factor);
    EXPECT_EQ(captured.texts, (Texts{"From decimate: " + numbers, "From decimate " + numbers}));
    // A scratch buffer that is one byte too short, or the image itself, is refused.
    in->inPlaceDecimate_UsingTempData(factor, *ByteBuffer::zeroed(4 * expected.size() - 1));
    in->inPlaceDecimate_UsingTempData(factor, *Ref<ByteBuffer>(in->myData()));
    expectUnchanged(*in, x);
    // The buffer keeps its length; garbage in the scratch buffer has no effect.
    in->inPlaceDecimate_UsingTempData(factor, *bufferOf(std::string(4 * expected.size(), '\x7f')));
    EXPECT_EQ(imageOf(*in), imageOf(*s) + std::string(4 * (x.size() - expected.size()), '\0'));
    EXPECT_TRUE(in->mSeisHasChanged());
  }
  const auto s = traceOf(x);
  for (const int refused : {1, 6, INT32_MIN}) {
    s->Decimate(refused);
    s->inPlaceDecimate_UsingTempData(refused, *ByteBuffer::zeroed(4 * 607));
  }
  expectUnchanged(*s, x);
}

TEST(SacObjectCutting, AppendsWhatFollowsAndOtherwiseLogsAWarning) {
  const std::tuple<float, float, Samples, std::string> cases[] = {
      {0.5f, 11.5f, {1, 2, 3, 4, 5, 6}, ""},   // one interval later: no sample is dropped
      {0.5f, 11.54f, {1, 2, 3, 4, 5, 6}, ""},  // a gap of 1.08 intervals
      {0.5f, 11.0f, {1, 2, 3, 5, 6}, ""},
      {0.5f, 5.0f, {1, 2, 3}, ""},  // all samples overlap
      {0.25f, 11.5f, {}, "dt differes dt1:0.500000 dt2:0.250000."},
      {0.5f, 11.625f, {}, "Overlap:0.625000, dt:0.500000 tolerance:0.100000."},
      {0.5f, NAN, {}, "Overlap:nan, dt:0.500000 tolerance:0.100000."}};
  for (const auto& [delta, b, samples, refusal] : cases) {
    SCOPED_TRACE(testing::Message() << delta << " " << b);
    CapturedLog captured;
    const auto s = traceOf({1, 2, 3}, 0.5f, 10.0f), other = traceOf({4, 5, 6}, delta, b);
    s->AppendSacObject(*other);
    Texts messages = {"Warning - could not merge seismograms, " + refusal};
    if (refusal.empty()) {
      messages = {formatText("npts new = %d.\n", s->npts())};
      expectNew(*s, samples);
      EXPECT_STREQ(lastReason(), "");
    } else {
      EXPECT_STRNE(lastReason(), "");
      expectUnchanged(*s, {1, 2, 3});
    }
    if (std::isnan(b)) messages.insert(messages.end(), {s->description(), other->description()});
    EXPECT_EQ(captured.texts, messages);
  }
  CapturedLog captured;
  for (const float delta : {0.0f, -0.5f}) {
    const auto s = traceOf({1, 2, 3}, delta);
    s->AppendSacObject(*s->copyWithZone());
    expectUnchanged(*s, {1, 2, 3});
    EXPECT_EQ(lastReason(), formatText("DELTA is %g s, not positive", double{delta}));
  }
  EXPECT_EQ(captured.texts, Texts{});
}

}  // namespace
}  // namespace krosac
