#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cmath>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

const Samples kSamples = {3, -1, 4, -1, 5};
const std::string kDated =
    "2011-03-11 05:46:23 +0000, 2011 (070) 05:46:23.120, "
    "JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern Honshu, ";

bool initWithData(S& s, const std::string& path) {
  return s.initWithNSData_withPath(ByteBuffer::fromFile(path), path);
}
bool InitWithData(S& s, const std::string& path) {
  return s.InitWithNSData_withPath(ByteBuffer::fromFile(path), path);
}
template <bool (S::*kLoad)(const std::string&)>
bool file(S& s, const std::string& path) {
  return (s.*kLoad)(path);
}

struct Loader {
  bool (*load)(S&, const std::string& path);
  bool readsFile;     // and so swaps bytes, and computes E and the extrema
  bool saysImages;    // logs what it sees while it looks for the byte order
  const char* stop;   // behind "is not a valid SAC file"
  bool keepsSwapped;  // does not reset swappedBytes first
  bool dropsOnSuccess, dropsOnFailure;
};
const Loader kLoaders[] = {
    {InitWithData, false, false, ".", false, true, true},
    {initWithData, false, false, ".", false, false, false},
    {file<&S::InitWithPath>, true, true, ".", false, true, false},
    {file<&S::initWithPath>, true, false, "", false, false, false},
    {file<&S::loadFromPath>, true, true, ".", true, false, false},
    {file<&S::replaceSacObjectDataWithPath>, true, true, ".", false, false, false}};
const auto kReplace = kLoaders[5].load;

// Loads into a live object with room for five samples and all set that a loader may reset. Its
// reference must go to the pool just where the loader drops it.
Ref<S> loaded(const Loader& loader, const std::string& path, bool good) {
  auto* s = alloc<S>();
  s->initWithCapacity(5);
  s->setVerbose(4);
  s->setSwappedBytes(true);
  s->setMSeisHasChanged(true);
  s->setMSeisIsLocked(true);
  const Ref<S> kept(s);
  {
    AutoreleasePool pool;
    EXPECT_EQ(loader.load(*s, path), good);
    EXPECT_EQ(s->retainCount(), 2);
  }
  const bool drops = good ? loader.dropsOnSuccess : loader.dropsOnFailure;
  EXPECT_EQ(s->retainCount(), drops ? 1 : 2);
  if (s->retainCount() == 2) s->release();
  EXPECT_EQ(s->verbose(), 0);
  return kept;
}

TEST(SacObjectLoading, EveryLoaderSetsUpTheObjectInItsOwnWay) {
  TemporaryFolder folder;
  for (const Loader& loader : kLoaders) {
    for (const bool swaps : {false, true}) {
      if (swaps && !loader.readsFile) continue;
      SCOPED_TRACE(testing::Message() << &loader - kLoaders << swaps);
      const std::string image = sacImage(kSamples),
                        path = folder.write("a.sac", swaps ? foreign(image) : image);
      CapturedLog captured;
      const auto s = loaded(loader, path, true);
      Texts said;
      if (swaps && loader.saysImages)
        said = {path + " npts:83886080 delta:0.000000 Size0:652 Size1:335544952",
                path + " npts:5 delta:0.500000 Size0:652 Size1:652"};
      EXPECT_EQ(captured.texts, said);
      EXPECT_EQ(s->myPath(), path);
      EXPECT_EQ(stateOf(*s), "a.sac, (null), " + kDated +
                                 (swaps || loader.keepsSwapped ? "swapped 1 " : "swapped 0 ") +
                                 "changed 0 locked 0 verbose 0 tag 0");
      EXPECT_EQ(samplesIn(*s), kSamples);
      EXPECT_EQ((Samples{s->e(), s->smin(), s->smax(), s->smean()}),
                loader.readsFile ? (Samples{12, -1, 5, 2}) : (Samples{77, -12345, -12345, -12345}));
      EXPECT_NEAR(s->gcarc(), 90.0f, 1e-4);  // resolution of floats of hundreds
    }
  }
}

