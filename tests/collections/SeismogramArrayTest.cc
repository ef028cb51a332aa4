#include "krosac/collections/SeismogramArray.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <filesystem>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/LastReason.h"
#include "seismogram/Traces.h"

namespace krosac {
namespace {

namespace fs = std::filesystem;
using Range = std::pair<double, double>;
using testing::ElementsAre;

Ref<SeismogramArray> makeArray() {
  auto array = make<SeismogramArray>();
  array->init();
  return array;
}

TEST(SeismogramArray, ScreensByEveryCriterionThatIsOn) {
  const std::vector<std::string> networks = {"II", "IU"}, channels = {"BHZ"};
  const auto s = traceOf({1});
  const auto distance = makeArray(), quality = makeArray(), names = makeArray();
  distance->setGCarcScreen(true);
  EXPECT_FALSE(distance->screenSeismogram(*s)) << "undefined, though within the default limits";
  distance->setMinGCarc(30.0f);
  distance->setMaxGCarc(90.0f);
  quality->setQualityScreen(true);
  EXPECT_TRUE(quality->screenSeismogram(*s)) << "undefined is the lowest quality";
  quality->setMinQuality(60);
  for (const float x : {29.0f, 30.0f, 59.0f, 60.0f, 90.0f, 91.0f}) {
    s->setGcarc(x);
    s->setIQual(static_cast<std::int32_t>(x));
    EXPECT_EQ(distance->screenSeismogram(*s), x >= 30.0f && x <= 90.0f) << x;
    EXPECT_EQ(quality->screenSeismogram(*s), x >= 60.0f) << x;
  }
  const auto passes = [&](const char* network, const char* component) {
    s->setNetworkID(network);
    s->setComponentName(component);
    return names->screenSeismogram(*s);
  };
  names->setNetworkScreen(true);
  EXPECT_FALSE(passes("IU", "BHZ")) << "no list";
  names->setNetworksPointer(&networks);
  names->setChannelsPointer(&channels);
  EXPECT_TRUE(passes("IU", "BHN"));
  names->setChannelScreen(true);
  EXPECT_TRUE(passes("II  ", " BHZ"));
  EXPECT_FALSE(passes("I", "BHZ") || passes("II", "BH"));
}

TEST(SeismogramArray, LoadsATreeWithAnyContent) {
  const fs::path before = fs::current_path();
  const CapturedLog quiet;
  const TemporaryFolder folder;
  const auto in = [&](const char* name) { return folder.path(name); };
  fs::create_directories(in("data/b/deep"));
  fs::create_directories(in("data/closed"));
  const std::pair<const char*, float> files[] = {{"data/b.sac", 40},
                                                 {"data/a.sac", 50},
                                                 {"data/far.sac", 95},
                                                 {"data/b/deep/x", 60},
                                                 {"elsewhere.sac", 70}};
  for (const auto& [name, arc] : files) {
    const auto s = traceOf({1, 2});
    s->setGcarc(arc);
    s->setPath(in(name));
    ASSERT_TRUE(s->save()) << name;
  }
  folder.write("data/notes.txt", "no seismogram");
  fs::create_symlink("../elsewhere.sac", in("data/link"));
  fs::create_directory_symlink("..", in("data/b/up"));
  fs::create_symlink("itself", in("data/itself"));
  ASSERT_EQ(::mkfifo(in("data/pipe").c_str(), 0600), 0);
  fs::permissions(in("data/closed"), fs::perms::none);

  fs::current_path(folder.path());
  const auto array = makeArray();
  const auto paths = [&] {
    Texts all;
    for (const auto& s : array->theSeismograms()) all.push_back(s->path().value_or("none"));
    return all;
  };
  array->setGCarcScreen(true);
  array->setMaxGCarc(90.0f);
  array->loadSeismogramsFromPath("data");
  EXPECT_THAT(lastReason(), testing::ContainsRegex("^pipe: "));
  for (const std::string path : {"a.sac", "missing", "itself", ""}) {
    array->loadSeismogramsFromPath(path);
    EXPECT_THAT(lastReason(), testing::StartsWith((path.empty() ? "empty path" : path) + ": "));
  }
  EXPECT_THAT(paths(), ElementsAre("a.sac", "b/deep/x", "b.sac", "link"));
  EXPECT_EQ(fs::current_path(), fs::canonical(in("data")));
  makeArray()->loadSeismogramsFromPath("b/deep");
  EXPECT_STREQ(lastReason(), "") << "all of its files were loaded";
  array->setMaxGCarc(55.0f);
  array->filterSeismograms();
  EXPECT_THAT(paths(), ElementsAre("b/deep/x", "link")) << "the accepted ones are removed";
  fs::permissions(in("data/closed"), fs::perms::owner_all);
  fs::current_path(before);
}

TEST(SeismogramArray, ComputesRangesAndCutsToTheCommonWindow) {
  const CapturedLog quiet;
  const auto array = makeArray();
  const auto ranges = [&] {
    return std::vector<Range>{array->relativeTimeRange(), array->gcarcRange(), array->azRange(),
                              array->backazRange()};
  };
  array->equalizeTimeRange();
  EXPECT_EQ(ranges(), std::vector<Range>(4, {1e9, -1e9}));
  const auto first = traceOf(Samples(101)), second = traceOf(Samples(81), 1, 10);
  array->theSeismograms() = {first, nullptr, second};
  for (const auto& [s, x] : {std::pair(first, 0.0f), std::pair(second, 60.0f)}) {
    s->setGcarc(40.0f + x);
    s->setAzimuth(90.0f + x);
    s->setBackazimuth(300.0f - x);
    s->setUserValueKey_Value(2, 0.08f);
  }
  EXPECT_THAT(ranges(),
              ElementsAre(Range(0, 100), Range(40, 100), Range(90, 150), Range(240, 300)));
  // The azimuths are 60 and 120 degrees from 30; pi / 180 with eight digits adds an error of 7e-9.
  const Range gamma = array->gammaRangeForAzimuth_slownessKey(30.0f, 2);
  EXPECT_LE(std::fabs(gamma.first + 0.04) + std::fabs(gamma.second - 0.04), 16e-9);
  EXPECT_EQ(array->gammaRangeForAzimuth_slownessKey(2, 30.0f), gamma);
  array->equalizeTimeRange();
  for (const auto& s : {first, second})
    EXPECT_EQ(std::tuple(s->b(), s->e(), s->npts()), std::tuple(10.0f, 90.0f, 81));
}

}  // namespace
}  // namespace krosac
