// One broken-down calendar time, or a difference of two.
#ifndef KROSAC_TIMEGEO_SEISTIMEOBJECT_H
#define KROSAC_TIMEGEO_SEISTIMEOBJECT_H

#include <cstdint>

#include "krosac/platform/Archive.h"
#include "krosac/platform/Export.h"
#include "krosac/platform/Object.h"

namespace krosac {

// A time as year, day of year, hour, minute, second and millisecond. Year and day are the date;
// month and date are derived from them and take no part in arithmetic. Every initialiser and every
// arithmetic operation ends with formatTime. A difference of times has the year 0 (or the
// difference of the years) and a signed day.
//
// All sums and carries are exact in 64 bits; a field that would leave 32 bits takes the nearest
// 32-bit value. The class knows no leap seconds and no time zones.
class KROSAC_API SeisTimeObject : public Archivable {
 public:
  // ---- Making ----

  // The time of a month (1 to 12) and date (1 to 31), in any hours, minutes, seconds and
  // milliseconds: those outside their ranges carry. Gives the object.
  Ref<SeisTimeObject> initWithValues_month_date_hour_minute_second_millisecond(
      std::int32_t year, std::int32_t month, std::int32_t date, std::int32_t hour,
      std::int32_t minute, std::int32_t second, double millisecond);
  // The same on an existing object.
  void setValues_month_date_hour_minute_second_millisecond(std::int32_t year, std::int32_t month,
                                                           std::int32_t date, std::int32_t hour,
                                                           std::int32_t minute, std::int32_t second,
                                                           double millisecond);
  // The year, day and time of day of another time; month and date are derived. Gives the object.
  Ref<SeisTimeObject> initWithTimeObject(const SeisTimeObject& other);
  // The same on an existing object.
  void setValue(const SeisTimeObject& other);

  // A new time from this one's year, month, date and time of day: the copy's day comes from month
  // and date, which differ from `mDay` only after setters without formatTime. Empty where there is
  // no memory.
  Ref<SeisTimeObject> copyWithZone() const { return clone(); }

  // ---- Normalising ----

  // Carries milliseconds into seconds, these into minutes, hours and days, so that they lie in
  // 0 <= mMsec < 1000, 0..59, 0..59 and 0..23; then days into years; then derives month and date,
  // which stay as they were when the day lies beyond the year.
  //
  // A day count above the length of the year is divided by that length once, whatever years are
  // crossed: a count equal to the length stays, and a multiple of it gives day 0 of a later year.
  // Negative days borrow years, but not at year 0, where they stay negative. Ends at once for any
  // values. Milliseconds that are not finite stay as they are and carry nothing; negative ones too
  // small to be told from 0 beside 1000 give 1000, which the next call carries.
  void formatTime();

  // ---- Arithmetic ----

  // Adds or subtracts year, day, hour, minute, second and millisecond field by field.
  void addSeisTimeObject(const SeisTimeObject& other);
  void subtractSeisTimeObject(const SeisTimeObject& other);

  // Adds or subtracts seconds (and whole minutes). The milliseconds are formed in single precision.
  void addSeconds(float seconds);
  void subtractSeconds(float seconds);
  void addMinutesSeconds_Seconds(std::int32_t minutes, float seconds);
  void subtractMinutesSeconds_Seconds(std::int32_t minutes, float seconds);

  // All fields in seconds, with 365 days in every year. Meant for differences of times.
  double secondsValue() const;

  // Seconds from the other time to this one, with 365 days in every year. The receiver then holds
  // the difference, no longer its former time; work on a copy to keep it.
  float differenceInSecondsFrom(const SeisTimeObject& other);

  // ---- Comparing ----
  //
  // Each comparison runs formatTime on both times first.

  // Whether year, day, hour, minute, second and millisecond are all equal, without tolerance.
  bool equalToSeisTime(SeisTimeObject& other);

  // Whether the times differ and no field of year, day, hour, minute, second and millisecond is
  // greater (smaller) than the other's. Field by field, not in the order of time: 2000 day 300 is
  // not less than 2001 day 1, since its day is greater.
  bool lessThanSeisTime(SeisTimeObject& other);
  bool greaterThanSeisTime(SeisTimeObject& other);

  // True, whatever the times are.
  bool lessThanEqualToSeisTime(SeisTimeObject& other);
  bool greaterThanEqualToSeisTime(SeisTimeObject& other);

  // ---- Text ----

  // Print into the object's own text, as the fields stand: "1999 (007) 01:02:03.456" and
  // "1999/01/07 01:02:03.456". Cut off behind 255 characters, the same in every locale.
  void setDOYString();
  void setYMDString();

  // The same after formatTime. The text is valid until the next print into this object or its end.
  const char* DOYcString();
  const char* YMDcString();

  // ---- Archiving ----

  // The fields under the keys mYr, mMonth, mDate, mHr, mMn, mSec, mMsec and mDay.
  const char* archiveClassName() const override { return "SeisTimeObject"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  // Takes the fields as they are archived, without formatTime, and prints the text as setYMDString.
  // Gives the object.
  Ref<SeisTimeObject> initWithCoder(KeyedUnarchiver& coder);

  // ---- Fields ----

  // Year, month (1 to 12), date (1 to 31), hour, minute, second, millisecond and day of the year (1
  // is January 1st). Setters do not normalise.
  std::int32_t mYr() const { return mYr_; }
  std::int32_t mMonth() const { return mMonth_; }
  std::int32_t mDate() const { return mDate_; }
  std::int32_t mHr() const { return mHr_; }
  std::int32_t mMn() const { return mMn_; }
  std::int32_t mSec() const { return mSec_; }
  double mMsec() const { return mMsec_; }
  std::int32_t mDay() const { return mDay_; }
  void setMYr(std::int32_t year) { mYr_ = year; }
  void setMMonth(std::int32_t month) { mMonth_ = month; }
  void setMDate(std::int32_t date) { mDate_ = date; }
  void setMHr(std::int32_t hour) { mHr_ = hour; }
  void setMMn(std::int32_t minute) { mMn_ = minute; }
  void setMSec(std::int32_t second) { mSec_ = second; }
  void setMMsec(double millisecond) { mMsec_ = millisecond; }
  void setMDay(std::int32_t day) { mDay_ = day; }

 protected:
  virtual Ref<SeisTimeObject> clone() const;

 private:
  // The fields that arithmetic works on, wide enough that no sum or carry overflows.
  struct Wide {
    std::int64_t year, day, hour, minute, second;
    double millisecond;
  };

  Wide wide() const { return {mYr_, mDay_, mHr_, mMn_, mSec_, mMsec_}; }
  void normalise(Wide time);
  void addMilliseconds(std::int64_t minutes, float milliseconds);

  std::int32_t mYr_ = 0;
  std::int32_t mMonth_ = 0;
  std::int32_t mDate_ = 0;
  std::int32_t mHr_ = 0;
  std::int32_t mMn_ = 0;
  std::int32_t mSec_ = 0;
  double mMsec_ = 0.0;
  std::int32_t mDay_ = 0;
  char mString_[256] = {};
};

}  // namespace krosac

#endif
