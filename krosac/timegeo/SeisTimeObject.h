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
// Sums and carries are exact in 64 bits; a field beyond 32 bits is clamped to the nearest 32-bit
// value. There are no leap seconds and no time zones.
class KROSAC_API SeisTimeObject : public Archivable {
 public:
  // ---- Construction ----

  // Sets the time from a month (1 to 12), a date (1 to 31) and a time of day, whose fields carry if
  // they are outside their ranges. Returns the object.
  Ref<SeisTimeObject> initWithValues_month_date_hour_minute_second_millisecond(
      std::int32_t year, std::int32_t month, std::int32_t date, std::int32_t hour,
      std::int32_t minute, std::int32_t second, double millisecond);
  // Sets the same on an existing object.
  void setValues_month_date_hour_minute_second_millisecond(std::int32_t year, std::int32_t month,
                                                           std::int32_t date, std::int32_t hour,
                                                           std::int32_t minute, std::int32_t second,
                                                           double millisecond);
  // Copies year, day of the year and time of day; derives month and date. Returns the object.
  Ref<SeisTimeObject> initWithTimeObject(const SeisTimeObject& other);
  // Copies the same into an existing object.
  void setValue(const SeisTimeObject& other);

  // Returns a new, normalised time with this one's year, month, date and time of day. The day of
  // the copy is computed from month and date, which disagree with `mDay` only after setters without
  // formatTime; initWithTimeObject copies `mDay`. Returns an empty reference, with a
  // reason, if memory runs out.
  Ref<SeisTimeObject> copyWithZone() const { return clone(); }

  // ---- Normalisation ----

  // Carries milliseconds into seconds, then into minutes, hours and days, so that 0 <= mMsec < 1000
  // and the others are in 0..59, 0..59 and 0..23; then carries days into years; then derives month
  // and date, which stay unchanged if the day is beyond the end of the year.
  //
  // A day count above the length of the year is divided by that length once, even if years of other
  // lengths are crossed (intended). A count equal to the length stays; a multiple of it leaves day
  // 0 of a later year. Negative days borrow years, but stay negative in year 0. The run time does
  // not depend on the values. Milliseconds that are not finite are not carried. Negative
  // milliseconds that vanish when added to 1000 become 1000, which the next call carries back.
  void formatTime();

  // ---- Arithmetic ----

  // Adds or subtracts year, day, hour, minute, second and millisecond field by field.
  void addSeisTimeObject(const SeisTimeObject& other);
  void subtractSeisTimeObject(const SeisTimeObject& other);

  // Adds or subtracts seconds (and whole minutes). Seconds are converted to milliseconds in single
  // precision. Going back over New Year keeps day 0 and then adds the length of the later year
  // (intended): 2001-01-01 minus 1 s is 2001 day 0, minus 86401 s is 2000 day 364.
  void addSeconds(float seconds);
  void subtractSeconds(float seconds);
  void addMinutesSeconds_Seconds(std::int32_t minutes, float seconds);
  void subtractMinutesSeconds_Seconds(std::int32_t minutes, float seconds);

  // Returns the sum of all fields in seconds, with 365 days per year. Meant for differences of
  // times.
  double secondsValue() const;

  // Returns the seconds from the other time to this one, with 365 days per year. The receiver then
  // holds the difference instead of its former time (intended); call it on a copy to keep the time.
  float differenceInSecondsFrom(const SeisTimeObject& other);

  // ---- Comparison ----
  //
  // Each comparison first runs formatTime on both times.

  // Returns true if year, day, hour, minute, second and millisecond are all equal, without
  // tolerance.
  bool equalToSeisTime(SeisTimeObject& other);

  // Returns true if the times differ and none of year, day, hour, minute, second and millisecond is
  // greater (smaller) than the other's. This is not chronological order (intended): 2000 day 300 is
  // not less than 2001 day 1, since its day is greater.
  bool lessThanSeisTime(SeisTimeObject& other);
  bool greaterThanSeisTime(SeisTimeObject& other);

  // Always returns true (intended).
  bool lessThanEqualToSeisTime(SeisTimeObject& other);
  bool greaterThanEqualToSeisTime(SeisTimeObject& other);

  // ---- Text ----

  // Print the fields, without formatTime, into mString(): "1999 (007) 01:02:03.456" with `mDay`,
  // and "1999/01/07 01:02:03.456" with `mMonth` and `mDate`. Truncated to 255 characters;
  // independent of the locale.
  void setDOYString();
  void setYMDString();

  // The object's own text: the form printed last, empty at first. Valid until the next print into
  // this object or its destruction.
  const char* mString() const { return mString_; }

  // Run formatTime, print likewise and return mString().
  const char* DOYcString();
  const char* YMDcString();

  // ---- Archives ----

  // Stores the fields under the keys mYr, mMonth, mDate, mHr, mMn, mSec, mMsec and mDay.
  const char* archiveClassName() const override { return "SeisTimeObject"; }
  void encodeWithCoder(KeyedArchiver& coder) const override;
  // Reads the fields without formatTime and prints the text as setYMDString does. Returns the
  // object.
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
  // The fields of the arithmetic, wide enough that no sum or carry overflows.
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
