#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

using testing::ElementsAre;

const Samples kSamples = {3, -1, 4, -1, 5};

// The working directory for as long as it lives.
class WorkingDirectory {
 public:
  explicit WorkingDirectory(const std::string& path) { std::filesystem::current_path(path); }
  ~WorkingDirectory() { std::filesystem::current_path(before_); }

 private:
  std::filesystem::path before_ = std::filesystem::current_path();
};

TEST(SacObjectSaving, DestinationsOfTheSavers) {
  const struct {
    bool (*save)(S&, const std::string& folder);
    const char *file, *pathAfter;
  } savers[] = {
      {[](S& s, const std::string&) { return s.save(); }, "old.sac", "/old.sac"},
      {[](S& s, const std::string&) { return s.saveAs("b.sac"); }, "here/b.sac", "/here/b.sac"},
      {[](S& s, const std::string& at) { return s.saveToPath(at + "/b.sac"); }, "b.sac",
       "/old.sac"}};
  for (const auto& saver : savers) {
    for (const bool swapped : {false, true}) {
      SCOPED_TRACE(testing::Message() << saver.file << " swapped " << swapped);
      TemporaryFolder folder;
      std::filesystem::create_directory(folder.path("here"));
      const WorkingDirectory here(folder.path("here"));
      const auto s = traceOf(kSamples);
      s->setPath(folder.path("old.sac"));
      s->setSwappedBytes(swapped);
      s->setMSeisHasChanged(true);
      const std::string before = stateOf(*s);
      EXPECT_TRUE(saver.save(*s, folder.path()));
      EXPECT_EQ(folder.read(swapped ? "old.sac" : saver.file),
                swapped ? foreign(imageOf(*s)) : imageOf(*s));
      const std::filesystem::recursive_directory_iterator entries(folder.path());
      EXPECT_EQ(std::ranges::distance(entries), 2);  // the file and the folder "here"
      EXPECT_EQ(s->path(), folder.path() + saver.pathAfter);
      EXPECT_EQ(stateOf(*s), before);
    }
  }
  TemporaryFolder folder;
  const WorkingDirectory here(folder.path());
  const auto s = traceOf(kSamples);
  s->setPath(folder.path("absent/a.sac"));
  EXPECT_FALSE(s->save() || s->saveAs("absent/a.sac") || s->saveToPath(*s->path()));
  EXPECT_EQ(s->path(), folder.path("absent/a.sac"));
  s->setPath(std::nullopt);
  EXPECT_FALSE(s->save());
}

TEST(SacObjectSaving, OnlyTheSamplesStatedAndPresentAreWritten) {
  TemporaryFolder folder;
  for (const bool swapped : {false, true}) {
    const auto s = traceOf(Samples(301, 1.0f), 0.5f, 10.0f), again = make<S>();
    s->setPath(folder.path("a.sac"));
    s->setSwappedBytes(swapped);
    s->inPlaceDecimate_UsingTempData(3, *ByteBuffer::zeroed(400));
    ASSERT_EQ(s->myData()->length(), 632u + 4 * 301);
    ASSERT_TRUE(s->save() && again->initWithPath(folder.path("a.sac")));
    EXPECT_EQ(again->myData()->length(), 632u + 4 * 100);
    EXPECT_EQ(again->swappedBytes(), swapped);
    EXPECT_EQ(samplesIn(*again), samplesIn(*s));
    s->setNpts(INT32_MAX);  // more than there are
    ASSERT_TRUE(s->save());
    EXPECT_EQ(folder.read("a.sac").size(), 632u + 4 * 301);
    s->setNpts(-1);
    ASSERT_TRUE(s->save());
    EXPECT_EQ(folder.read("a.sac").size(), 632u);
  }
}

Ref<S> fullObject() {
  TemporaryFolder folder;
  CapturedLog captured;
  auto s = make<S>();
  s->initWithPath(folder.write("a.sac", foreign(sacImage(kSamples))));
  s->setMyFileName("name");
  s->setLabelString("label");
  s->setTag(-7);
  s->setVerbose(3);
  s->setMSeisHasChanged(true);
  s->setMSeisIsLocked(true);
  return s;
}

TEST(SacObjectSaving, ArchivesAndCopiesHoldAllFieldsAndAreIndependent) {
  const auto s = fullObject();
  const auto bytes = archive(*s);
  const std::string archived(bytes->bytes(), bytes->bytes() + bytes->length());
  for (const char* key :
       {"SacObject", "myData", "mSeisHasChanged", "mSeisIsLocked", "myPath", "myFileName",
        "labelString", "myReferenceDate", "mySeisReferenceTime", "tag", "verbose", "swappedBytes"})
    EXPECT_THAT(archived, testing::HasSubstr(key));

  const std::string image = imageOf(*s), state = stateOf(*s);
  for (const Ref<S>& copy : {unarchive<S>(*bytes), s->copyWithZone()}) {
    EXPECT_EQ(imageOf(*copy), image);
    EXPECT_EQ(stateOf(*copy), state);
    EXPECT_EQ(copy->path(), s->path());
    copy->FlipPolarity();
    copy->shiftTimesBy(5.0f);
    copy->setLabelString("other");
    EXPECT_EQ(imageOf(*s), image);
    EXPECT_EQ(stateOf(*s), state);
  }
  s->setEndTime(0.0f);
  EXPECT_EQ(s->copyWithZone()->e(), 12.0f);  // a copy's end time is computed again
  EXPECT_EQ(unarchive<S>(*archive(*s))->e(), 0.0f);
  EXPECT_FALSE(make<S>()->copyWithZone()->myData());
  s->setMyData(bufferOf("short"));
  EXPECT_FALSE(unarchive<S>(*archive(*s))->isSacFile());
}

TEST(SacObjectSaving, RetainCountsAreLoggedAtTheEnd) {
  auto s = fullObject();
  const Ref<ByteBuffer> shared = s->myData();
  s->setLabelString(std::nullopt);
  s->setMyReferenceDate(std::nullopt);
  s->setVerbose(4);
  CapturedLog captured;
  s->copyWithZone();
  EXPECT_TRUE(captured.texts.empty());
  s->setVerbose(5);
  s = nullptr;
  EXPECT_THAT(captured.texts,
              ElementsAre("Object: name", "myData retainCount: 2", "myPath retainCount: 1",
                          "myFileName retainCount: 1", "myReferenceDate retainCount: 0",
                          "mySeisReferenceTime retainCount: 1", "myFERegionString retainCount: 1"));
}

}  // namespace
}  // namespace krosac
