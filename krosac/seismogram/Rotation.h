// Rotation of horizontal components. These are C++ functions.
#ifndef KROSAC_SEISMOGRAM_ROTATION_H
#define KROSAC_SEISMOGRAM_ROTATION_H

#include "krosac/platform/Export.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// Rotates two horizontal components of azimuths CMPAZ into radial (the first, positive away from
// the source) and transverse (the second). Sets CMPAZ of the first to BAZ of the first + 180,
// wrapped, and of the second to 90 more, not wrapped. Does nothing, without a message, where a
// CMPAZ or the BAZ of the first is undefined, the sample counts differ, or the azimuths differ by
// more than 271 degrees; this loose test of orthogonality is intended. Computes the extrema;
// mSeisHasChanged stays unchanged (intended).
KROSAC_API void RotateSeismograms(SacObject& first, SacObject& second);

// Rotates two components by an angle in degrees: a' = a cos + b sin, b' = b cos - a sin. Does
// nothing when the sample counts differ. Computes the extrema, which sets mSeisHasChanged, and
// leaves the other header fields unchanged.
KROSAC_API void RotateSeismogramsByAngle(SacObject& a, SacObject& b, float angle);

}  // namespace krosac

#endif
