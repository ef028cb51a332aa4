// Amplitudes and delays of the body waves of a shallow double couple.
#ifndef KROSAC_SOURCE_BODYWAVERESPONSE_H
#define KROSAC_SOURCE_BODYWAVERESPONSE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Computes in place, in double precision, the direct teleseismic body waves of a double couple at a
// given depth and their reflections at the free surface above it, as a receiver on a fixed crust
// (6.0 km/s) sees them. The block on input and on output:
//
//    0  strike (degrees)                              P
//    1  dip (degrees)                                 pP
//    2  rake (degrees)                                sP
//    3  source depth (km)                             SV
//    4  azimuth of the station (degrees)              sS of SV
//    5  ray parameter (s/km)                          pS
//    6  P velocity at the source (km/s; <= 0: 6.2)    SH
//    7  not read                                      sS of SH
//    8  epicentral distance (degrees)                 delay of pP after P (s)
//    9  not read                                      delay of sP after P (s)
//   10  density at the source (g/cm^3; <= 0: 2.67)    delay of sS after S (s)
//   11  not read                                      up-going P without reflection
//   12  not read                                      up-going SV, as P at the receiver, without
//                                                     reflection
//
// Amplitudes are vertical for P, in the units of geospread; the moment is the caller's factor. The
// source lies in a Poisson solid. A ray parameter above 1/6 s/km, or above the inverse of a
// velocity at the source, gives NaN. Does nothing for a null block.
KROSAC_API void GetBWResponse(float block[13]);

KROSAC_C_END

#endif
