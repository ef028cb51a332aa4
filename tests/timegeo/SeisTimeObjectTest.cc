#include "krosac/timegeo/SeisTimeObject.h"

#include <gtest/gtest.h>

#include <array>
#include <climits>
#include <cmath>
#include <random>

#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

// Year, day, hour, minute, second and millisecond.
using Fields = std::array<double, 6>;

// A time with these fields, not normalised.
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
    // All magnitudes up to far beyond the range of a field, with and without whole units.
    const int size = 1 << (i % 22);
    Fields f{i % 5 ? upTo(3000) : 0, upTo(size), upTo(size), upTo(size), upTo(size)};
    f[5] = i % 3 ? upTo(size) / 7 : 1000 * upTo(size / 8 + 1);
    if (i % 4 == 0) f[5] = std::nextafter(f[5], i % 8 ? 1e9 : -1e9);
    ASSERT_EQ(normalised(f), normalisedStepByStep(f)) << "from " << testing::PrintToString(f);
  }
  const Fields cases[][2] = {{{INT_MAX, INT_MAX}, {INT_MAX, INT_MAX % 365}},
                             {{INT_MIN, -1}, {INT_MIN, 365}},
                             {{0, INT_MIN, INT_MIN, INT_MIN, INT_MIN}, {0, INT_MIN, 10, 37, 52}},
                             {{2001, 1, 0, 0, 0, HUGE_VAL}, {2001, 1, 0, 0, 0, HUGE_VAL}}};
  for (const auto& [from, to] : cases) EXPECT_EQ(normalised(from), to);
  const auto time = timeOf({2000, 1, 0, 0, 0, -1e300});
  time->setDOYString();  // longer than its buffer: truncated
  time->formatTime();
  EXPECT_TRUE(time->mSec() >= 0 && time->mSec() < 60 && time->mHr() >= 0 && time->mHr() < 24);
}

TEST(SeisTimeObject, AddsAndSubtracts) {
  const auto time = make<SeisTimeObject>();
  time->initWithValues_month_date_hour_minute_second_millisecond(2003, 12, 31, 23, 59, 59, 700.0);
  time->addSeconds(0.5f);
  EXPECT_STREQ(time->DOYcString(), "2004 (001) 00:00:00.200");
  time->subtractSeconds(0.5f);
  time->addMinutesSeconds_Seconds(1441, 0.25f);
  EXPECT_STREQ(time->YMDcString(), "2004/01/02 00:00:59.950");
  time->subtractMinutesSeconds_Seconds(1441, 0.25f);
  time->addSeisTimeObject(*timeOf({0, 366, 1, 2, 1, 300}));
  EXPECT_STREQ(time->YMDcString(), "2005/01/01 01:02:01.000");
  time->subtractMinutesSeconds_Seconds(INT_MIN, 0);
  EXPECT_EQ(fieldsOf(time), normalisedStepByStep({2005, 1, 1, 2 - 1.0 * INT_MIN, 1}));
  time->subtractSeconds(-1e35f);
  EXPECT_EQ(time->mYr(), INT_MAX);
  for (const auto& [seconds, text] :
       {std::pair{1.0f, "2001 (000) 23:59:59.000"}, {86401.0f, "2000 (364) 23:59:59.000"}}) {
    const auto newYear = timeOf({2001, 1});
    newYear->subtractSeconds(seconds);
    EXPECT_STREQ(newYear->DOYcString(), text) << "the borrow is that of the later year";
  }
  // In single precision, 0.1 s is exactly 100 ms.
  const auto other = timeOf({2004, 1});
  other->addSeconds(0.1f);
  EXPECT_EQ(other->mMsec(), 100.0);
}

TEST(SeisTimeObject, DifferencesHave365DaysPerYearAndReplaceTheReceiver) {
  const std::tuple<Fields, Fields, Fields, float> cases[] = {
      {{2011, 70, 5, 46, 23, 250}, {2011, 70, 5, 46, 24}, {0, -1, 23, 59, 59, 250}, -0.75f},
      {{2012, 10, 1}, {2002, 10}, {10, 0, 1}, 315363600.0f}};
  for (const auto& [late, early, difference, seconds] : cases) {
    const auto time = timeOf(late);
    EXPECT_EQ(time->differenceInSecondsFrom(*timeOf(early)), seconds);
    EXPECT_EQ(fieldsOf(time), difference);
  }
  EXPECT_EQ(timeOf({INT_MAX, INT_MAX, INT_MAX})->secondsValue(), INT_MAX * 31626000.0);
}

TEST(SeisTimeObject, ComparesFieldByField) {
  const Fields base{2000, 5, 5, 5, 5, 5};
  for (std::size_t i = 0; i < base.size(); ++i) {
    Fields lower = base, mixed = base;
    lower[i] = --mixed[i];
    ++mixed[(i + 1) % 6];
    const auto a = timeOf(lower), b = timeOf(base), c = timeOf(mixed);
    EXPECT_TRUE(a->lessThanSeisTime(*b) && b->greaterThanSeisTime(*a)) << i;
    EXPECT_FALSE(b->lessThanSeisTime(*a) || a->equalToSeisTime(*b) || c->equalToSeisTime(*b)) << i;
    EXPECT_FALSE(c->lessThanSeisTime(*b) || b->lessThanSeisTime(*c)) << "neither is earlier";
  }
  const auto late = timeOf({2000, 2, 0, 0, 60}), early = timeOf({2000, 1, 0, 0, 60});
  EXPECT_TRUE(late->lessThanEqualToSeisTime(*early));
  EXPECT_TRUE(late->mMn() == 1 && early->mMn() == 1) << "both are normalised";
  EXPECT_TRUE(early->greaterThanEqualToSeisTime(*late));
  EXPECT_TRUE(late->equalToSeisTime(*timeOf({2000, 2, 0, 0, 60})));
  EXPECT_FALSE(late->lessThanSeisTime(*late));
}

TEST(SeisTimeObject, CopiesNormalisedAndArchivesAsItIs) {
  const auto time = timeOf({1999, 7, 1, 2, 3, 456});
  EXPECT_STREQ(time->YMDcString(), "1999/01/07 01:02:03.456");
  time->setMMonth(3);
  time->setMSec(63);
  EXPECT_STREQ(make<SeisTimeObject>()->initWithTimeObject(*time)->YMDcString(),
               "1999/01/07 01:03:03.456");
  EXPECT_STREQ(time->copyWithZone()->DOYcString(), "1999 (066) 01:03:03.456");
  time->setDOYString();
  EXPECT_STREQ(time->mString(), "1999 (007) 01:02:63.456");
  time->setYMDString();
  EXPECT_STREQ(time->mString(), "1999/03/07 01:02:63.456");
  const auto decoded = archivedCopy(*time);
  EXPECT_EQ(fieldsOf(decoded), fieldsOf(time));
  EXPECT_TRUE(decoded->mMonth() == 3 && decoded->mDate() == 7);
  EXPECT_STREQ(decoded->mString(), time->mString());
  time->setMMsec(-1e-20);
  EXPECT_LT(time->copyWithZone()->mMsec(), 1000.0);
}

}  // namespace
}  // namespace krosac
