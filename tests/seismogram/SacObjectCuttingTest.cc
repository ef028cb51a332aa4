#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "CapturedLog.h"
#include "krosac/dsp/Decimation.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

const Samples kSamples = {1, 2, 3, 4, 5, 6, 7, 8};  // at 10, 10.5, ... 13.5

// A new buffer of these samples, with the fields that go with it.
void expectNew(const S& s, const Samples& x) {
  EXPECT_EQ(samplesIn(s), x);
  EXPECT_EQ(s.myData()->length(), 632 + 4 * x.size());
  EXPECT_EQ(s.e(), s.b() + (static_cast<float>(x.size()) - 1.0f) * s.delta());
  EXPECT_EQ(s.smax(), x.empty() ? 0.0f : std::ranges::max(x));
  EXPECT_TRUE(s.mSeisHasChanged());
}

TEST(SacObjectCutting, ChoppingRoundsToTheNearestSamples) {
  // The indexes as logged; null where nothing happens.
  const std::tuple<float, float, const char*, float, Samples> cases[] = {
      {10.5f, 12.0f, "1 4 4 10.500000 12.000000", 10.5f, {2, 3, 4, 5}},
      {10.75f, 11.74f, "2 3 2 10.750000 11.740000", 11.0f, {3, 4}},
      {9.25f, 10.24f, "0 0 1 9.250000 10.240000", 10.0f, {1}},
      {12.0f, 14.0f, "4 8 5 12.000000 14.000000", 12.0f, {5, 6, 7, 8, 0}},  // one past the last
      {12.0f, 50.0f, "4 7 4 12.000000 50.000000", 12.0f, {5, 6, 7, 8}},
      {0.0f, 50.0f, "0 7 8 0.000000 50.000000", 10.0f, kSamples},
      {10.0f, 14.0f, nullptr, 10.0f, kSamples},  // the whole trace exactly
      {14.0f, 20.0f, "8 7 0 14.000000 20.000000", 14.0f, {}},
      {14.0f, 14.0f, "8 8 1 14.000000 14.000000", 14.0f, {0}},
      {14.5f, 20.0f, nullptr, 10.0f, kSamples},
      {12.0f, 11.0f, "4 2 0 12.000000 11.000000", 12.0f, {}},
      {0.0f, 9.3f, "0 0 1 0.000000 9.300000", 10.0f, {1}},  // -0.9 is 0 too
      {0.0f, 9.0f, nullptr, 10.0f, kSamples},
      {NAN, 12.0f, nullptr, 10.0f, kSamples},
      {-1e30f, 1e30f, nullptr, 10.0f, kSamples}};
  for (const auto& [t1, t2, indexes, b, samples] : cases) {
    SCOPED_TRACE(testing::Message() << t1 << " " << t2);
    CapturedLog captured;
    const auto s = traceOf(kSamples, 0.5f, 10.0f);
    const std::string before = imageOf(*s);
    s->ChopFromStart_END(t1, t2);
    if (indexes) {
      EXPECT_EQ(captured.texts, Texts{formatText("ib,ie,npts: %s\n", indexes)});
      EXPECT_EQ(s->b(), b);
      expectNew(*s, samples);
    } else {
      EXPECT_TRUE(captured.texts.empty());
      EXPECT_EQ(imageOf(*s), before);
      EXPECT_FALSE(s->mSeisHasChanged());
    }
  }
}

TEST(SacObjectCutting, GroupVelocityWindows) {
  CapturedLog captured;
  const std::pair<void (*)(S&), Samples> cuts[] = {
      {[](S& s) { s.ChopFromOriginToGVel(20.0f); }, {3, 4, 5, 6}},
      {[](S& s) { s.ChopWithGVelMin_Max(15.0f, 30.0f); }, {5, 6, 7}},
      {[](S& s) { s.ChopWithGVelMin_Max_MinDuration(15.0f, 30.0f, 0.5f); }, {5, 6, 7}},
      {[](S& s) { s.ChopWithGVelMin_Max_MinDuration(15.0f, 30.0f, 1.5f); }, {5, 6, 7, 8}}};
  for (const auto& [cut, samples] : cuts) {
    const auto s = traceOf(kSamples, 0.5f, 10.0f);
    s->setDistance(30.0f);
    cut(*s);  // no origin time yet
    s->setDistance(-12345.0f);
    s->setoriginTimeOffset(11.0f);
    cut(*s);
    EXPECT_FALSE(s->mSeisHasChanged());
    EXPECT_EQ(s->getGroupVelocityRange(), std::pair(0.0, 0.0));
    s->setDistance(30.0f);
    cut(*s);
    expectNew(*s, samples);
  }
  EXPECT_EQ(captured.texts.size(), 4u);
  const auto s = traceOf(kSamples, 0.5f, 10.0f);
  s->setDistance(30.0f);
  for (const auto& [origin, least, greatest] : {std::tuple(13.5f, 0.0, 0.0),
                                                {11.0f, 12.0, 1e10},
                                                {10.0f, 30 / 3.5f, 1e10},
                                                {9.5f, 7.5, 60.0}}) {
    s->setoriginTimeOffset(origin);
    EXPECT_EQ(s->getGroupVelocityRange(), std::pair(least, greatest)) << origin;
  }
  s->ChopFromOriginToGVel(0.0f);
  EXPECT_FALSE(s->mSeisHasChanged());
}

