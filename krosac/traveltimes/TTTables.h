// Tabulated travel times of the IASP91 Earth model (Kennett and Engdahl 1991).
//
// Row k is a distance of k degrees; the 18 depth columns are 0, 25, 50, 100, 150, ..., 800 km.
// Tables are stored in row-major order. Times are in seconds, negative where the phase does not
// exist.
#ifndef KROSAC_TRAVELTIMES_TTTABLES_H
#define KROSAC_TRAVELTIMES_TTTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Fills `table` from the resource named by prefix and phase, joined and in lower case ("iasp91_",
// "p"), and stores the number of complete rows, at most 360, in `rows`. The array must hold 360 x
// 18 floats unless the file is known to be shorter. Reading stops at the first number that does not
// convert; lastReason() then reports the line. If the file cannot be opened or a text is null,
// prints a message on standard error and changes nothing. A null output is skipped.
KROSAC_API void ReadTTTablePhase(const char* prefix, const char* phase, float* table,
                                 int32_t* rows);

// Computes the time (s) and slowness (s/km) at the absolute value of a distance (degrees) and a
// source depth (km) by bilinear interpolation. The slowness is the row difference in the deeper
// column. The name of the phase is not used. Depths are clamped to 0.1 to 799.5 km. Both are
// -12345.0 beyond the last row, where one of the four nodes is negative, for NaN and for a null
// table. The array must hold at least two rows: with a count of 0 they are read as they are. A null
// output is skipped.
KROSAC_API void GetTTTimeSlowness(const char* phase, const float* table, int32_t rows, float* time,
                                  float* slowness, float gcarc, float depth);

// Computes, in the same way, the time, the slowness as the mean row difference of both columns, and
// the depth derivative of the time (s/km).
KROSAC_API void GetTTTimeSlownesses(const char* phase, const float* table, int32_t rows,
                                    float* time, float* slowness, float* depthDerivative,
                                    float gcarc, float depth);

KROSAC_C_END

#endif
