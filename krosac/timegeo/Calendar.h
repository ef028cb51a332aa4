// The Gregorian calendar: leap years, days of the year, months and dates.
#ifndef KROSAC_TIMEGEO_CALENDAR_H
#define KROSAC_TIMEGEO_CALENDAR_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Returns 1 for a leap year, else 0. A leap year is divisible by 400, or by 4 and not by 100. The
// rule applies to every year, including 0 (a leap year) and negative years.
KROSAC_API int32_t is_leap_year(int32_t year);

// Returns the number of days in a year: 365 or 366.
KROSAC_API int32_t ndaysinyear(int32_t year);

// Returns the day of the year (1 is January 1st) of a month (1 to 12) and date. The date is not
// checked against the month. A month of 1 or less returns the date; a month above 12 counts as
// December. A sum beyond 32 bits returns the largest integer.
KROSAC_API int32_t doy(int32_t year, int32_t month, int32_t date);

// Writes the month (1 to 12) and date of a day of the year and returns 1. For a day of 0 or less,
// writes month 1 and that day as the date. For a day beyond the end of the year, returns -1 and
// writes nothing. Either output may be null.
KROSAC_API int32_t monthdate(int32_t year, int32_t day, int32_t* month, int32_t* date);

KROSAC_C_END

#endif
