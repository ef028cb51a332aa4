#include "krosac/timegeo/SeisTimeObject.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>

#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

constexpr auto kMost = std::numeric_limits<std::int32_t>::max();
constexpr auto kLeast = std::numeric_limits<std::int32_t>::min();

// Year, day, hour, minute, second and millisecond.
using Fields = std::array<double, 6>;

// A time whose fields are as given, not normalised.
Ref<SeisTimeObject> timeOf(const Fields& f) {
  auto time = make<SeisTimeObject>();
  time->setMYr(static_cast<int>(f[0]));
  time->setMDay(static_cast<int>(f[1]));
  time->setMHr(static_cast<int>(f[2]));
  time->setMMn(static_cast<int>(f[3]));
  time->setMSec(static_cast<int>(f[4]));
  time->setMMsec(f[5]);
  return time;
}

Fields fieldsOf(const Ref<SeisTimeObject>& t) {
  return {1.0 * t->mYr(), 1.0 * t->mDay(), 1.0 * t->mHr(),
          1.0 * t->mMn(), 1.0 * t->mSec(), t->mMsec()};
}

Fields normalised(const Fields& f) {
  const auto time = timeOf(f);
  time->formatTime();
  return fieldsOf(time);
}

// Normalisation one borrowed unit at a time.
Fields normalisedStepByStep(Fields f) {
  auto& [yr, day, hr, mn, sec, msec] = f;
  const double k = msec >= 1000.0 ? std::floor(msec / 1000.0) : 0.0;
  sec += k;
  msec -= k * 1000.0;
  for (; msec < 0.0; msec += 1000.0) --sec;
  const auto carry = [](double& low, int size, double& high) {
    for (; low >= size; low -= size) ++high;
    for (; low < 0; low += size) --high;
  };
  carry(sec, 60, mn);
  carry(mn, 60, hr);
  carry(hr, 24, day);
  const double length = yr == 0 ? 365 : 365 + is_leap_year(static_cast<int>(yr));
  if (day > length) yr += std::trunc(day / length), day = std::fmod(day, length);
  for (; day < 0 && yr != 0; --yr) day += ndaysinyear(static_cast<int>(yr));
  return f;
}

TEST(SeisTimeObject, NormalisesAsStepByStep) {
  std::mt19937 random(19600522);
  const auto upTo = [&](int size) {
    return 1.0 * std::uniform_int_distribution<int>(-size, size)(random);
  };
  for (int i = 0; i < 30000; ++i) {
    // Every size from nothing to far beyond the field, and all alignments to whole units.
    const int size = 1 << (i % 22);
    Fields f{i % 5 ? upTo(3000) : 0, upTo(size), upTo(size), upTo(size), upTo(size)};
    f[5] = i % 3 ? upTo(size) / 7 : 1000 * upTo(size / 8 + 1);
    if (i % 4 == 0) f[5] = std::nextafter(f[5], i % 8 ? 1e9 : -1e9);
    ASSERT_EQ(normalised(f), normalisedStepByStep(f)) << "from " << testing::PrintToString(f);
  }
}

TEST(SeisTimeObject, NormalisesAnyValues) {
  for (const double start : {-HUGE_VAL, -1e300, -1e17, 999.0, 1e17, 1e300, HUGE_VAL, 1.0 * NAN}) {
    for (const double any : {1.0 * kLeast, -1.0, 0.0, 1.0, 1.0 * kMost}) {
      const auto [yr, day, hr, mn, sec, msec] = normalised({any, any, any, -1, any, start});
      ASSERT_TRUE(hr >= 0 && hr < 24 && mn >= 0 && mn < 60 && sec >= 0 && sec < 60);
      ASSERT_TRUE(!std::isfinite(start) || (msec >= 0 && msec < 1000)) << start;
    }
  }
  const Fields cases[][2] = {
      {{kMost, kMost}, {kMost, kMost % 365}},
      {{kLeast, -1}, {kLeast, 365}},
      {{0, kLeast, kLeast, kLeast, kLeast}, {0, kLeast, 10, 37, 52}},
      {{2001, 1, 0, 0, 0, HUGE_VAL}, {2001, 1, 0, 0, 0, HUGE_VAL}},
      {{2001, 730}, {2003, 0}},
      {{2000, 0, 0, 0, -1}, {1999, 365, 23, 59, 59}},
      {{1, -400}, {0, -35}},
  };
  for (const auto& [from, to] : cases) EXPECT_EQ(normalised(from), to);
  timeOf({2000, 1, 0, 0, 0, -1e300})->setDOYString();  // Longer than its place: cut off.
}

