#include "krosac/platform/Log.h"

#include <clocale>

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
  const auto speak = [] {
    log("one");
    log("two\n");
    log("%s", "");
  };
  EXPECT_EQ(printedBy(speak), "|one\ntwo\n\n");
}

TEST(TextTest, NumbersPrintAlikeInEveryLocale) {
  const bool comma = std::setlocale(LC_ALL, "de_DE.UTF-8") || std::setlocale(LC_ALL, "fr_FR.UTF-8");
  EXPECT_EQ(formatText("%.3f %8.2e", 1234.5, -0.001), "1234.500 -1.00e-03");
  std::setlocale(LC_ALL, "C");
  if (!comma) GTEST_SKIP() << "no locale with a decimal comma is installed";
}

TEST(TextTest, FieldsAreTrimmedAtBothEndsAndEndAtANul) {
  const std::pair<const char*, const char*> cases[] = {
      {"TLY     ", "TLY"}, {"  A B\t\n ", "A B"}, {"ABCDEFGHI", "ABCDEFGH"},
      {"        ", ""},    {"AB\0CDEF ", "AB"},   {"\0\0\0\0\0\0\0", ""}};
  for (const auto& [field, expected] : cases) EXPECT_EQ(trimmedField(field, 8), expected);
}

TEST(TextTest, PathsAreTakenApartAndJoined) {
  const std::pair<const char*, const char*> lasts[] = {
      {"/a/b.SAC", "b.SAC"}, {"b.SAC", "b.SAC"}, {"./", "."},
      {"/a/b//", "b"},       {"/", "/"},         {"", ""}};
  for (const auto& [path, last] : lasts) EXPECT_EQ(lastPathComponent(path), last) << path;
  const std::tuple<const char*, const char*, const char*> joins[] = {
      {"/a", "b", "/a/b"}, {"/a/", "/b", "/a/b"}, {"/", "b", "/b"}, {"", "b", "b"}};
  for (const auto& [folder, name, path] : joins) EXPECT_EQ(joinedPath(folder, name), path);
}

}  // namespace
}  // namespace krosac
