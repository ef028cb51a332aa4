// The Gregorian calendar: leap years, days of the year, months and dates.
#ifndef KROSAC_TIMEGEO_CALENDAR_H
#define KROSAC_TIMEGEO_CALENDAR_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// 1 for a leap year, else 0: divisible by 400, or by 4 and not by 100. The rule is applied to every
// year, also to 0 (a leap year) and to those before it.
KROSAC_API int32_t is_leap_year(int32_t year);

// The number of days in a year: 365 or 366.
KROSAC_API int32_t ndaysinyear(int32_t year);

// The day of the year (1 is January 1st) of a month (1 to 12) and date. The date is taken as it is,
// also outside its month. A month of 1 or less returns the date; a month above 12 counts as
// December. A sum beyond 32 bits gives the largest integer.
KROSAC_API int32_t doy(int32_t year, int32_t month, int32_t date);

// Writes the month (1 to 12) and date of a day of the year and returns 1. A day of 0 or less gives
// month 1 and that same value as the date. A day beyond the end of the year returns -1 and writes
// nothing. Either output may be null.
KROSAC_API int32_t monthdate(int32_t year, int32_t day, int32_t* month, int32_t* date);

KROSAC_C_END

#endif
