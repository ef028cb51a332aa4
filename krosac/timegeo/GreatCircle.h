// Distances, azimuths and end points on a sphere, and the geometric spreading of body waves. All
// functions are pure. A NaN or an infinite angle gives NaN.
#ifndef KROSAC_TIMEGEO_GREATCIRCLE_H
#define KROSAC_TIMEGEO_GREATCIRCLE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The epicentral distance (degrees of arc, 0 to 180) between two geographic points (degrees) and
// the azimuth at point 1 toward point 2 (degrees clockwise from north). Latitudes are flattened
// first, phi -> atan(0.9966102 tan phi), but for one of exactly 90; longitudes may be any.
//
// The distance comes from the cosine of the arc, which resolves nearby points to about 2e-6
// degrees; points with the same coordinates give exactly 0. An azimuth a hair west of north rounds
// to 360. All pointers are by address as in Fortran: nothing is written where an input is null, and
// an output that is null is left out.
KROSAC_API void delta_az(const float* lat1, const float* lon1, const float* lat2, const float* lon2,
                         float* distance, float* azimuth);

// One point's part of delta_az, with the factor from degrees to radians supplied: out[0] and out[1]
// are the sine and cosine of the flattened latitude, out[2] and out[3] the cosine and sine of the
// longitude, each cosine built from its sine. The longitude as |fmod(lon, 360)| goes to
// reducedLongitude, which decides the sign of out[2].
KROSAC_API void dbpt(double out[4], double* reducedLongitude, double latitude, double longitude,
                     double degreesToRadians);

// The point (degrees) that lies at a distance along an azimuth (degrees clockwise from north) from
// a start point (degrees), on a sphere whose radius has the unit of the distance; latitudes are not
// flattened. The longitude is the start longitude plus an offset of -180 to 180, not wrapped, so it
// may leave -180..180. A radius of 0 gives NaN. An output that is null is left out.
KROSAC_API void latLonFromDistAz(float* latitude, float* longitude, float radius,
                                 float startLatitude, float startLongitude, float distance,
                                 float azimuth);

// The tabulated geometric-spreading factor of teleseismic body waves at an epicentral distance
// (degrees), linear between nodes from 30 to 90 degrees; the end values hold beyond.
KROSAC_API double geospread(float distance);

KROSAC_C_END

#endif
