#include <cmath>

#include "krosac/platform/internal/TruncIndex.h"
#include "krosac/seismogram/internal/SacObjectAccess.h"
#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

constexpr double kSecondsPerDay = 86400.0;
constexpr double kSecondsPerYear = 3.1536e7;  // 365 days; intended

// A new time; empty, with a reason, when memory runs out.
Ref<SeisTimeObject> newTime() {
  clearReason();
  auto time = make<SeisTimeObject>();
  if (!time) setMemoryReason();
  return time;
}

// Empty, with a reason, when memory runs out.
Ref<SeisTimeObject> timeOf(const Date& date) {
  const Date::Components c = date.components();
  auto time = newTime();
  if (!time) return nullptr;
  time->initWithValues_month_date_hour_minute_second_millisecond(c.year, c.month, c.day, c.hour,
                                                                 c.minute, c.second, 0.0);
  return time;
}

constexpr float SacHeader::*kMarks[] = {
    &SacHeader::O,  &SacHeader::A,  &SacHeader::T0, &SacHeader::T1, &SacHeader::T2, &SacHeader::T3,
    &SacHeader::T4, &SacHeader::T5, &SacHeader::T6, &SacHeader::T7, &SacHeader::T8, &SacHeader::T9};

// Writes a time into the header's fields of the reference time.
void storeReferenceFields(SacHeader* h, const SeisTimeObject& time, std::int32_t dayOfYear) {
  if (!h) return;
  h->NZYEAR = time.mYr();
  h->NZJDAY = dayOfYear;
  h->NZHOUR = time.mHr();
  h->NZMIN = time.mMn();
  h->NZSEC = time.mSec();
  h->NZMSEC = truncInt32(time.mMsec());
}

// Moves the reference time later by t seconds and the times relative to it earlier.
void moveReference(SacObject& s, float t, bool movesFini) {
  SacHeader* const h = s.GetSacHeader();
  if (SeisTimeObject* time = s.mySeisReferenceTime().get()) {
    time->addSeconds(t);
    storeReferenceFields(h, *time, time->mDay());
  }
  if (!h) return;
  h->B -= t;
  h->E -= t;
  for (const auto mark : kMarks) {
    if (h->*mark != kSacUndefinedFloat) h->*mark -= t;
  }
  if (movesFini && h->F != kSacUndefinedFloat) h->F -= t;
}

}  // namespace

void SacObject::setReferenceTimeWithNSCalendarDate(const Date& date) {
  if (const auto time = timeOf(date)) replaceReferenceTimeWith(time);
}

void SacObject::setReferenceTimeWithNSDate(const Date& date) {
  setReferenceTimeWithNSCalendarDate(date);
}

void SacObject::replaceReferenceTimeWith(const Ref<SeisTimeObject>& time) {
  mySeisReferenceTime_ = time;
  if (time)
    storeReferenceFields(h_, *time, krosac::doy(time->mYr(), time->mMonth(), time->mDate()));
}

void SacObject::adjustReferenceTimeToNSCalendarDate(const Date& date) {
  if (const auto time = timeOf(date)) setReferenceTime(*time);
}

void SacObject::adjustReferenceTimeToNSDate(const Date& date) {
  adjustReferenceTimeToNSCalendarDate(date);
}

void SacObject::setReferenceTime(const SeisTimeObject& time) {
  if (const auto scratch = newTime()) moveReferenceTime(*this, time, *scratch);
}

void moveReferenceTime(SacObject& s, const SeisTimeObject& time, SeisTimeObject& difference) {
  double shift = 0.0;
  if (SeisTimeObject* reference = s.mySeisReferenceTime().get()) {
    difference.setValues_month_date_hour_minute_second_millisecond(
        reference->mYr(), reference->mMonth(), reference->mDate(), reference->mHr(),
        reference->mMn(), reference->mSec(), reference->mMsec());
    difference.formatTime();
    difference.subtractSeisTimeObject(time);
    shift = difference.mYr() * kSecondsPerYear + difference.mDay() * kSecondsPerDay +
            difference.mHr() * 3600.0 + difference.mMn() * 60.0 + difference.mSec() +
            difference.mMsec() / 1000.0;
    reference->setValue(time);
  }
  SacHeader* const h = s.GetSacHeader();
  storeReferenceFields(h, time, time.mDay());
  s.setMSeisHasChanged(true);

  if (!h) return;
  const auto move = [&](float& field) { field = static_cast<float>(field + shift); };
  move(h->B);
  move(h->E);
  for (const auto mark : kMarks) {
    // T0 is not shifted; this is intended.
    if (mark != &SacHeader::T0 && h->*mark != kSacUndefinedFloat) move(h->*mark);
  }
  if (h->F != kSacUndefinedFloat) move(h->F);
}

void SacObject::setOriginTimeYear_Month_Day_Hour_Minutes_Seconds(
    std::int32_t year, std::int32_t month, std::int32_t day, std::int32_t hour,
    std::int32_t minutes, float seconds) {
  if (!mySeisReferenceTime_) return;
  const double whole = std::floor(static_cast<double>(seconds));
  const auto origin = newTime();
  if (!origin) return;
  origin->initWithValues_month_date_hour_minute_second_millisecond(
      year, month, day, hour, minutes, truncInt32(whole), (seconds - whole) * 1000.0);
  setoriginTimeOffset(origin->differenceInSecondsFrom(*mySeisReferenceTime_));
}

void SacObject::ZeroThisTime(float t) {
  moveReference(*this, t, false);
}

void SacObject::shiftTimesBy(float t) {
  moveReference(*this, t, true);
}

void SacObject::ZeroStartTime() {
  ZeroThisTime(b());
}

void SacObject::ZeroOriginTime() {
  if (o() != kSacUndefinedFloat) ZeroThisTime(o());
}

void SacObject::ZeroPTime() {
  if (pTime() != kSacUndefinedFloat) ZeroThisTime(pTime());
}

void SacObject::ReduceByVelocity(float v) {
  if (distance() == kSacUndefinedFloat) return;
  const float origin = o() == kSacUndefinedFloat ? 0.0f : o();
  // The origin time is subtracted, not added; this is intended.
  ZeroThisTime(distance() / v - origin);
}

}  // namespace krosac