TEST(SeisTimeObject, AddsAndSubtracts) {
  const auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2003, 12, 31, 23, 59, 59, 700.0);
  time->addSeconds(0.5f);
  EXPECT_STREQ(time->DOYcString(), "2004 (001) 00:00:00.200");
  time->subtractSeconds(0.5f);
  EXPECT_STREQ(time->DOYcString(), "2004 (000) 23:59:59.700");
  time->addMinutesSeconds_Seconds(1441, 0.25f);
  EXPECT_STREQ(time->YMDcString(), "2004/01/02 00:00:59.950");
  time->subtractMinutesSeconds_Seconds(1441, 0.25f);
  EXPECT_STREQ(time->YMDcString(), "2004/01/00 23:59:59.700");
  time->addSeisTimeObject(*timeOf({0, 366, 1, 2, 1, 300}));
  EXPECT_STREQ(time->YMDcString(), "2005/01/01 01:02:01.000");
  time->subtractMinutesSeconds_Seconds(kLeast, -1e35f);
  EXPECT_EQ(time->mYr(), kMost);
  // Formed in single precision, 0.1 s are exactly 100 ms.
  const auto other = timeOf({2004, 1});
  other->addSeconds(0.1f);
  EXPECT_EQ(other->mMsec(), 100.0);
}

TEST(SeisTimeObject, DifferencesHaveFlatYears) {
  const std::tuple<Fields, Fields, Fields, float> cases[] = {
      {{2000, 366}, {2001, 1}, {-1, 365}, 0.0f},
      {{2011, 70, 5, 46, 23, 250}, {2011, 70, 5, 46, 24}, {0, -1, 23, 59, 59, 250}, -0.75f},
      {{2012, 10, 1}, {2002, 10}, {10, 0, 1}, 315363600.0f}};
  for (const auto& [late, early, difference, seconds] : cases) {
    const auto time = timeOf(late);
    EXPECT_EQ(time->differenceInSecondsFrom(*timeOf(early)), seconds);
    EXPECT_EQ(fieldsOf(time), difference) << "the receiver holds the difference";
  }
  EXPECT_EQ(timeOf({kMost, kMost, kMost, kMost, kMost})->secondsValue(), kMost * 31626061.0);
}

TEST(SeisTimeObject, ComparesFieldByField) {
  const Fields base{2000, 5, 5, 5, 5, 5};
  const struct {
    Fields a, b;
    bool less, equal;
  } cases[] = {{{2000, 5, 5, 4, 65, 5}, base, false, true},
               {{2000, 5, 5, 5, 5, std::nextafter(5.0, 0.0)}, base, true, false},
               {{2000, 4, 5, 5, 5, 5}, base, true, false},
               {{2001, 4, 5, 5, 5, 5}, base, false, false},
               {{2000, 6, 4, 5, 5, 5}, base, false, false},
               {{2000, 5, 6, 4, 5, 5}, base, false, false},
               {{2000, 5, 5, 6, 4, 5}, base, false, false},
               {{2000, 5, 5, 5, 6, 4}, base, false, false},
               {{2000, 5, 5, 5, 4, 6}, base, false, false}};
  for (const auto& c : cases) {
    const auto a = timeOf(c.a), b = timeOf(c.b);
    EXPECT_TRUE(a->lessThanSeisTime(*b) == c.less && b->greaterThanSeisTime(*a) == c.less);
    EXPECT_FALSE(b->lessThanSeisTime(*a) || a->greaterThanSeisTime(*b));
    EXPECT_EQ(timeOf(c.b)->equalToSeisTime(*timeOf(c.a)), c.equal);
  }
  const auto late = timeOf({2000, 2, 0, 0, 60}), early = timeOf({2000, 1, 0, 0, 60});
  EXPECT_TRUE(late->lessThanEqualToSeisTime(*early) && early->greaterThanEqualToSeisTime(*late));
  EXPECT_TRUE(late->mMn() == 1 && early->mMn() == 1) << "both are normalised";
}

TEST(SeisTimeObject, CopiesNormalisedAndArchivesAsItIs) {
  const auto time = timeOf({1999, 7, 1, 2, 3, 456});
  EXPECT_STREQ(time->YMDcString(), "1999/01/07 01:02:03.456");
  time->setMMonth(3);
  time->setMSec(63);
  EXPECT_STREQ(make<SeisTimeObject>()->initWithTimeObject(*time)->YMDcString(),
               "1999/01/07 01:03:03.456");
  EXPECT_STREQ(time->copyWithZone()->DOYcString(), "1999 (066) 01:03:03.456");
  const auto decoded = archivedCopy(*time);
  ASSERT_TRUE(decoded);
  EXPECT_EQ(fieldsOf(decoded), fieldsOf(time));
  EXPECT_TRUE(decoded->mMonth() == 3 && decoded->mDate() == 7);
}

}  // namespace
}  // namespace krosac
