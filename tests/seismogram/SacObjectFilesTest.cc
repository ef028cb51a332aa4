// Loading, saving, archiving and copying.
#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <functional>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

const Samples kSamples = {3, -1, 4, -1, 5};
const std::string kDated =
    "2011-03-11 05:46:23 +0000, 2011 (070) 05:46:23.120, "
    "JAPAN - KURIL ISLANDS - KAMCHATKA PENINSULA / Near east coast of eastern Honshu, ";

using Path = const std::string&;

struct Loader {
  bool (*load)(S&, Path);
  bool readsFile;     // swaps bytes and computes E and the extrema
  bool logsImages;    // logs the image while it determines the byte order
  bool keepsSwapped;  // does not reset swappedBytes
  bool dropsOnSuccess, dropsOnFailure;
} const kLoaders[] = {
    {[](S& s, Path p) { return s.InitWithNSData_withPath(ByteBuffer::fromFile(p), p); }, false,
     false, false, true, true},
    {[](S& s, Path p) { return s.initWithNSData_withPath(ByteBuffer::fromFile(p), p); }, false,
     false, false, false, false},
    {[](S& s, Path p) { return s.InitWithPath(p); }, true, true, false, true, false},
    {[](S& s, Path p) { return s.initWithPath(p); }, true, false, false, false, false},
    {[](S& s, Path p) { return s.loadFromPath(p); }, true, true, true, false, false},
    {[](S& s, Path p) { return s.replaceSacObjectDataWithPath(p); }, true, true, false, false,
     false}};
const auto &kInitWithData = kLoaders[1], &kReplace = kLoaders[5];

// Loads into a live object with room for five samples whose flags, verbose and swappedBytes are
// set. Expects one reference less when the pool ends where the loader autoreleases.
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
  EXPECT_EQ(s->retainCount(), (good ? loader.dropsOnSuccess : loader.dropsOnFailure) ? 1 : 2);
  if (s->retainCount() == 2) s->release();
  return kept;
}

TEST(SacObjectLoading, EachLoaderFollowsItsOwnRules) {
  TemporaryFolder folder;
  const std::string image = sacImage(kSamples), path = folder.path("a.sac");
  for (const Loader& loader : kLoaders) {
    SCOPED_TRACE(&loader - kLoaders);
    CapturedLog captured;
    for (const bool swaps : {false, true}) {
      if (swaps && !loader.readsFile) continue;
      folder.write("a.sac", swaps ? foreign(image) : image);
      const auto s = loaded(loader, path, true);
      EXPECT_EQ(s->myPath(), path);
      EXPECT_EQ(stateOf(*s), "a.sac, (null), " + kDated +
                                 (swaps || loader.keepsSwapped ? "swapped 1 " : "swapped 0 ") +
                                 "changed 0 locked 0 verbose 0 tag 0");
      EXPECT_EQ(samplesIn(*s), kSamples);
      EXPECT_EQ((Samples{s->e(), s->smin(), s->smax(), s->smean()}),
                loader.readsFile ? (Samples{12, -1, 5, 2}) : (Samples{77, -12345, -12345, -12345}));
      EXPECT_NEAR(s->gcarc(), 90.0f, 1e-4);  // rounding of single precision
    }
    EXPECT_EQ(captured.texts.size(), loader.logsImages ? 2 : 0);

    captured.texts.clear();
    folder.write("a.sac", sacImage(kSamples, {{0, word(-0.5f)}}));
    const auto s = loaded(loader, path, false);
    EXPECT_EQ(s->myPath(), "./");  // set only after validation
    EXPECT_EQ(s->myData() == nullptr, &loader == &kInitWithData);
    loaded(loader, "/absent", false);
    Texts messages;
    if (loader.logsImages)
      messages = {path + " npts:5 delta:-0.500000 Size0:652 Size1:652",
                  path + " npts:83886080 delta:0.000000 Size0:652 Size1:335544952"};
    if (loader.readsFile) messages.push_back("Tried swapping bytes for " + path);
    const bool hasStop = !loader.readsFile || loader.logsImages;
    messages.push_back(path + " is not a valid SAC file" + (hasStop ? "." : ""));
    messages.push_back(loader.readsFile ? "Problem reading bytes in /absent"
                                        : "/absent is not a valid SAC file.");
    EXPECT_EQ(captured.texts, messages);
  }
}