TEST(SacObjectCutting, DecimationInANewBufferAndInPlace) {
  for (const int factor : {2, 3, 4, 5}) {
    for (const int n : {607, 60, factor - 1, 0}) {
      SCOPED_TRACE(testing::Message() << factor << " of " << n);
      Samples x(static_cast<std::size_t>(n));
      for (std::size_t i = 0; i < x.size(); ++i) x[i] = static_cast<float>(i * i % 11);
      int count = n / factor, used = count * factor;
      Samples expected(static_cast<std::size_t>(count));
      decimateSignal(factor, used, x.data(), expected.data(), &count);

      CapturedLog captured;
      const auto s = traceOf(x, 0.5f, 10.0f), in = traceOf(x, 0.5f, 10.0f);
      s->setVerbose(2);
      in->setVerbose(2);
      s->Decimate(factor);
      const std::string numbers =
          formatText("n_new=%d n_in=%d, newdt=%f\n", count, used, 0.5 * factor);
      EXPECT_EQ(captured.texts, (Texts{"From decimate: " + numbers, "From decimate " + numbers}));
      EXPECT_EQ(s->delta(), 0.5f * static_cast<float>(factor));
      expectNew(*s, expected);

      // One float too few is refused, and garbage in the scratch does not show.
      const std::size_t bytes = 4 * expected.size();
      if (bytes) in->inPlaceDecimate_UsingTempData(factor, *ByteBuffer::zeroed(bytes - 1));
      if (bytes) in->inPlaceDecimate_UsingTempData(factor, *Ref<ByteBuffer>(in->myData()));
      EXPECT_EQ(samplesIn(*in), x);
      in->inPlaceDecimate_UsingTempData(factor, *bufferOf(std::string(bytes, '\x7f')));
      EXPECT_EQ(imageOf(*in), imageOf(*s) + std::string(4 * x.size() - bytes, '\0'));
      EXPECT_TRUE(in->mSeisHasChanged());
      EXPECT_EQ(captured.texts.size(), 2u);
    }
  }
  for (const int factor : {INT32_MIN, 0, 1, 6}) {
    const auto s = traceOf(Samples(60, 1.0f));
    s->Decimate(factor);
    s->inPlaceDecimate_UsingTempData(factor, *ByteBuffer::zeroed(1000));
    EXPECT_FALSE(s->mSeisHasChanged());
  }
}

TEST(SacObjectCutting, AppendingWhatFollows) {
  const std::pair<float, Samples> cases[] = {
      {11.5f, {1, 2, 3, 4, 5, 6}},   // one interval later: none is dropped
      {11.54f, {1, 2, 3, 4, 5, 6}},  // a gap of 1.08 intervals
      {11.25f, {1, 2, 3, 4, 5, 6}}, {11.0f, {1, 2, 3, 5, 6}},
      {10.75f, {1, 2, 3, 5, 6}},    {10.5f, {1, 2, 3, 6}},
      {10.0f, {1, 2, 3}},           {5.0f, {1, 2, 3}}};  // never more than there are
  for (const auto& [b, samples] : cases) {
    SCOPED_TRACE(b);
    CapturedLog captured;
    const auto s = traceOf({1, 2, 3}, 0.5f, 10.0f);
    s->AppendSacObject(*traceOf({4, 5, 6}, 0.5f, b));
    expectNew(*s, samples);
    EXPECT_EQ(captured.texts, Texts{formatText("npts new = %d.\n", s->npts())});
    s->AppendSacObject(*s);
    expectNew(*s, samples);
  }
}

TEST(SacObjectCutting, AppendingIsRefusedWithAWarning) {
  const std::tuple<float, float, float, const char*, bool> cases[] = {
      {0.5f, 0.25f, 11.5f, "dt differes dt1:0.500000 dt2:0.250000.", false},
      {0.0f, 0.0f, 11.5f, "dt differes dt1:0.000000 dt2:0.000000.", false},
      {NAN, NAN, 11.5f, "dt differes dt1:nan dt2:nan.", false},
      {0.5f, 0.5f, 11.625f, "Overlap:0.625000, dt:0.500000 tolerance:0.100000.", false},
      {0.5f, 0.5f, NAN, "Overlap:nan, dt:0.500000 tolerance:0.100000.", true},
      {0.5f, 0.5f, 8589934603.0f, "Overlap:8589934592.000000, dt:0.500000 tolerance:0.100000.",
       true}};
  for (const auto& [dt, otherDt, b, warning, describes] : cases) {
    CapturedLog captured;
    const auto s = traceOf({1, 2, 3}, 0.5f, 10.0f), other = traceOf({4, 5, 6}, 0.5f, b);
    s->setDelta(dt);
    other->setDelta(otherDt);
    s->AppendSacObject(*other);
    EXPECT_EQ(samplesIn(*s), (Samples{1, 2, 3}));
    EXPECT_FALSE(s->mSeisHasChanged());
    Texts said = {std::string("Warning - could not merge seismograms, ") + warning};
    if (describes) said.insert(said.end(), {s->description(), other->description()});
    EXPECT_EQ(captured.texts, said);
  }
}

}  // namespace
}  // namespace krosac
