// Responses of seismometers from their poles and zeros.
//
// Poles and zeros lie in flat arrays of float pairs (real, imaginary) in rad/s. Responses come
// conjugated: the imaginary part has its sign reversed, as the transform with a positive exponent
// (four1, realft) needs it. Evaluation is in double precision.
#ifndef KROSAC_DSP_INSTRUMENTRESPONSE_H
#define KROSAC_DSP_INSTRUMENTRESPONSE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The conjugate of C * product of (i*omega - zero) / product of (i*omega - pole) at omega rad/s.
// Counts below 1 give empty products, which are 1. At a pole the result is not finite.
KROSAC_API void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[],
                                   float* re, float* im, float omega, float C);

// The conjugate response of a built-in instrument at omega rad/s. Codes: 1 long-period standard
// (WWSSN), 2 short-period standard (WWSSN), 3 Wood-Anderson; any other gives (1, 0).
KROSAC_API void GetInstrumentResponse(int code, float* re, float* im, float omega);

// The same for the codes 1, 2 and 3.
KROSAC_API void GetWWLPResponse(float* re, float* im, float omega);
KROSAC_API void GetWWSPResponse(float* re, float* im, float omega);
KROSAC_API void GetWAResponse(float* re, float* im, float omega);

KROSAC_C_END

#endif