TEST(SacObjectLoading, RefusesFilesWhoseSizeDiffersFromNpts) {
  TemporaryFolder folder;
  CapturedLog quiet;
  const std::string image = sacImage(kSamples);
  // `suffices`: the samples that there is room for can be read all the same.
  for (const auto& [bytes, suffices] :
       {std::pair(image.substr(0, 631), false),
        {image.substr(0, 651), false},
        {image + '\0', true},
        {sacImage(kSamples, {{316, 0xFFFFFFFBu}}), false},
        {sacImage(kSamples, {{316, (1u << 30) + 5}}), true},  // 632 + 4 NPTS wraps to 652
        {sacImage(kSamples, {{0, word(NAN)}}), false}}) {
    for (const Loader& loader : kLoaders) {
      SCOPED_TRACE(testing::Message() << &loader - kLoaders << bytes.size());
      loaded(loader, folder.write("a.sac", bytes), &loader == &kReplace && suffices);
    }
  }
  // Replacing reads at most as many samples as the buffer holds. 65536 swapped is 256, which is
  // plausible too.
  const std::string many = sacImage({3, -1, 4}) + std::string(4 * 65533, '\0');
  for (const std::string& bytes :
       {image, foreign(image), image.substr(0, 644), foreign(many).replace(316, 4, {0, 1, 0, 0})}) {
    const std::string path = folder.write("a.sac", bytes);
    const auto s = traceOf(Samples(3));
    ASSERT_TRUE(s->replaceSacObjectDataWithPath(path));
    EXPECT_EQ(samplesIn(*s), (Samples{3, -1, 4}));
    EXPECT_EQ(std::pair(s->e(), s->smax()), std::pair(11.0f, 4.0f));
    EXPECT_FALSE(traceOf({})->replaceSacObjectDataWithPath(path));
  }
}

TEST(SacObjectLoading, ReasonsNameTheFaultOfAFile) {
  TemporaryFolder folder;
  const CapturedLog quiet;
  const std::string image = sacImage(kSamples), path = folder.path("a.sac");
  std::filesystem::create_directory(folder.path("folder"));
  std::filesystem::create_symlink("loop", folder.path("loop"));
  const auto write = [&](const std::string& bytes) { return folder.write("a.sac", bytes); };
  const std::string needs = ": needs 632 + 4 x NPTS = ";
  const std::pair<std::function<std::string()>, std::string> rows[] = {
      {[&] { return folder.path("absent"); }, ": No such file or directory"},
      {[&] { return folder.path("loop"); }, ": Too many levels of symbolic links"},
      {[&] { return folder.path("folder"); }, ": is a folder"},
      {[&] { return write(std::string(700, 'x')); }, ": is text, not a SAC image"},
      {[&] { return write(image.substr(0, 631)); }, ": needs 632 bytes for the header, found 631"},
      {[&] { return write(image.substr(0, 651)); }, needs + "652 bytes, found 651"},
      {[&] { return write(foreign(image).substr(0, 644)); }, needs + "652 bytes, found 644"},
      {[&] { return write(image + "12345"); }, needs + "652 bytes, found 657"},
      {[&] { return write(foreign(image) + '1'); }, needs + "652 bytes, found 653"},
      {[&] {
         return write(sacImage(kSamples, {{316, 0xFFFFFFFBu}}));
       },
       ": NPTS is -5, below 0"},
      {[&] {
         return write(sacImage(kSamples, {{0, word(NAN)}}));
       },
       ": DELTA is nan, below 0 or NaN"}};
  for (const auto& [file, reason] : rows) {
    const std::string at = file();
    for (const auto load : {&S::initWithPath, &S::loadFromPath}) {
      EXPECT_FALSE(((*make<S>()).*load)(at));
      EXPECT_EQ(lastReason(), at + reason);
    }
  }
  EXPECT_FALSE(traceOf({})->replaceSacObjectDataWithPath(write(image)));
  EXPECT_EQ(lastReason(), path + ": has no samples, or the buffer has no room");
  EXPECT_FALSE(traceOf(Samples(6))->replaceSacObjectDataWithPath(path));
  EXPECT_EQ(lastReason(), path + needs + "652 bytes, the buffer has 656");
  EXPECT_FALSE(make<S>()->initWithNSData_withPath(bufferOf(foreign(image)), path));
  EXPECT_EQ(lastReason(), path + ": is in the other byte order");
  EXPECT_FALSE(make<S>()->initWithCapacity(-1));
  EXPECT_STREQ(lastReason(), "a seismogram cannot have -1 samples");
  EXPECT_TRUE(make<S>()->initWithPath(path));
  EXPECT_STREQ(lastReason(), "");
}

