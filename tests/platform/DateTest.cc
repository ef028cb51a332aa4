#include "krosac/platform/Date.h"

#include <gtest/gtest.h>

#include <cmath>
#include <cstdint>
#include <ctime>
#include <limits>
#include <random>

namespace krosac {
namespace {

constexpr std::int32_t kMost = std::numeric_limits<std::int32_t>::max();

bool operator==(const Date::Components& c, const std::tm& t) {
  return c.year == t.tm_year + 1900 && c.month == t.tm_mon + 1 && c.day == t.tm_mday &&
         c.hour == t.tm_hour && c.minute == t.tm_min && c.second == t.tm_sec;
}

TEST(DateTest, AgreesWithTheSystemsCalendarBothWays) {
  std::mt19937_64 random(7);
  std::uniform_int_distribution<std::int64_t> seconds(-100'000'000'000, 300'000'000'000);
  for (int i = 0; i < 20000; ++i) {
    const std::time_t t = seconds(random);
    std::tm expected{};
    ASSERT_NE(gmtime_r(&t, &expected), nullptr);
    const Date date{static_cast<double>(t) + 0.75};
    const Date::Components c = date.components();
    ASSERT_TRUE(c == expected) << t;
    ASSERT_EQ(Date::fromComponents(c).secondsSince1970, static_cast<double>(t));
  }
}

TEST(DateTest, CarriesComponentsOutsideTheirRanges) {
  const struct {
    Date::Components given;
    const char* text;
  } cases[] = {
      {{2011, 3, 11, 5, 46, 23}, "2011-03-11 05:46:23 +0000"},
      {{2010, 15, 11, 5, 46, 23}, "2011-03-11 05:46:23 +0000"},
      {{2000, 2, 30, 0, 0, 0}, "2000-03-01 00:00:00 +0000"},
      {{1900, 2, 29, 0, 0, 0}, "1900-03-01 00:00:00 +0000"},
      {{2004, 0, 0, 0, 0, -1}, "2003-11-29 23:59:59 +0000"},
      {{1970, -11, 1, 24, 60, 60}, "1969-01-02 01:01:00 +0000"},
      {{0, 1, 1, 0, 0, 0}, "0000-01-01 00:00:00 +0000"},
  };
  for (const auto& c : cases) EXPECT_EQ(Date::fromComponents(c.given).description(), c.text);
}

TEST(DateTest, RefusesNoComponentsAndNoSeconds) {
  const Date far = Date::fromComponents({kMost, kMost, kMost, kMost, kMost, kMost});
  EXPECT_NEAR(far.secondsSince1970 / 31556952.0, kMost + kMost / 12.0 + kMost / 365.2425, 1e7);
  EXPECT_EQ(far.description(), "9999999-12-31 23:59:59 +0000");
  EXPECT_LT(Date::fromComponents({-kMost - 1, -kMost - 1, -kMost - 1, 0, 0, 0}).secondsSince1970,
            -6e16);
  EXPECT_EQ(Date{-HUGE_VAL}.description(), "-9999999-01-01 00:00:00 +0000");
  EXPECT_EQ(Date{std::nan("")}.description(), "1970-01-01 00:00:00 +0000");
  EXPECT_EQ(Date{-0.25}.description(), "1969-12-31 23:59:59 +0000");
}

}  // namespace
}  // namespace krosac
