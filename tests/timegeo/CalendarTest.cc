#include "krosac/timegeo/Calendar.h"

#include <gtest/gtest.h>

#include <climits>

#include "krosac/platform/Date.h"

namespace krosac {
namespace {

TEST(Calendar, AgreesWithDateArithmeticOnEveryDay) {
  std::int32_t year = -411, month = 0, date = 0, day = 365;
  for (Date midnight = Date::fromComponents({-410, 1, 1, 0, 0, 0}); year <= 2410;
       midnight.secondsSince1970 += 86400) {
    const auto truth = midnight.components();
    if (truth.year != year) {
      ASSERT_TRUE(ndaysinyear(year) == day && is_leap_year(year) == (day == 366)) << year;
      year = truth.year;
      day = 0;
    }
    ASSERT_EQ(monthdate(year, ++day, &month, &date), 1);
    ASSERT_TRUE(month == truth.month && date == truth.day) << year << " day " << day;
    ASSERT_EQ(doy(year, month, date), day) << year << " day " << day;
  }
}

TEST(Calendar, OutsideItsRanges) {
  EXPECT_EQ(doy(2001, INT_MIN, -17), -17);
  EXPECT_EQ(doy(2004, INT_MAX, 1), 336);
  EXPECT_EQ(doy(2001, 12, INT_MAX), INT_MAX);
  std::int32_t month = -7, date = -8;
  EXPECT_TRUE(monthdate(2001, 366, &month, &date) == -1 && month == -7 && date == -8);
  EXPECT_TRUE(monthdate(2001, INT_MIN, &month, &date) == 1 && month == 1 && date == INT_MIN);
}

}  // namespace
}  // namespace krosac
