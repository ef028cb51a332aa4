// Ps moveout: delay times of P-to-S conversions under a receiver against the depth of conversion,
// in IASP91 (Kennett and Engdahl 1991). There is one curve for each of 15 source depths (0, 50,
// ..., 700 km) and 14 distances (30, 35, ..., 95 degrees); the curve of depth i and distance k is
// record 14 i + k.
#ifndef KROSAC_TRAVELTIMES_PSNMOTABLES_H
#define KROSAC_TRAVELTIMES_PSNMOTABLES_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// One curve: up to 77 points, the others zero.
typedef struct PsNMO {
  float srcdepth;  // source depth, km
  float gcarc;     // distance, degrees
  float pTime;     // time of P, s
  float pRayP;     // ray parameter of P, s/km at the surface
  float z[77];     // conversion depths, km
  float t[77];     // delays of the conversions behind P, s
  float p[77];     // ray parameters of the converted waves, s/km at the surface
} PsNMO;

// Reads the curves of the resource `name`.txt, at most 210, into `curves` (210 records) in the
// order of the file, and stores the number of curves less one in `count`: 209 for a full file. A
// curve is a tag of one character, source depth, distance, time and ray parameter of P, and up to
// 77 triples z, t, p; reading ends at the first text that begins no curve. When the file cannot be
// opened, a message goes to standard error and nothing changes.
KROSAC_API void ReadPsDelayTable(const char* name, PsNMO* curves, int32_t* count);

// The record of the curve nearest to a source depth (km) and distance (degrees), halves counting
// upwards; -1 outside 0 to 700 km and 30 to 95 degrees.
KROSAC_API int32_t psNMOCurveIndexClosestTo(float srcdepth, float gcarc);

// The index of the last source depth at or above this one (km); -1 outside 0 to 700 km.
KROSAC_API int32_t psNMOCurveIndexClosestButShallowerThan(float srcdepth);

// The index of the last distance not beyond this one (degrees); -1 outside 30 to 95 degrees.
KROSAC_API int32_t psNMOCurveIndexClosestButLessThan(float gcarc);

// The conversion depth (km) of a delay (s) by linear interpolation along one curve, and
// extrapolation from the two points at its end. 0 for 0, -12345.0 for a negative delay or NaN.
KROSAC_API float depthFromTime(float time, PsNMO curve);

// The delay (s) of a conversion depth (km), in the same way.
KROSAC_API float timeFromDepth(float depth, PsNMO curve);

KROSAC_C_END

#endif
