// Indexes, dates, texts, the log, and the search for data files.
#include "krosac/platform/internal/Text.h"

#include <clocale>
#include <cmath>
#include <ctime>
#include <random>

#include "CapturedLog.h"
#include "TemporaryFolder.h"
#include "krosac/platform/Date.h"
#include "krosac/platform/LastReason.h"
#include "krosac/platform/Resources.h"
#include "krosac/platform/internal/TruncIndex.h"

namespace krosac {
namespace {

TEST(TruncIndexTest, IndexesAreClampedTo32BitsAndOtherIntegersRefused) {
  for (const auto& [quotient, index, integer] : {std::tuple(-0.9, std::int64_t{0}, 0),
                                                 {1.9, 1, 1},
                                                 {-1.9, -1, -1},
                                                 {2147483647.9, INT32_MAX, INT32_MAX},
                                                 {2147483648.0, INT32_MAX, kNoInt32},
                                                 {-2147483649.0, INT32_MIN, kNoInt32},
                                                 {1e30, INT32_MAX, kNoInt32},
                                                 {-HUGE_VAL, INT32_MIN, kNoInt32},
                                                 {std::nan(""), kNoIndex, kNoInt32}}) {
    EXPECT_EQ(truncIndex(quotient), index) << quotient;
    EXPECT_EQ(truncInt32(quotient), integer) << quotient;
  }
}

TEST(DateTest, AgreesWithTheSystemCalendarInBothDirections) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> seconds(-100'000'000'000, 300'000'000'000);
  for (int i = 0; i < 20000; ++i) {
    const std::time_t t = seconds(random);
    const Date date{static_cast<double>(t) + 0.75};
    const std::tm tm = *std::gmtime(&t);
    ASSERT_EQ(date.description(),
              formatText("%04d-%02d-%02d %02d:%02d:%02d +0000", tm.tm_year + 1900, tm.tm_mon + 1,
                         tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec));
    ASSERT_EQ(Date::fromComponents(date.components()).secondsSince1970, static_cast<double>(t));
  }
}

TEST(DateTest, AcceptsAnyComponentsAndAnySeconds) {
  constexpr auto kMost = INT32_MAX;
  const Date most = Date::fromComponents({kMost, kMost, kMost, kMost, kMost, kMost});
  EXPECT_NEAR(most.secondsSince1970 / kMost, 31556952 * 13 / 12.0 + 86400 + 3600 + 60 + 1, 100);
  for (const auto& [date, text] :
       {std::pair(Date::fromComponents({2004, 0, 0, 0, 0, -1}), "2003-11-29 23:59:59 +0000"),
        {Date::fromComponents({1970, -11, 1, 24, 60, 60}), "1969-01-02 01:01:00 +0000"},
        {most, "9999999-12-31 23:59:59 +0000"},
        {Date{-HUGE_VAL}, "-9999999-01-01 00:00:00 +0000"},
        {Date{std::nan("")}, "1970-01-01 00:00:00 +0000"}})
    EXPECT_EQ(date.description(), text);
}

TEST(TextTest, TrimsFieldsAndSplitsAndJoinsPaths) {
  for (const auto& [field, text] : {std::pair("  A B\t\n ", "A B"),
                                    {"ABCDEFGHI", "ABCDEFGH"},
                                    {"        ", ""},
                                    {"AB\0CDEF ", "AB"}})
    EXPECT_EQ(trimmedField(field, 8), text);
  for (const auto& [path, last] :
       {std::pair("/a/b.SAC", "b.SAC"), {"b", "b"}, {"/a/b//", "b"}, {"/", "/"}, {"", ""}})
    EXPECT_EQ(lastPathComponent(path), last) << path;
  for (const auto& [folder, name, path] :
       {std::tuple("/a", "b", "/a/b"), {"/a/", "/b", "/a/b"}, {"/", "b", "/b"}, {"", "b", "b"}})
    EXPECT_EQ(joinedPath(folder, name), path);
}

TEST(LogTest, SinksReceiveTheExactTextAndStandardErrorWholeLinesInAnyLocale) {
  const std::string longText(5000, 'x');
  const auto logTexts = [&] {
    log("%.1f and %d%%\n", 0.5, 5);
    log("%s", longText.c_str());
    log("%s", "");
  };
  std::setlocale(LC_ALL, "de_DE.UTF-8");  // a decimal comma, if this locale is installed
  EXPECT_EQ(printedBy(logTexts), "|0.5 and 5%\n" + longText + "\n\n");
  std::setlocale(LC_ALL, "C");
  CapturedLog captured;
  logTexts();
  EXPECT_EQ(captured.texts, (std::vector<std::string>{"0.5 and 5%\n", longText, ""}));
}

TEST(ResourcesTest, TheFolderOfTheEnvironmentComesFirstAndThePlacesTriedAreLoggedOnce) {
  const TemporaryFolder folder;
  CapturedLog log;
  EXPECT_FALSE(pathForResource("iasp91_none", "txt") || pathForResource("iasp91_none", "txt"));
  ASSERT_EQ(log.texts.size(), 1u);
  EXPECT_EQ(log.texts[0], lastReason());
  EXPECT_NE(log.texts[0].find("/share/krosac/data/iasp91_none.txt"), std::string::npos);
  ::setenv("KROSAC_DATA", folder.path().c_str(), 1);
  EXPECT_TRUE(pathForResource("iasp91_p", "txt")) << "the installed file";
  const std::string file = folder.write("iasp91_p.txt", "1\n");
  EXPECT_EQ(pathForResource("iasp91_p", "txt"), file);
  EXPECT_STREQ(lastReason(), "");
  std::filesystem::create_directory(folder.path("iasp91_s.txt"));
  EXPECT_NE(pathForResource("iasp91_s", "txt"), folder.path("iasp91_s.txt")) << "is a folder";
  ::unsetenv("KROSAC_DATA");
}

TEST(ResourcesTest, ARelativeFolderIsResolvedWhenItIsFirstRead) {
  const TemporaryFolder folder;
  const auto former = std::filesystem::current_path();
  const std::string file = folder.write("iasp91_p.txt", "1\n");
  std::filesystem::current_path(folder.path());
  ::setenv("KROSAC_DATA", ".", 1);
  pathForResource("jbtables", "txt");
  std::filesystem::current_path(former);
  EXPECT_TRUE(std::filesystem::equivalent(*pathForResource("iasp91_p", "txt"), file));
  ::unsetenv("KROSAC_DATA");
}

}  // namespace
}  // namespace krosac
