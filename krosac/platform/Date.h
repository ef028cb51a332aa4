// A moment in UTC.
#ifndef KROSAC_PLATFORM_DATE_H
#define KROSAC_PLATFORM_DATE_H

#include <cstdint>
#include <string>

#include "krosac/platform/Export.h"

namespace krosac {

// Seconds since 1970-01-01 00:00:00 UTC, with their fraction, by the proleptic Gregorian calendar
// without leap seconds.
struct KROSAC_API Date {
  // Year, month (1 to 12), day (1 to 31), hour, minute and second.
  struct Components {
    // From the longest unit to the shortest.
    std::int32_t year, month, day, hour, minute, second;
  };

  // Seconds since 1970-01-01 00:00:00 UTC; negative before.
  double secondsSince1970 = 0.0;

  // The date of these components, any of which may lie outside its range: month 14 is February of
  // the next year. Never fails.
  static Date fromComponents(const Components& c);

  // The calendar components of the date, rounded down to whole seconds. Dates before the year
  // -9999999 or after 9999999 are clamped to these years. NaN returns the first second of 1970.
  Components components() const;

  // The default text form, rounded down to whole seconds: "2011-03-11 05:46:23 +0000". Empty, with
  // a reason, if memory runs out.
  std::string description() const;

  // True if the seconds are equal, including their fraction.
  bool operator==(const Date&) const = default;
};

}  // namespace krosac

#endif
