// The correction of a travel time for the Earth's ellipticity.
#ifndef KROSAC_TIMEGEO_ELLIPTICITY_H
#define KROSAC_TIMEGEO_ELLIPTICITY_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The source depths (km) of the rows of pEllipCoeff.
extern KROSAC_API const float depths[8];

// Ellipticity coefficients in seconds: 8 depth rows of 21 distance nodes (0, 5, ..., 100 degrees)
// of 3 coefficients tau0, tau1, tau2; element 63 j + 3 i + k is row j, node i, coefficient k.
extern KROSAC_API const float pEllipCoeff[504];

// The ellipticity correction (s) of the travel time from a source (degrees, depth in km) to a
// station (degrees). The coefficients are interpolated in distance and depth, and combined by the
// source's colatitude and its azimuth to the station. Distances beyond 100 degrees and depths
// beyond 700 km count as 100 degrees and 700 km; a depth above the surface extrapolates the first
// row. A NaN gives NaN.
KROSAC_API float ellipCorrection(float sourceLatitude, float sourceLongitude, float sourceDepth,
                                 float stationLatitude, float stationLongitude);

KROSAC_C_END

#endif
