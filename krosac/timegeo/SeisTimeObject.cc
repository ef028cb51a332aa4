#include "krosac/timegeo/SeisTimeObject.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <limits>

#include "krosac/platform/internal/Reason.h"
#include "krosac/platform/internal/Text.h"
#include "krosac/timegeo/Calendar.h"

namespace krosac {
namespace {

constexpr std::int64_t kYearsPerCycle = 400;
constexpr std::int64_t kDaysPerCycle = 146097;

// More seconds than 32 bits of years hold, and far below the limit of 64 bits.
constexpr double kSecondsLimit = 1e18;

std::int32_t toInt32(std::int64_t value) {
  return static_cast<std::int32_t>(std::clamp<std::int64_t>(
      value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

// The length of a year that may be beyond 32 bits; the calendar repeats every 400 years.
std::int64_t daysInYear(std::int64_t year) {
  return ndaysinyear(static_cast<std::int32_t>(year % kYearsPerCycle));
}

// Carries whole units of `size` from the lower field to the higher one, so that 0 <= lower < size.
void carry(std::int64_t& lower, std::int64_t size, std::int64_t& higher) {
  std::int64_t units = lower / size;
  if (lower % size < 0) --units;
  higher += units;
  lower -= units * size;
}

// Carries milliseconds into seconds. fmod is exact, so the result equals, bit for bit, that of
// borrowing one second at a time.
void carryMilliseconds(double& milliseconds, std::int64_t& seconds) {
  if (!std::isfinite(milliseconds) || (milliseconds >= 0.0 && milliseconds < 1000.0)) return;
  const double rest = std::fmod(milliseconds, 1000.0);
  const double units = (milliseconds - rest) / 1000.0 - (rest < 0.0 ? 1.0 : 0.0);
  seconds += static_cast<std::int64_t>(std::clamp(units, -kSecondsLimit, kSecondsLimit));
  milliseconds = rest + (rest < 0.0 ? 1000.0 : 0.0);
}

// Borrows years for negative days down to year 0. Each borrow adds the length of the year that the
// time is in, not of the year before it: intended.
void borrowYears(std::int64_t& day, std::int64_t& year) {
  if (day >= 0 || year == 0) return;
  // First whole cycles, as many as leave the day negative and do not pass year 0.
  std::int64_t cycles = (-day - 1) / kDaysPerCycle;
  if (year > 0) cycles = std::min(cycles, year / kYearsPerCycle);
  day += cycles * kDaysPerCycle;
  year -= cycles * kYearsPerCycle;
  while (day < 0 && year != 0) {
    day += daysInYear(year);
    --year;
  }
}

}  // namespace

// ---- Construction ----

Ref<SeisTimeObject> SeisTimeObject::initWithValues_month_date_hour_minute_second_millisecond(
    std::int32_t year, std::int32_t month, std::int32_t date, std::int32_t hour,
    std::int32_t minute, std::int32_t second, double millisecond) {
  if (!init()) return nullptr;
  setValues_month_date_hour_minute_second_millisecond(year, month, date, hour, minute, second,
                                                      millisecond);
  return Ref<SeisTimeObject>(this);
}

void SeisTimeObject::setValues_month_date_hour_minute_second_millisecond(
    std::int32_t year, std::int32_t month, std::int32_t date, std::int32_t hour,
    std::int32_t minute, std::int32_t second, double millisecond) {
  mYr_ = year;
  mMonth_ = month;
  mDate_ = date;
  mHr_ = hour;
  mMn_ = minute;
  mSec_ = second;
  mMsec_ = millisecond;
  mDay_ = doy(year, month, date);
  formatTime();
}

Ref<SeisTimeObject> SeisTimeObject::initWithTimeObject(const SeisTimeObject& other) {
  if (!init()) return nullptr;
  setValue(other);
  return Ref<SeisTimeObject>(this);
}

void SeisTimeObject::setValue(const SeisTimeObject& other) {
  normalise(other.wide());
}

Ref<SeisTimeObject> SeisTimeObject::clone() const {
  auto copy = make<SeisTimeObject>();
  if (!copy) {
    setMemoryReason();
    return nullptr;
  }
  copy->initWithValues_month_date_hour_minute_second_millisecond(mYr_, mMonth_, mDate_, mHr_, mMn_,
                                                                 mSec_, mMsec_);
  copy->formatTime();
  return copy;
}

// ---- Normalisation ----

void SeisTimeObject::formatTime() {
  normalise(wide());
}

void SeisTimeObject::normalise(Wide t) {
  carryMilliseconds(t.millisecond, t.second);
  carry(t.second, 60, t.minute);
  carry(t.minute, 60, t.hour);
  carry(t.hour, 24, t.day);

  // One division by the length of the current year, even if years of other lengths are crossed; a
  // multiple of it leaves day 0: intended.
  const std::int64_t length = t.year == 0 ? 365 : daysInYear(t.year);
  if (t.day > length) {
    const std::int64_t years = t.day / length;
    t.year += years;
    t.day -= years * length;
  }
  borrowYears(t.day, t.year);

  mYr_ = toInt32(t.year);
  mDay_ = toInt32(t.day);
  mHr_ = toInt32(t.hour);
  mMn_ = toInt32(t.minute);
  mSec_ = toInt32(t.second);
  mMsec_ = t.millisecond;
  monthdate(mYr_, mDay_, &mMonth_, &mDate_);
}

// ---- Arithmetic ----

void SeisTimeObject::addSeisTimeObject(const SeisTimeObject& other) {
  const Wide a = wide(), b = other.wide();
  normalise({a.year + b.year, a.day + b.day, a.hour + b.hour, a.minute + b.minute,
             a.second + b.second, a.millisecond + b.millisecond});
}

void SeisTimeObject::subtractSeisTimeObject(const SeisTimeObject& other) {
  const Wide a = wide(), b = other.wide();
  normalise({a.year - b.year, a.day - b.day, a.hour - b.hour, a.minute - b.minute,
             a.second - b.second, a.millisecond - b.millisecond});
}

void SeisTimeObject::addMilliseconds(std::int64_t minutes, float milliseconds) {
  Wide t = wide();
  t.minute += minutes;
  t.millisecond += static_cast<double>(milliseconds);
  normalise(t);
}

void SeisTimeObject::addSeconds(float seconds) {
  addMilliseconds(0, seconds * 1000.0f);
}

void SeisTimeObject::subtractSeconds(float seconds) {
  addMilliseconds(0, seconds * -1000.0f);
}

void SeisTimeObject::addMinutesSeconds_Seconds(std::int32_t minutes, float seconds) {
  addMilliseconds(minutes, seconds * 1000.0f);
}

void SeisTimeObject::subtractMinutesSeconds_Seconds(std::int32_t minutes, float seconds) {
  addMilliseconds(-std::int64_t{minutes}, seconds * -1000.0f);
}

double SeisTimeObject::secondsValue() const {
  return mYr_ * 365.0 * 24.0 * 3600.0 + mDay_ * 24.0 * 3600.0 + mHr_ * 3600.0 + mMn_ * 60.0 +
         mSec_ + mMsec_ / 1000.0;
}

float SeisTimeObject::differenceInSecondsFrom(const SeisTimeObject& other) {
  SeisTimeObject normalised;
  normalised.setValue(other);
  // The receiver keeps the difference: intended.
  subtractSeisTimeObject(normalised);
  return static_cast<float>(secondsValue());
}

// ---- Comparison ----

bool SeisTimeObject::equalToSeisTime(SeisTimeObject& other) {
  formatTime();
  other.formatTime();
  return mYr_ == other.mYr_ && mDay_ == other.mDay_ && mHr_ == other.mHr_ && mMn_ == other.mMn_ &&
         mSec_ == other.mSec_ && mMsec_ == other.mMsec_;
}

// Compares field by field, not chronologically: intended.
bool SeisTimeObject::lessThanSeisTime(SeisTimeObject& other) {
  if (equalToSeisTime(other)) return false;
  return mYr_ <= other.mYr_ && mDay_ <= other.mDay_ && mHr_ <= other.mHr_ && mMn_ <= other.mMn_ &&
         mSec_ <= other.mSec_ && !(mMsec_ > other.mMsec_);
}

bool SeisTimeObject::greaterThanSeisTime(SeisTimeObject& other) {
  return other.lessThanSeisTime(*this);
}

// Both always return true: intended.
bool SeisTimeObject::lessThanEqualToSeisTime(SeisTimeObject& other) {
  formatTime();
  other.formatTime();
  return true;
}

bool SeisTimeObject::greaterThanEqualToSeisTime(SeisTimeObject& other) {
  return lessThanEqualToSeisTime(other);
}

// ---- Text ----

void SeisTimeObject::setDOYString() {
  CLocaleScope cLocaleHere;
  std::snprintf(mString_, sizeof mString_, "%04d (%03d) %02d:%02d:%06.3f", mYr_, mDay_, mHr_, mMn_,
                mSec_ + mMsec_ / 1000.0);
}

void SeisTimeObject::setYMDString() {
  CLocaleScope cLocaleHere;
  std::snprintf(mString_, sizeof mString_, "%04d/%02d/%02d %02d:%02d:%06.3f", mYr_, mMonth_, mDate_,
                mHr_, mMn_, mSec_ + mMsec_ / 1000.0);
}

const char* SeisTimeObject::DOYcString() {
  formatTime();
  setDOYString();
  return mString_;
}

const char* SeisTimeObject::YMDcString() {
  formatTime();
  setYMDString();
  return mString_;
}

// ---- Archives ----

void SeisTimeObject::encodeWithCoder(KeyedArchiver& coder) const {
  coder.encodeInt32("mYr", mYr_);
  coder.encodeInt32("mDay", mDay_);
  coder.encodeInt32("mHr", mHr_);
  coder.encodeInt32("mMn", mMn_);
  coder.encodeInt32("mSec", mSec_);
  coder.encodeInt32("mMonth", mMonth_);
  coder.encodeInt32("mDate", mDate_);
  coder.encodeDouble("mMsec", mMsec_);
}

Ref<SeisTimeObject> SeisTimeObject::initWithCoder(KeyedUnarchiver& coder) {
  if (!init()) return nullptr;
  setMYr(coder.decodeInt32("mYr"));
  setMDay(coder.decodeInt32("mDay"));
  setMHr(coder.decodeInt32("mHr"));
  setMMn(coder.decodeInt32("mMn"));
  setMSec(coder.decodeInt32("mSec"));
  setMMonth(coder.decodeInt32("mMonth"));
  setMDate(coder.decodeInt32("mDate"));
  setMMsec(coder.decodeDouble("mMsec"));
  setYMDString();
  return Ref<SeisTimeObject>(this);
}

}  // namespace krosac
