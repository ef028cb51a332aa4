#include "krosac/timegeo/Calendar.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <limits>

#include "krosac/platform/Date.h"

namespace krosac {
namespace {

TEST(Calendar, AgreesWithDateArithmeticOnEveryDay) {
  std::int32_t month = 0, date = 0, day = 0;
  Date midnight = Date::fromComponents({-410, 1, 1, 0, 0, 0});
  for (std::int32_t year = -410; year <= 2410;) {
    const auto truth = midnight.components();
    if (truth.year != year) {
      ASSERT_TRUE(ndaysinyear(year) == day && is_leap_year(year) == (day == 366)) << year;
      year = truth.year;
      day = 0;
    }
    ASSERT_EQ(monthdate(year, ++day, &month, &date), 1);
    ASSERT_TRUE(month == truth.month && date == truth.day) << year << " day " << day;
    ASSERT_EQ(doy(year, month, date), day) << year << " day " << day;
    midnight.secondsSince1970 += 86400;
  }
}

TEST(Calendar, OutsideItsRanges) {
  using Limits = std::numeric_limits<std::int32_t>;
  EXPECT_EQ(doy(2001, Limits::min(), -17), -17);
  EXPECT_EQ(doy(2001, 13, 1), 335);
  EXPECT_EQ(doy(2004, Limits::max(), 1), 336);
  EXPECT_EQ(doy(2001, 12, Limits::max()), Limits::max());
  std::int32_t month = -7, date = -8;
  EXPECT_TRUE(monthdate(2001, 366, &month, &date) == -1 && month == -7 && date == -8);
  for (const std::int32_t day : {0, -31, Limits::min()}) {
    EXPECT_TRUE(monthdate(2001, day, &month, &date) == 1 && month == 1 && date == day) << day;
  }
  EXPECT_EQ(monthdate(2000, 60, nullptr, nullptr), 1);
}

}  // namespace
}  // namespace krosac