TEST(SacObjectLoading, FromAnotherSeismogram) {
  TemporaryFolder folder;
  const auto other = make<S>(), fresh = make<S>(), labelled = make<S>();
  // A day beyond the end of the year is carried over.
  const std::string image = foreign(sacImage(kSamples, {{280, 2010}, {284, 365 + 70}}));
  ASSERT_TRUE(other->initWithPath(folder.write("a.sac", image)));
  other->setLabelString("its label");
  other->setTag(9);
  other->setEndTime(0.0f);
  other->GetSacSeis()[0] = 100.0f;
  labelled->setLabelString("old label");
  labelled->setVerbose(3);
  labelled->setMSeisHasChanged(true);
  EXPECT_EQ(fresh->initWithSeisObject(*other), fresh);
  labelled->initWithSeisObject(*other);
  const std::string flags = kDated + "swapped 1 changed 0 locked 0 verbose ";
  EXPECT_EQ(stateOf(*fresh), "a.sac, (null), " + flags + "0 tag 0");
  EXPECT_EQ(stateOf(*labelled), "a.sac, its label, " + flags + "3 tag 0");
  EXPECT_EQ(std::pair(fresh->e(), fresh->smax()), std::pair(12.0f, 5.0f));  // not computed again
  EXPECT_EQ(samplesIn(*fresh), samplesIn(*other));
  EXPECT_FALSE(fresh->initWithSeisObject(*make<S>()));
  AutoreleasePool pool;
  EXPECT_EQ(Ref<S>(alloc<S>()->InitWithSeisObject(*other))->retainCount(), 2);
}

TEST(SacObjectLoading, CapacityAndValidity) {
  const auto s = make<S>();
  ASSERT_EQ(s->initWithCapacity(5), s);
  const Words set = {{0, word(1)}, {20, word(0)}, {24, word(4)}, {316, 5}};
  EXPECT_EQ(imageOf(*s), headerImage(set) + std::string(20, '\0'));
  EXPECT_EQ(s->myPath(), "./");
  EXPECT_EQ(stateOf(*s),
            "UntitledSeismogram, (null), undated, untimed, (null), swapped 0 changed 0 locked 0 "
            "verbose 0 tag 0");
  for (const float delta : {10000.0f, -1e-9f, NAN, 9999.0f}) {
    s->setDelta(delta);
    EXPECT_EQ(s->isSacFile(), delta == 9999.0f) << delta;
  }
  EXPECT_FALSE(make<S>()->initWithCapacity(-1));
}

// Between setMyData and setupPointers the header and the samples belong to the old buffer, but
// savers and copies use the new one.
TEST(SacObjectLoading, BuffersMayBeReplacedAtAnyTime) {
  TemporaryFolder folder;
  CapturedLog captured;
  for (const Ref<ByteBuffer>& next : {Ref<ByteBuffer>(), bufferOf("short")}) {
    const auto s = traceOf(kSamples);
    s->setPath(folder.path("a.sac"));
    s->setMyData(next);
    EXPECT_EQ(samplesIn(*s), kSamples);
    EXPECT_TRUE(s->isSacFile());
    EXPECT_FALSE(s->save() || make<S>()->initWithSeisObject(*s));
    EXPECT_FALSE(s->replaceSacObjectDataWithPath(folder.path("a.sac")));
    EXPECT_FALSE(s->GetSacHeader() || s->GetSacSeis() || s->isSacFile() || s->save());
    s->setNpts(7);
    s->Decimate(2);
    s->ChopFromStart_END(0.0f, 1.0f);
    EXPECT_EQ(s->npts(), -12345);
  }
  const auto s = traceOf(kSamples), copy = make<S>();
  const std::string next = imageOf(*traceOf({7, 8}));
  s->setPath(folder.path("a.sac"));
  s->setMyData(bufferOf(next));
  EXPECT_TRUE(s->save() && s->saveToPath(folder.path("b.sac")) && copy->initWithSeisObject(*s));
  EXPECT_EQ(folder.read("a.sac") + folder.read("b.sac") + imageOf(*copy), next + next + next);
}

