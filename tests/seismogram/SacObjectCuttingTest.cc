#include "CapturedLog.h"
#include "SpectralTraces.h"
#include "krosac/dsp/Decimation.h"

namespace krosac {
namespace {

const Samples kSamples = {1, 2, 3, 4, 5, 6, 7, 8};  // at 10, 10.5, ... 13.5

Ref<S> kilometresAway(float distance) {
  const auto s = traceOf(kSamples, 0.5f, 10.0f);
  s->setDistance(distance);
  return s;
}

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
  const std::tuple<float, float, const char*, Samples> cases[] = {
      {10.75f, 11.74f, "2 3 2 10.750000 11.740000", {3, 4}},
      {9.25f, 10.24f, "0 0 1 9.250000 10.240000", {1}},
      {12.0f, 14.0f, "4 8 5 12.000000 14.000000", {5, 6, 7, 8, 0}},  // one past the last
      {0.0f, 50.0f, "0 7 8 0.000000 50.000000", kSamples},
      {14.0f, 20.0f, "8 7 0 14.000000 20.000000", {}},
      {12.0f, 11.0f, "4 2 0 12.000000 11.000000", {}},
      {0.0f, 9.3f, "0 0 1 0.000000 9.300000", {1}},  // -0.9 is 0 too
      {10.0f, 14.0f, nullptr, {}},                   // the whole trace exactly
      {14.5f, 20.0f, nullptr, {}},
      {NAN, 12.0f, nullptr, {}}};
  for (const auto& [t1, t2, indexes, samples] : cases) {
    SCOPED_TRACE(testing::Message() << t1 << " " << t2);
    CapturedLog captured;
    const auto s = traceOf(kSamples, 0.5f, 10.0f);
    s->ChopFromStart_END(t1, t2);
    if (indexes) {
      EXPECT_EQ(captured.texts, Texts{formatText("ib,ie,npts: %s\n", indexes)});
      EXPECT_EQ(s->b(), 10.0f + 0.5f * static_cast<float>(indexes[0] - '0'));
      expectNew(*s, samples);
    } else {
      EXPECT_TRUE(captured.texts.empty());
      expectUnchanged(*s, kSamples);
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
    const auto s = kilometresAway(30.0f), undefined = kilometresAway(-12345.0f);
    cut(*s);  // no origin time yet
    expectUnchanged(*s, kSamples);
    undefined->setoriginTimeOffset(11.0f);
    cut(*undefined);
    expectUnchanged(*undefined, kSamples);
    EXPECT_EQ(undefined->getGroupVelocityRange(), std::pair(0.0, 0.0));
    s->setoriginTimeOffset(11.0f);
    cut(*s);
    expectNew(*s, samples);
  }
  const auto s = kilometresAway(30.0f);
  for (const auto& [origin, least, greatest] :
       {std::tuple(13.5f, 0.0, 0.0), {10.0f, 30 / 3.5f, 1e10}, {9.5f, 7.5, 60.0}}) {
    s->setoriginTimeOffset(origin);
    EXPECT_EQ(s->getGroupVelocityRange(), std::pair(least, greatest)) << origin;
  }
}

TEST(SacObjectCutting, DecimationInANewBufferAndInPlace) {
  for (const int factor : {2, 3, 4, 5, 1, 6, INT32_MIN}) {
    for (const int n : {607, 60, 1}) {
      SCOPED_TRACE(testing::Message() << factor << " of " << n);
      const Samples x = noise(n);
      CapturedLog captured;
      const auto s = traceOf(x, 0.5f, 10.0f), in = traceOf(x, 0.5f, 10.0f);
      s->setVerbose(2);
      in->setVerbose(2);
      s->Decimate(factor);
      int count = n / factor, used = count * factor;
      const auto bytes = static_cast<std::size_t>(4 * std::max(count, 0));
      // One float too few is refused, as is the trace itself.
      if (bytes) in->inPlaceDecimate_UsingTempData(factor, *ByteBuffer::zeroed(bytes - 1));
      if (bytes) in->inPlaceDecimate_UsingTempData(factor, *Ref<ByteBuffer>(in->myData()));
      expectUnchanged(*in, x);
      in->inPlaceDecimate_UsingTempData(factor, *bufferOf(std::string(bytes, '\x7f')));
      if (factor < 2 || factor > 5) {
        expectUnchanged(*s, x);
        expectUnchanged(*in, x);
        continue;
      }
      const std::string numbers =
          formatText("n_new=%d n_in=%d, newdt=%f\n", count, used, 0.5 * factor);
      EXPECT_EQ(captured.texts, (Texts{"From decimate: " + numbers, "From decimate " + numbers}));
      Samples expected(bytes / 4);
      decimateSignal(factor, used, x.data(), expected.data(), &count);
      EXPECT_EQ(s->delta(), 0.5f * static_cast<float>(factor));
      expectNew(*s, expected);
      // The buffer keeps its length, and garbage in the scratch does not show.
      EXPECT_EQ(imageOf(*in), imageOf(*s) + std::string(4 * x.size() - bytes, '\0'));
      EXPECT_TRUE(in->mSeisHasChanged());
    }
  }
}

TEST(SacObjectCutting, AppendsWhatFollowsAndRefusesTheRestWithAWarning) {
  const std::string warning = "Warning - could not merge seismograms, ";
  const struct {
    float delta, b;
    Samples samples;
    const char* refusal = nullptr;
    bool describes = false;
  } cases[] = {{0.5f, 11.5f, {1, 2, 3, 4, 5, 6}},   // one interval later: none is dropped
               {0.5f, 11.54f, {1, 2, 3, 4, 5, 6}},  // a gap of 1.08 intervals
               {0.5f, 11.25f, {1, 2, 3, 4, 5, 6}},
               {0.5f, 11.0f, {1, 2, 3, 5, 6}},
               {0.5f, 10.5f, {1, 2, 3, 6}},
               {0.5f, 5.0f, {1, 2, 3}},  // never more than there are
               {0.25f, 11.5f, {}, "dt differes dt1:0.500000 dt2:0.250000."},
               {0.0f, 11.5f, {}, "dt differes dt1:0.000000 dt2:0.000000."},
               {0.5f, 11.625f, {}, "Overlap:0.625000, dt:0.500000 tolerance:0.100000."},
               {0.5f, NAN, {}, "Overlap:nan, dt:0.500000 tolerance:0.100000.", true}};
  for (const auto& c : cases) {
    SCOPED_TRACE(testing::Message() << c.delta << " " << c.b);
    CapturedLog captured;
    const auto s = traceOf({1, 2, 3}, 0.5f, 10.0f), other = traceOf({4, 5, 6}, c.delta, c.b);
    if (c.delta == 0.0f) s->setDelta(0.0f);
    s->AppendSacObject(*other);
    if (!c.refusal) {
      expectNew(*s, c.samples);
      EXPECT_EQ(captured.texts, Texts{formatText("npts new = %d.\n", s->npts())});
      continue;
    }
    expectUnchanged(*s, {1, 2, 3});
    Texts said = {warning + c.refusal};
    if (c.describes) said.insert(said.end(), {s->description(), other->description()});
    EXPECT_EQ(captured.texts, said);
  }
}

}  // namespace
}  // namespace krosac
