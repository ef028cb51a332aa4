// Travel times of phases in the IASP91 Earth model (Kennett and Engdahl 1991) from tables.
//
// Row k is the distance of k degrees; 18 depth columns at 0, 25, 50, 100, 150, ..., 800 km. Rows
// lie one behind the other. Times are in seconds, negative where the phase does not exist.
#ifndef KROSAC_TRAVELTIMES_TTTABLES_H
#define KROSAC_TRAVELTIMES_TTTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Fills `table` from the resource named by prefix and phase, joined and in lower case ("iasp91_",
// "p"), and stores the number of its complete rows, at most 360, in `rows`: the array must hold
// 360 x 18 floats unless the file is known to be shorter. Reading stops at the first number that
// does not convert. When the file cannot be opened, a message goes to standard error and nothing
// changes.
KROSAC_API void ReadTTTablePhase(const char* prefix, const char* phase, float* table,
                                 int32_t* rows);

// Time (s) and slowness (s/km) at a distance (degrees, its absolute value counts) and source depth
// (km), bilinear between the nodes; the slowness is the row difference in the deeper column. The
// name of the phase is not used. Depths are kept within 0.1 and 799.5 km. Both are -12345.0 beyond
// the last row, where one of the four nodes around the point is negative, and for a NaN. A table
// without rows is read as it is (0 when new), so the array must hold at least two rows.
KROSAC_API void GetTTTimeSlowness(const char* phase, const float* table, int32_t rows, float* time,
                                  float* slowness, float gcarc, float depth);

// The same with the mean row difference of both columns as slowness, and with the growth of the
// time with depth (s/km).
KROSAC_API void GetTTTimeSlownesses(const char* phase, const float* table, int32_t rows,
                                    float* time, float* slowness, float* depthDerivative,
                                    float gcarc, float depth);

KROSAC_C_END

#endif
