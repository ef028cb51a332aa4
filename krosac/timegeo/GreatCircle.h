// Distances, azimuths and end points on a sphere, and the geometric spreading of body waves. All
// functions are pure. They return NaN for NaN and infinite angles.
#ifndef KROSAC_TIMEGEO_GREATCIRCLE_H
#define KROSAC_TIMEGEO_GREATCIRCLE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Computes the epicentral distance (degrees of arc, 0 to 180) between two geographic points
// (degrees) and the azimuth at point 1 toward point 2 (degrees clockwise from north). Latitudes are
// first converted, phi -> atan(0.9966102 tan phi), except one of exactly 90. The result is neither
// the geographic nor the geocentric latitude: it is about halfway, up to 0.10 degrees from either,
// so distances differ by up to 0.19 degrees from those of geographic latitudes. Longitudes may have
// any value.
//
// The distance is the arc cosine, which resolves nearby points to about 2e-6 degrees; it is exactly
// 0 for equal coordinates. The azimuth is in 0 <= az < 360: one that rounds to 360 is 0, and so is
// -0.0. Arguments are passed by address as in Fortran. If an input is null, nothing is written; a
// null output is skipped.
KROSAC_API void delta_az(const float* lat1, const float* lon1, const float* lat2, const float* lon2,
                         float* distance, float* azimuth);

// Computes the direction cosines of one point as delta_az does, with the given factor from degrees
// to radians. out[0] and out[1] are the sine and cosine of the converted latitude, out[2] and
// out[3] the cosine and sine of the longitude; each cosine is computed from its sine.
// reducedLongitude is |fmod(longitude, 360)|, which determines the sign of out[2]. A null output is
// skipped.
KROSAC_API void dbpt(double out[4], double* reducedLongitude, double latitude, double longitude,
                     double degreesToRadians);

// Computes the point (degrees) at a distance along an azimuth (degrees clockwise from north) from a
// start point (degrees), on a sphere whose radius is in the unit of the distance. Latitudes are not
// converted. The longitude is the start longitude plus an offset of -180 to 180; it is not wrapped
// and may leave -180..180. A radius of 0 yields NaN. A null output is skipped.
KROSAC_API void latLonFromDistAz(float* latitude, float* longitude, float radius,
                                 float startLatitude, float startLongitude, float distance,
                                 float azimuth);

// Returns the geometric-spreading factor of teleseismic body waves at an epicentral distance
// (degrees), interpolated linearly in a table from 30 to 90 degrees and constant outside it.
KROSAC_API double geospread(float distance);

KROSAC_C_END

#endif