TEST(SacObjectSaving, WritesTheStatedSamplesInTheOldByteOrder) {
  const struct {
    bool (*save)(S&, const std::string& folder);
    const char *file, *pathAfter;
  } savers[] = {
      {[](S& s, const std::string&) { return s.save(); }, "a.sac", "/a.sac"},
      {[](S& s, const std::string&) { return s.saveAs("b.sac"); }, "here/b.sac", "/here/b.sac"},
      {[](S& s, const std::string& at) { return s.saveToPath(at + "/b.sac"); }, "b.sac", "/a.sac"}};
  const auto before = std::filesystem::current_path();
  for (const auto& [save, file, pathAfter] : savers) {
    for (const auto& [npts, present, swapped] :
         {std::tuple(2, 2, true), {INT32_MAX, 5, true}, {-1, 5, false}}) {
      SCOPED_TRACE(testing::Message() << file << " swapped " << swapped);
      TemporaryFolder folder;
      std::filesystem::create_directory(folder.path("here"));
      std::filesystem::current_path(folder.path("here"));
      const auto s = traceOf(kSamples);
      s->setPath(folder.path("a.sac"));
      s->setNpts(npts);
      s->setSwappedBytes(swapped);
      s->setMSeisHasChanged(true);
      EXPECT_TRUE(save(*s, folder.path()));
      // A swapped trace is written to its old path.
      const std::string image = imageOf(*s).substr(0, 632 + 4 * present);
      EXPECT_EQ(folder.read(swapped ? "a.sac" : file), swapped ? foreign(image) : image);
      const std::filesystem::recursive_directory_iterator entries(folder.path());
      EXPECT_EQ(std::ranges::distance(entries), 2);  // the file and the folder "here"
      EXPECT_EQ(s->path(), folder.path() + pathAfter);
      EXPECT_TRUE(s->mSeisHasChanged());
      s->setPath(folder.path("absent/a.sac"));
      EXPECT_FALSE(s->save() || s->saveAs("absent/a.sac") || s->saveToPath(*s->path()));
      EXPECT_EQ(s->path(), folder.path("absent/a.sac"));
      std::filesystem::current_path(before);
    }
  }
}

TEST(SacObjectSaving, ReasonsNameTheFaultOrTheOldPath) {
  const TemporaryFolder folder;
  const std::string old = folder.path("a.sac"), absent = folder.path("absent/a.sac");
  const auto s = traceOf(kSamples);
  EXPECT_FALSE(s->saveToPath(absent));
  EXPECT_EQ(lastReason(), absent + ": No such file or directory");
  EXPECT_FALSE(make<S>()->saveToPath(old));
  EXPECT_STREQ(lastReason(), "the seismogram has no image");
  s->setPath(std::nullopt);
  EXPECT_FALSE(s->save());
  EXPECT_STREQ(lastReason(), "the seismogram has no path");
  s->setPath(old);
  s->setSwappedBytes(true);
  EXPECT_TRUE(s->saveToPath(absent));
  EXPECT_EQ(lastReason(),
            "written to the old path " + old + ", not to " + absent +
                ": call setPath and save to move a seismogram of the other byte order");
  EXPECT_TRUE(s->save());
  EXPECT_STREQ(lastReason(), "");
}

TEST(SacObjectSaving, ArchivesAndCopiesAreCompleteAndIndependent) {
  auto s = make<S>();
  s->initWithNSData_withPath(bufferOf(sacImage(kSamples)), "/a.sac");
  s->fixEndTime();
  s->setSwappedBytes(true);
  s->setMyFileName("name");
  s->setLabelString("label");
  s->setTag(-7);
  s->setVerbose(4);
  s->setMSeisHasChanged(true);
  s->setMSeisIsLocked(true);
  const auto bytes = archive(*s);
  const std::string archived(bytes->bytes(), bytes->bytes() + bytes->length());
  for (const char* key :
       {"SacObject", "myData", "mSeisHasChanged", "mSeisIsLocked", "myPath", "myFileName",
        "labelString", "myReferenceDate", "mySeisReferenceTime", "tag", "verbose", "swappedBytes"})
    EXPECT_NE(archived.find(key), std::string::npos) << key;
  const std::string image = imageOf(*s), state = stateOf(*s);
  CapturedLog captured;
  for (const Ref<S>& copy : {unarchive<S>(*bytes), s->copyWithZone()}) {
    EXPECT_EQ(imageOf(*copy), image);
    EXPECT_EQ(stateOf(*copy), state);
    EXPECT_EQ(copy->path(), s->path());
    copy->FlipPolarity();
    copy->shiftTimesBy(5.0f);
    EXPECT_EQ(imageOf(*s), image);
    EXPECT_EQ(stateOf(*s), state);
  }
  s->setEndTime(0.0f);
  EXPECT_EQ(s->copyWithZone()->e(), 12.0f);  // a copy computes E
  EXPECT_EQ(unarchive<S>(*archive(*s))->e(), 0.0f);
  EXPECT_FALSE(make<S>()->copyWithZone()->myData());

  s->setMyReferenceDate(std::nullopt);
  s->setMyData(bufferOf("short"));
  EXPECT_FALSE(unarchive<S>(*archive(*s))->isSacFile());
  s->setVerbose(5);  // destruction is logged
  s = nullptr;
  EXPECT_EQ(captured.texts,
            (Texts{"Object: name", "myData retainCount: 1", "myPath retainCount: 1",
                   "myFileName retainCount: 1", "myReferenceDate retainCount: 0",
                   "mySeisReferenceTime retainCount: 1", "myFERegionString retainCount: 1"}));
}

}  // namespace
}  // namespace krosac
