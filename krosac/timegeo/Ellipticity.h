// Ellipticity correction of travel times.
#ifndef KROSAC_TIMEGEO_ELLIPTICITY_H
#define KROSAC_TIMEGEO_ELLIPTICITY_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Source depths (km) of the rows of pEllipCoeff.
extern KROSAC_API const float depths[8];

// Ellipticity coefficients (s): 8 depth rows of 21 distance nodes (0, 5, ..., 100 degrees) of 3
// coefficients tau0, tau1, tau2. Element 63 j + 3 i + k is row j, node i, coefficient k. From the
// second row on the values are stored shifted (intended), so these are not the rows of a published
// table.
extern KROSAC_API const float pEllipCoeff[504];

// Returns the ellipticity correction (s) of the travel time from a source (degrees, depth in km) to
// a station (degrees). The coefficients are interpolated in distance and depth and combined with
// the source's colatitude and the azimuth to the station. The weights of the four nodes are not the
// bilinear ones (intended), so the correction jumps where the distance or the depth passes a node;
// at large distances by more than 1 s. Distances are clamped to 100 degrees and depths to 700 km; a
// negative depth extrapolates from the first row. Returns NaN for NaN.
KROSAC_API float ellipCorrection(float sourceLatitude, float sourceLongitude, float sourceDepth,
                                 float stationLatitude, float stationLongitude);

KROSAC_C_END

#endif
