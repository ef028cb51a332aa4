#include <gtest/gtest.h>

#include "seismogram/Traces.h"

namespace krosac {
namespace {

// The header's reference time, written as SeisTimeObject does.
std::string headerTime(const S& s) {
  const SacHeader& h = *s.GetSacHeader();
  return formatText("%04d (%03d) %02d:%02d:%02d.%03d", h.NZYEAR, h.NZJDAY, h.NZHOUR, h.NZMIN,
                    h.NZSEC, h.NZMSEC);
}

Ref<SeisTimeObject> timeOf(int year, int month, int date, int hour, int minute, int second,
                           double ms = 0.0) {
  return make<SeisTimeObject>()->initWithValues_month_date_hour_minute_second_millisecond(
      year, month, date, hour, minute, second, ms);
}

// A trace of 2003 day 60 (March 1st) 01:02:03.456 with B 10, E 11, O -20, picks 100 to 111 by
// their keys and T5 undefined.
Ref<S> datedTrace() {
  const Words date = {{280, 2003}, {284, 60}, {288, 1}, {292, 2}, {296, 3}, {300, 456}};
  auto s = make<S>();
  s->initWithNSData_withPath(bufferOf(sacImage({1, 2, 3}, date)), "a.sac");
  s->fixEndTime();
  s->setoriginTimeOffset(-20.0f);
  for (int key = 0; key <= 11; ++key)
    s->setTimePickKey_Value(key, 100.0f + static_cast<float>(key));
  s->setTimePickKey_Value(5, -12345.0f);
  return s;
}

TEST(SacObjectReferenceTime, SettingAdjustingAndMoving) {
  enum Moves { kNone, kAllButT0, kAllButF, kAll };
  static const Date date = Date::fromComponents({2003, 3, 1, 1, 1, 53});
  static const auto before = timeOf(2003, 3, 1, 1, 1, 53, 456.25);
  const std::string cut = "2003 (060) 01:01:53.000", whole = "2003 (060) 01:01:53.456";
  const std::tuple<void (*)(S&), std::string, float, Moves> cases[] = {
      {[](S& s) { s.setReferenceTimeWithNSCalendarDate(date); }, cut, 0.0f, kNone},
      {[](S& s) { s.setReferenceTimeWithNSDate(date); }, cut, 0.0f, kNone},
      {[](S& s) { s.replaceReferenceTimeWith(before); }, whole, 0.0f, kNone},
      {[](S& s) { s.adjustReferenceTimeToNSCalendarDate(date); }, cut, 10.456f, kAllButT0},
      {[](S& s) { s.adjustReferenceTimeToNSDate(date); }, cut, 10.456f, kAllButT0},
      {[](S& s) { s.setReferenceTime(*timeOf(2003, 3, 2, 2, 2, 3, 456)); },
       "2003 (061) 02:02:03.456", -90000.0f, kAllButT0},
      {[](S& s) { s.setReferenceTime(*timeOf(2002, 3, 1, 1, 2, 3, 456)); },
       "2002 (060) 01:02:03.456", 31536000.0f, kAllButT0},
      {[](S& s) { s.ZeroThisTime(2.5f); }, "2003 (060) 01:02:05.956", -2.5f, kAllButF},
      {[](S& s) { s.shiftTimesBy(-4.0f); }, "2003 (060) 01:01:59.456", 4.0f, kAll},
      {[](S& s) { s.ZeroStartTime(); }, "2003 (060) 01:02:13.456", -10.0f, kAllButF},
      {[](S& s) { s.ZeroOriginTime(); }, "2003 (060) 01:01:43.456", 20.0f, kAllButF},
      {[](S& s) { s.ZeroPTime(); }, "2003 (060) 01:03:53.456", -110.0f, kAllButF},
      {[](S& s) { s.setDistance(60.0f), s.ReduceByVelocity(8.0f); },  // 60 / 8 - -20
       "2003 (060) 01:02:30.956", -27.5f, kAllButF}};
  for (const auto& [apply, time, shift, moves] : cases) {
    SCOPED_TRACE(testing::Message() << time << shift);
    const auto s = datedTrace();
    apply(*s);
    EXPECT_EQ(headerTime(*s), time);
    EXPECT_EQ(s->mySeisReferenceTime()->DOYcString(), time);
    EXPECT_EQ(s->myReferenceDate()->description(), "2003-03-01 01:02:03 +0000");
    EXPECT_EQ(s->mSeisHasChanged(), moves == kAllButT0);
    const float ulp = 1e-5f;  // of hundreds; the shifts of whole days are exact
    EXPECT_NEAR(s->b(), 10 + shift, ulp);
    EXPECT_NEAR(s->e(), 11 + shift, ulp);
    EXPECT_NEAR(s->o(), -20 + shift, ulp);
    for (const int key : {0, 1, 2, 3, 4, 6, 7, 8, 9, 10, 11}) {
      const bool stays = (key == 0 && moves == kAllButT0) || (key == 11 && moves == kAllButF);
      const float start = 100.0f + static_cast<float>(key);
      EXPECT_NEAR(s->timePickKey(key), stays ? start : start + shift, ulp) << key;
    }
    EXPECT_EQ(s->t5(), -12345.0f);
  }
}

TEST(SacObjectReferenceTime, TheObjectItselfIsKeptAndMoved) {
  const auto s = datedTrace();
  const auto time = timeOf(2005, 1, 1, 0, 0, 0);
  s->replaceReferenceTimeWith(time);
  s->setReferenceTime(*timeOf(2004, 1, 1, 0, 0, 0));
  EXPECT_EQ(s->mySeisReferenceTime(), time);
  EXPECT_EQ(time->mYr(), 2004);
  s->replaceReferenceTimeWith(nullptr);
  EXPECT_EQ(headerTime(*s), "2004 (001) 00:00:00.000");
}

TEST(SacObjectReferenceTime, UndefinedValuesStopTheMovesOrStay) {
  const auto s = datedTrace(), untimed = traceOf({1, 2, 3}, 1.0f, 10.0f);
  s->setoriginTimeOffset(-12345.0f);
  s->clearTimePicks();
  const std::string before = imageOf(*s);
  s->ZeroOriginTime();
  s->ZeroPTime();
  EXPECT_EQ(imageOf(*s), before);
  s->setDistance(60.0f);
  s->ReduceByVelocity(8.0f);  // an undefined origin counts as 0
  s->setDistance(-12345.0f);
  s->ReduceByVelocity(8.0f);
  EXPECT_EQ(s->b(), 2.5f);
  s->shiftTimesBy(1.0f);
  s->setReferenceTime(*timeOf(2003, 1, 1, 0, 0, 0));
  for (const float undefined : {s->o(), s->a(), s->f(), s->t5()}) EXPECT_EQ(undefined, -12345.0f);

  untimed->setPTime(50.0f);
  untimed->ZeroThisTime(4.0f);
  untimed->setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2000, 1, 1, 0, 0, 0.0f);
  EXPECT_EQ((Samples{untimed->b(), untimed->e(), untimed->a(), untimed->o()}),
            (Samples{6, 8, 46, -12345}));
  EXPECT_EQ(headerTime(*untimed), "-12345 (-12345) -12345:-12345:-12345.-12345");
}

TEST(SacObjectReferenceTime, OriginTime) {
  const auto s = datedTrace();
  s->setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2003, 2, 28, 1, 2, 63.456f);
  EXPECT_NEAR(s->o(), -86340.0f, 1e-2);  // spacing of floats of that size, here and below
  s->setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(2003, 3, 1, 1, 2, -0.544f);
  EXPECT_NEAR(s->o(), -4.0f, 1e-5);
  EXPECT_STREQ(s->mySeisReferenceTime()->DOYcString(), "2003 (060) 01:02:03.456");
}

}  // namespace
}  // namespace krosac
