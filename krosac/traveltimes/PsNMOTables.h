// Ps moveout: delay of P-to-S conversions beneath a receiver as a function of conversion depth, in
// IASP91 (Kennett and Engdahl 1991). There is one curve for each of 15 source depths (0, 50, ...,
// 700 km) and 14 distances (30, 35, ..., 95 degrees). The curve of depth i and distance k is record
// 14 i + k.
#ifndef KROSAC_TRAVELTIMES_PSNMOTABLES_H
#define KROSAC_TRAVELTIMES_PSNMOTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// One curve of up to 77 points; unused points are zero.
typedef struct PsNMO {
  float srcdepth;  // source depth, km
  float gcarc;     // distance, degrees
  float pTime;     // time of P, s
  float pRayP;     // ray parameter of P, s/km at the surface
  float z[77];     // conversion depths, km
  float t[77];     // delays of the conversions after P, s
  float p[77];     // ray parameters of the converted waves, s/km at the surface
} PsNMO;

// Reads up to 210 curves of the resource `name`.txt into `curves` (210 records) in file order, and
// stores the number of curves minus one in `count`: 209 for a full file. A curve consists of a
// one-character tag, the source depth, the distance, the time and ray parameter of P, and up to 77
// triples z, t, p. Reading stops at the first text that does not begin a curve; lastReason()
// reports the line if there are fewer than 210. If the file cannot be opened or the name is null,
// prints a message on standard error and changes nothing. A null output is skipped.
KROSAC_API void ReadPsDelayTable(const char* name, PsNMO* curves, int32_t* count);

// Returns the index of the curve nearest to a source depth (km) and distance (degrees), rounding
// halves up; -1 outside 0 to 700 km and 30 to 95 degrees.
KROSAC_API int32_t psNMOCurveIndexClosestTo(float srcdepth, float gcarc);

// Returns the index of the deepest grid depth not below the source depth (km); -1 outside 0 to 700
// km.
KROSAC_API int32_t psNMOCurveIndexClosestButShallowerThan(float srcdepth);

// Returns the index of the largest grid distance not beyond the distance (degrees); -1 outside 30
// to 95 degrees.
KROSAC_API int32_t psNMOCurveIndexClosestButLessThan(float gcarc);

// Returns the conversion depth (km) of a delay (s) by linear interpolation along one curve, or by
// extrapolation from the two points at its end. Returns 0 for 0, and -12345.0 for a negative delay,
// for NaN, and beyond the last point of a curve of fewer than 77.
KROSAC_API float depthFromTime(float time, PsNMO curve);

// Returns the delay (s) of a conversion depth (km) in the same way.
KROSAC_API float timeFromDepth(float depth, PsNMO curve);

KROSAC_C_END

#endif