TEST(SacObjectLoading, RefusalsAreToldToTheLetter) {
  TemporaryFolder folder;
  const std::string path = folder.write("a.sac", sacImage(kSamples, {{0, word(-0.5f)}}));
  for (const Loader& loader : kLoaders) {
    SCOPED_TRACE(&loader - kLoaders);
    CapturedLog captured;
    const auto s = loaded(loader, path, false);
    Texts said;
    if (loader.saysImages)
      said = {path + " npts:5 delta:-0.500000 Size0:652 Size1:652",
              path + " npts:83886080 delta:0.000000 Size0:652 Size1:335544952"};
    if (loader.readsFile) said.push_back("Tried swapping bytes for " + path);
    said.push_back(path + " is not a valid SAC file" + loader.stop);
    loaded(loader, "/absent", false);
    said.push_back(loader.readsFile ? "Problem reading bytes in /absent"
                                    : "/absent is not a valid SAC file.");
    EXPECT_EQ(captured.texts, said);
    EXPECT_EQ(s->myPath(), "./");  // set after validation only
    EXPECT_EQ(s->myData() == nullptr, loader.load == initWithData);
  }
}

TEST(SacObjectLoading, FilesOfAnotherSizeThanTheyStateAreRefused) {
  TemporaryFolder folder;
  CapturedLog quiet;
  const std::string image = sacImage(kSamples);
  // Whether the samples that there is room for can be read all the same.
  const std::pair<std::string, bool> cases[] = {
      {"", false},
      {image.substr(0, 631), false},
      {image.substr(0, 651), false},
      {image + '\0', true},
      {foreign(image) + '\0', true},
      {sacImage(kSamples, {{316, 0xFFFFFFFBu}}), false},
      {sacImage(kSamples, {{316, (1u << 30) + 5}}), true},  // 632 + 4 NPTS wraps to 652
      {sacImage(kSamples, {{0, word(NAN)}}), false}};
  for (const auto& [bytes, suffices] : cases) {
    const std::string path = folder.write("a.sac", bytes);
    for (const Loader& loader : kLoaders) {
      SCOPED_TRACE(testing::Message() << &loader - kLoaders << bytes.size());
      loaded(loader, path, loader.load == kReplace && suffices);
    }
  }
}

TEST(SacObjectLoading, ReplacingReadsAtMostWhatTheBufferHolds) {
  TemporaryFolder folder;
  CapturedLog captured;
  const Samples many(65536, 2.0f), first = {3, -1, 4};
  const std::string native = sacImage(kSamples), negative = sacImage({}, {{0, word(0.2f)}});
  // Without samples the file is refused.
  const std::tuple<std::string, std::size_t, Samples, bool> cases[] = {
      {native, 3, first, false},
      {foreign(native), 3, first, true},
      {native.substr(0, 644), 3, first, false},  // truncated, but enough
      {native, 6, {}, false},
      {foreign(native), 6, {}, false},
      // 65536 swapped is 256: a plausible count, but not that of this file.
      {foreign(sacImage(many)), 65536, many, true},
      {foreign(negative), 0, {}, false}};  // DELTA is negative unless swapped
  for (const auto& [bytes, capacity, samples, swapped] : cases) {
    SCOPED_TRACE(testing::Message() << capacity << " of " << bytes.size());
    const auto s = traceOf(Samples(capacity));
    ASSERT_NE(s->replaceSacObjectDataWithPath(folder.write("a.sac", bytes)), samples.empty());
    if (samples.empty()) continue;
    EXPECT_EQ(samplesIn(*s), samples);
    EXPECT_EQ(s->swappedBytes(), swapped);
    EXPECT_EQ(s->e(), 10.0f + 0.5f * static_cast<float>(samples.size() - 1));
    EXPECT_EQ(s->smax(), std::ranges::max(samples));
  }
}

TEST(SacObjectLoading, ReferenceTimeIsLoggedAndSurvivesADayBeyondTheYear) {
  TemporaryFolder folder;
  const auto s = make<S>();
  Texts texts;
  // verbose is reset first, so only who raises it meanwhile sees the times.
  setLogSink([&](const std::string& text) {
    texts.push_back(text);
    s->setVerbose(1);
  });
  const std::string image = foreign(sacImage(kSamples, {{280, 2003}, {284, 400}}));
  EXPECT_TRUE(s->loadFromPath(folder.write("a.sac", image)));
  setLogSink(nullptr);
  texts.erase(texts.begin(), texts.begin() + 2);
  EXPECT_EQ(texts, (Texts{"Seismogram Date: 2004-02-04 05:46:23 +0000",
                          "Seismogram Reference Time: 2004 (035) 05:46:23.120",
                          "Seismogram Reference Time: 2004/02/04 05:46:23.120"}));
}

