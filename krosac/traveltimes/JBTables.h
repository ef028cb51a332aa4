// Travel times of the Jeffreys-Bullen Earth model (Jeffreys and Bullen 1940) from tables.
//
// P and S: 118 rows at 0, 0.5, ..., 10 and 11, 12, ..., 107 degrees, 14 depth columns at 0, 33, 63,
// 127, 190, 254, 317, 380, 444, 507, 570, 634, 697 and 761 km; the S table has two rows more. PcP,
// ScS, PP and SS: row k is k degrees, 13 depth columns at 0, 25, 65, 130, 191, 256, 322, 387, 453,
// 518, 584, 650 and 715 km. Rows lie one behind the other. Times are in seconds.
#ifndef KROSAC_TRAVELTIMES_JBTABLES_H
#define KROSAC_TRAVELTIMES_JBTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Fills `tp` (118 x 14 floats) and `ts` (120 x 14 floats) from the resource jbtables.txt. A short
// or damaged file leaves the elements from its first missing number on as they were. When it cannot
// be opened, a message goes to standard error and both arrays stay as they were.
KROSAC_API void ReadJBTables(float* tp, float* ts);

// Fills `table` from the resource named by the phase in lower case ("pcp", "scs", "pp", "ss") and
// stores the number of its complete rows, at most 360, in `rows`: the array must hold 360 x 13
// floats unless the file is known to be shorter. Reading stops at the first number that does not
// convert. When the file cannot be opened, a message goes to standard error and nothing changes.
KROSAC_API void ReadJBTablePhase(const char* phase, float* table, int32_t* rows);

// P and S times (s) and slownesses (s/km) at a distance (degrees) and source depth (km), bilinear
// between the nodes of the tables of ReadJBTables. Depths are kept within 0.1 and 761 km. Between
// 10 and 11 degrees the row difference counts for half a degree, and so the times extrapolate. The
// slowness is the row difference in the deeper column. A distance below 0 extrapolates from row 0.
// All four are -12345.0 from 108 degrees on and for a NaN; P alone is beyond 107 degrees, where its
// table ends.
KROSAC_API void GetJBTimes(const float* tp, const float* ts, float* pTime, float* sTime,
                           float* pSlowness, float* sSlowness, float gcarc, float depth);

// Time (s) and slowness (s/km) of PcP, ScS, PP or SS from a table of ReadJBTablePhase with its row
// count; the name of the phase is not used. Depths are kept within 0.1 and 714.9 km. Both are
// -12345.0 beyond the last row and for a NaN; a table without rows is read as it is (0 when new),
// so the array must hold at least two rows. There is no test for absent nodes.
KROSAC_API void GetJBTimeSlowness(const char* phase, const float* table, int32_t rows, float* time,
                                  float* slowness, float gcarc, float depth);

KROSAC_C_END

#endif
