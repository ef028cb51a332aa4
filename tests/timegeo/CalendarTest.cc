#include "krosac/timegeo/Calendar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "krosac/platform/Date.h"

namespace krosac {
namespace {

TEST(Calendar, AgreesWithDateArithmeticOnEveryDay) {
  for (std::int32_t year = -410; year <= 2410; ++year) {
    const auto newYear = Date::fromComponents({year, 1, 1, 0, 0, 0}).secondsSince1970;
    const auto nextYear = Date::fromComponents({year + 1, 1, 1, 0, 0, 0}).secondsSince1970;
    ASSERT_EQ(ndaysinyear(year), (nextYear - newYear) / 86400) << year;
    ASSERT_EQ(is_leap_year(year), ndaysinyear(year) - 365) << year;
    for (std::int32_t day = 1; day <= ndaysinyear(year); ++day) {
      const auto truth = Date{newYear + (day - 1) * 86400.0}.components();
      std::int32_t month = 0, date = 0;
      ASSERT_EQ(monthdate(year, day, &month, &date), 1);
      ASSERT_TRUE(month == truth.month && date == truth.day) << year << " day " << day;
      ASSERT_EQ(doy(year, month, date), day) << year << " day " << day;
    }
  }
}

TEST(Calendar, OutsideItsRanges) {
  constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
  constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();
  EXPECT_EQ(doy(2001, kLeast, -17), -17);
  EXPECT_EQ(doy(2001, 13, 1), 335);
  EXPECT_EQ(doy(2004, kMost, 1), 336);
  EXPECT_EQ(doy(2001, 12, kMost), kMost);

  std::int32_t month = -7, date = -8;
  EXPECT_EQ(monthdate(2001, 366, &month, &date), -1);
  EXPECT_EQ(monthdate(2000, 367, &month, &date), -1);
  EXPECT_TRUE(month == -7 && date == -8);
  for (const std::int32_t day : {0, -31, kLeast}) {
    EXPECT_EQ(monthdate(2001, day, &month, &date), 1);
    EXPECT_TRUE(month == 1 && date == day) << day;
  }
  EXPECT_EQ(monthdate(2000, 60, nullptr, nullptr), 1);
}

}  // namespace
}  // namespace krosac
