// Tabulated travel times of the Jeffreys-Bullen Earth model (Jeffreys and Bullen 1940).
//
// P and S: 118 rows at 0, 0.5, ..., 10 and 11, 12, ..., 107 degrees, 14 depth columns at 0, 33, 63,
// 127, 190, 254, 317, 380, 444, 507, 570, 634, 697 and 761 km; the S table has two more rows. PcP,
// ScS, PP and SS: row k is k degrees, 13 depth columns at 0, 25, 65, 130, 191, 256, 322, 387, 453,
// 518, 584, 650 and 715 km. Tables are stored in row-major order. Times are in seconds.
#ifndef KROSAC_TRAVELTIMES_JBTABLES_H
#define KROSAC_TRAVELTIMES_JBTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Fills `tp` (118 x 14 floats) and `ts` (120 x 14 floats) from the resource jbtables.txt. If the
// file is short or damaged, the elements from the first missing number on stay unchanged and
// lastReason() reports the line. If it cannot be opened, prints a message on standard error and
// changes neither array. A null array is skipped.
KROSAC_API void ReadJBTables(float* tp, float* ts);

// Fills `table` from the resource named by the phase in lower case ("pcp", "scs", "pp", "ss") and
// stores the number of complete rows, at most 360, in `rows`. The array must hold 360 x 13 floats
// unless the file is known to be shorter. Reading stops at the first number that does not convert;
// lastReason() then reports the line. If the file cannot be opened or the phase is null, prints a
// message on standard error and changes nothing. A null output is skipped.
KROSAC_API void ReadJBTablePhase(const char* phase, float* table, int32_t* rows);

// Computes P and S times (s) and slownesses (s/km) at a distance (degrees) and source depth (km) by
// bilinear interpolation in the tables of ReadJBTables. Depths are clamped to 0.1 to 761 km.
//
// Between 10 and 11 degrees the row spacing is taken as half a degree, so the times extrapolate
// (intended). The slowness is the row difference in the deeper column divided by 111.19 km; below
// 10 degrees, where rows are half a degree apart, it is doubled.
//
// All four are -12345.0 below 0 degrees, at 108 degrees and beyond, for NaN and for a null table;
// those of P are already -12345.0 beyond 107 degrees, where its table ends. A null output is
// skipped.
KROSAC_API void GetJBTimes(const float* tp, const float* ts, float* pTime, float* sTime,
                           float* pSlowness, float* sSlowness, float gcarc, float depth);

// Computes the time (s) and slowness (s/km) of PcP, ScS, PP or SS from a table of ReadJBTablePhase
// and its row count. The name of the phase is not used. Depths are clamped to 0.1 to 714.9 km. The
// slowness is never doubled.
//
// Both are -12345.0 below 0 degrees, beyond the last row, for NaN, for a null table, and where a
// node of non-zero weight is absent (-12345.0). At a distance of exactly one row the slowness alone
// is -12345.0 if the row before is absent. The array must hold at least two rows: with a count of 0
// they are read as they are. A null output is skipped.
KROSAC_API void GetJBTimeSlowness(const char* phase, const float* table, int32_t rows, float* time,
                                  float* slowness, float gcarc, float depth);

KROSAC_C_END

#endif
