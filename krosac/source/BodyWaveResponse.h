// Amplitudes and delays of the teleseismic body waves of a shallow double couple.
#ifndef KROSAC_SOURCE_BODYWAVERESPONSE_H
#define KROSAC_SOURCE_BODYWAVERESPONSE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Computes the direct body waves of a double couple and their reflections at the free surface above
// it, recorded on a fixed crust (6.0 km/s), in double precision. The block is input and output:
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
// P amplitudes are vertical, in the units of geospread, for unit moment: the caller multiplies by
// the moment. The source is in a Poisson solid.
//
// The P and SV amplitudes (0 to 5, 11 and 12) are NaN if the ray parameter is above 1/6 s/km or
// above the P slowness at the source. The delays of pP and sP (8, 9) are finite up to the P
// slowness at the source; SH, sS of SH and the delay of sS (6, 7, 10) up to the S slowness. Does
// nothing if the block is null.
KROSAC_API void GetBWResponse(float block[13]);

KROSAC_C_END

#endif