TEST(SacObjectLoading, FromAnotherSeismogram) {
  TemporaryFolder folder;
  const auto other = make<S>(), fresh = make<S>(), labelled = make<S>();
  ASSERT_TRUE(other->initWithPath(folder.write("a.sac", foreign(sacImage(kSamples)))));
  other->setLabelString("its label");
  other->setTag(9);
  other->setEndTime(0.0f);
  other->GetSacSeis()[0] = 100.0f;
  labelled->setLabelString("old label");
  labelled->setVerbose(3);
  labelled->setMSeisHasChanged(true);
  EXPECT_EQ(fresh->initWithSeisObject(*other), fresh);
  EXPECT_EQ(labelled->initWithSeisObject(*other), labelled);
  const std::string flags = kDated + "swapped 1 changed 0 locked 0 verbose ";
  EXPECT_EQ(stateOf(*fresh), "a.sac, (null), " + flags + "0 tag 0");
  EXPECT_EQ(stateOf(*labelled), "a.sac, its label, " + flags + "3 tag 0");
  EXPECT_EQ(fresh->e(), 12.0f);
  EXPECT_EQ(fresh->smax(), 5.0f);  // as it was in the other, although a sample is 100
  EXPECT_NE(fresh->myData(), other->myData());
  EXPECT_EQ(samplesIn(*fresh), samplesIn(*other));
  Ref<S> kept;
  {
    AutoreleasePool pool;
    kept = alloc<S>()->InitWithSeisObject(*other);
    EXPECT_EQ(kept->retainCount(), 2);
  }
  EXPECT_EQ(kept->retainCount(), 1);
  EXPECT_FALSE(fresh->initWithSeisObject(*make<S>()));
}

TEST(SacObjectLoading, WithCapacityAndItsValidity) {
  for (const std::uint32_t n : {0u, 5u}) {
    const auto s = make<S>();
    ASSERT_EQ(s->initWithCapacity(static_cast<std::int32_t>(n)), s);
    const float end = static_cast<float>(n) - 1.0f;
    const Words set = {{0, word(1.0f)}, {20, word(0.0f)}, {24, word(end)}, {316, n}};
    EXPECT_EQ(imageOf(*s), headerImage(set) + std::string(4 * n, '\0'));
    EXPECT_EQ(s->myPath(), "./");
    EXPECT_EQ(stateOf(*s),
              "UntitledSeismogram, (null), undated, untimed, (null), swapped 0 "
              "changed 0 locked 0 verbose 0 tag 0");
    EXPECT_TRUE(s->isSacFile());
    for (const float delta : {10000.0f, -1e-9f, NAN, 9999.0f}) {
      s->setDelta(delta);
      EXPECT_EQ(s->isSacFile(), delta == 9999.0f) << delta;
    }
    for (const std::uint32_t npts : {n + 1, n - 1, ~n}) {
      s->setNpts(static_cast<std::int32_t>(npts));
      EXPECT_FALSE(s->isSacFile()) << npts;
    }
  }
  EXPECT_FALSE(make<S>()->initWithCapacity(-1));
}

// Between setMyData and setupPointers the header and samples are still those of the old buffer.
TEST(SacObjectLoading, BuffersMayBeExchangedAtAnyTime) {
  TemporaryFolder folder;
  CapturedLog captured;
  for (const Ref<ByteBuffer>& next : {Ref<ByteBuffer>(), bufferOf("short")}) {
    const auto s = traceOf(kSamples);
    s->setSwappedBytes(true);
    s->setPath(folder.path("a.sac"));
    s->setMyData(next);
    EXPECT_EQ(samplesIn(*s), kSamples);
    EXPECT_TRUE(s->isSacFile() && s->save() && make<S>()->initWithSeisObject(*s));
    EXPECT_EQ(folder.read("a.sac").size(), 652u);
    EXPECT_FALSE(s->replaceSacObjectDataWithPath(folder.path("a.sac")));
    EXPECT_FALSE(s->GetSacHeader() || s->GetSacSeis() || s->isSacFile() || s->save());
    s->setNpts(7);
    s->Decimate(2);
    s->ChopFromStart_END(0.0f, 1.0f);
    EXPECT_EQ(s->npts(), -12345);
  }
}

}  // namespace
}  // namespace krosac
