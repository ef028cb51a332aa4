#include "krosac/platform/Log.h"

#include <gtest/gtest.h>

#include <clocale>
#include <string>

#include "CapturedLog.h"
#include "krosac/platform/Text.h"

namespace krosac {
namespace {

TEST(LogTest, ASinkGetsTheExactTextAndStandardErrorALineBreak) {
  const std::string longText(5000, 'x');
  {
    CapturedLog captured;
    log("%s and %d%%\n", "text", 5);
    log("%s", longText.c_str());
    EXPECT_EQ(captured.texts, (std::vector<std::string>{"text and 5%\n", longText}));
  }
  testing::internal::CaptureStderr();
  log("one");
  log("two\n");
  log("%s", "");
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "one\ntwo\n\n");
}

TEST(LogTest, NumbersPrintAlikeInEveryLocale) {
  const char* comma = nullptr;
  for (const char* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "uk_UA.UTF-8"}) {
    if (!comma) comma = std::setlocale(LC_ALL, name);
  }
  EXPECT_EQ(formatText("%.3f %8.2e", 1234.5, -0.001), "1234.500 -1.00e-03");
  std::setlocale(LC_ALL, "C");
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST(TextTest, FieldsAreTrimmedAtBothEndsAndEndAtANul) {
  const struct {
    std::string field, expected;
  } cases[] = {{"TLY     ", "TLY"},
               {"  A B\t\n ", "A B"},
               {"ABCDEFGH", "ABCDEFGH"},
               {"        ", ""},
               {std::string("AB\0CDEF ", 8), "AB"},
               {std::string(8, '\0'), ""}};
  for (const auto& c : cases) EXPECT_EQ(trimmedField(c.field.data(), 8), c.expected);
}

TEST(TextTest, PathsAreTakenApartAndJoined) {
  const struct {
    const char *path, *last;
  } cases[] = {{"/a/b.SAC", "b.SAC"}, {"b.SAC", "b.SAC"}, {"./", "."},
               {"/a/b//", "b"},       {"/", "/"},         {"", ""}};
  for (const auto& c : cases) EXPECT_EQ(lastPathComponent(c.path), c.last) << c.path;
  EXPECT_EQ(joinedPath("/a", "b"), "/a/b");
  EXPECT_EQ(joinedPath("/a/", "/b"), "/a/b");
  EXPECT_EQ(joinedPath("/", "b"), "/b");
  EXPECT_EQ(joinedPath("", "b"), "b");
}

}  // namespace
}  // namespace krosac
