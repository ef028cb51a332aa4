// Responses of seismometers from their poles and zeros.
//
// Poles and zeros are flat arrays of float pairs (real, imaginary) in rad/s. The functions return
// the complex conjugate of the response, because the forward transform (four1, realft) has a
// positive exponent. Evaluation is in double precision.
#ifndef KROSAC_DSP_INSTRUMENTRESPONSE_H
#define KROSAC_DSP_INSTRUMENTRESPONSE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Computes the conjugate of C * product of (i*omega - zero) / product of (i*omega - pole) at omega
// rad/s. A product of no roots is 1. At a pole the result is not finite.
KROSAC_API void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[],
                                   float* re, float* im, float omega, float C);

// Computes the conjugate response of a built-in instrument at omega rad/s. The codes are 1 for the
// WWSSN long-period, 2 for the WWSSN short-period and 3 for the Wood-Anderson instrument; any other
// code has the response (1, 0).
KROSAC_API void GetInstrumentResponse(int code, float* re, float* im, float omega);

// Compute the responses of codes 1, 2 and 3.
KROSAC_API void GetWWLPResponse(float* re, float* im, float omega);
KROSAC_API void GetWWSPResponse(float* re, float* im, float omega);
KROSAC_API void GetWAResponse(float* re, float* im, float omega);

KROSAC_C_END

#endif
