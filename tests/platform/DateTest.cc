#include "krosac/platform/Date.h"

#include <gtest/gtest.h>

#include <cmath>
#include <ctime>
#include <limits>
#include <random>

#include "krosac/platform/Text.h"

namespace krosac {
namespace {

TEST(DateTest, AgreesWithTheSystemsCalendarBothWays) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> seconds(-100'000'000'000, 300'000'000'000);
  for (int i = 0; i < 20000; ++i) {
    const std::time_t t = seconds(random);
    const std::tm tm = *std::gmtime(&t);
    const Date date{static_cast<double>(t) + 0.75};
    ASSERT_EQ(date.description(),
              formatText("%04d-%02d-%02d %02d:%02d:%02d +0000", tm.tm_year + 1900, tm.tm_mon + 1,
                         tm.tm_mday, tm.tm_hour, tm.tm_min, tm.tm_sec));
    ASSERT_EQ(Date::fromComponents(date.components()).secondsSince1970, static_cast<double>(t));
  }
}

TEST(DateTest, CarriesAnyComponentsAndPrintsAnySeconds) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max(), kLeast = -kMost - 1;
  const Date most = Date::fromComponents({kMost, kMost, kMost, kMost, kMost, kMost});
  const Date least = Date::fromComponents({kLeast, kLeast, kLeast, 0, 0, 0});
  EXPECT_NEAR(most.secondsSince1970 / 31556952.0, kMost + kMost / 12.0 + kMost / 365.2425, 1e7);
  EXPECT_LT(least.secondsSince1970, -6e16);
  const std::pair<Date, const char*> cases[] = {
      {Date::fromComponents({2010, 15, 11, 5, 46, 23}), "2011-03-11 05:46:23 +0000"},
      {Date::fromComponents({2000, 2, 30, 0, 0, 0}), "2000-03-01 00:00:00 +0000"},
      {Date::fromComponents({1900, 2, 29, 0, 0, 0}), "1900-03-01 00:00:00 +0000"},
      {Date::fromComponents({2004, 0, 0, 0, 0, -1}), "2003-11-29 23:59:59 +0000"},
      {Date::fromComponents({1970, -11, 1, 24, 60, 60}), "1969-01-02 01:01:00 +0000"},
      {Date::fromComponents({0, 1, 1, 0, 0, 0}), "0000-01-01 00:00:00 +0000"},
      {most, "9999999-12-31 23:59:59 +0000"},
      {Date{-HUGE_VAL}, "-9999999-01-01 00:00:00 +0000"},
      {Date{std::nan("")}, "1970-01-01 00:00:00 +0000"},
      {Date{-0.25}, "1969-12-31 23:59:59 +0000"}};
  for (const auto& [date, text] : cases) EXPECT_EQ(date.description(), text);
}

}  // namespace
}  // namespace krosac
