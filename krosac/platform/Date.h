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
  // A date as year, month (1 to 12), day (1 to 31), hour, minute and second.
  struct Components {
    // In the order of a written date.
    std::int32_t year, month, day, hour, minute, second;
  };

  // Seconds since 1970-01-01 00:00:00 UTC; negative before.
  double secondsSince1970 = 0.0;

  // The date of any components: those outside their ranges carry (month 14 is February of the next
  // year). Never refused.
  static Date fromComponents(const Components& c);

  // The calendar components of the date's whole second. A date beyond the years -9999999 to
  // 9999999, or a NaN, gives the nearest of these ends (NaN the first second of 1970).
  Components components() const;

  // Its default text form, to whole seconds: "2011-03-11 05:46:23 +0000".
  std::string description() const;

  // Whether the seconds are equal, fraction included.
  bool operator==(const Date&) const = default;
};

}  // namespace krosac

#endif
