// Rotation of horizontal components.
#ifndef KROSAC_SEISMOGRAM_ROTATION_H
#define KROSAC_SEISMOGRAM_ROTATION_H

#include "krosac/platform/Export.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// Turns two horizontal components, by their component azimuths, into radial (the first; positive
// away from the source) and transverse (the second), and sets their azimuths: the first's
// back-azimuth + 180, and that + 90, which is not wrapped. Nothing when the sample counts differ,
// an azimuth or the first's back-azimuth is undefined, or the azimuths differ by more than 271
// degrees: this loose test of orthogonality is intended. The extrema are computed; mSeisHasChanged
// stays (intended).
KROSAC_API void RotateSeismograms(SacObject& first, SacObject& second);

// Turns two components by an angle in degrees: a' = a cos + b sin, b' = b cos - a sin. Nothing when
// the sample counts differ. The extrema are computed, which sets mSeisHasChanged; otherwise the
// headers stay.
KROSAC_API void RotateSeismogramsByAngle(SacObject& a, SacObject& b, float angle);

}  // namespace krosac

#endif
