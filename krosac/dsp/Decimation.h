// Reduction of the sampling rate by an integer factor, with a symmetric low-pass filter applied at
// the output instants only. Sums are single precision, in the order of the taps. No output may
// overlap its input.
#ifndef KROSAC_DSP_DECIMATION_H
#define KROSAC_DSP_DECIMATION_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The taps for each factor: symmetric with unit sum, equiripple, pass band to 0.90 of the new
// Nyquist frequency within 1.7 %, stop band from it at -47.6 dB or lower. Made by
// tools/make_decimation_tables from tools/constants/decimation_by*.csv.
KROSAC_API extern const float DECIMATEby2[95];
KROSAC_API extern const float DECIMATEby3[141];
KROSAC_API extern const float DECIMATEby4[181];
KROSAC_API extern const float DECIMATEby5[221];

// Decimates n samples by a factor of 2..5 with the table of that factor, without a phase shift.
// The trailing n mod factor samples are dropped; out gets n/factor values, *outLength their number
// (0 when n < factor). Samples outside the signal count as zero. Returns 0; 1 for a factor outside
// 1..5. A factor of 1 returns 0 and writes nothing: the caller keeps its own signal.
KROSAC_API int32_t decimateSignal(int32_t factor, int32_t n, const float* in, float* out,
                                  int32_t* outLength);

// Decimates n samples with any filter: out[i/factor] = sum over t of h[t]*in[i-(taps-1)/2+t] for
// i = 0, factor, 2*factor, ... < n, so out holds n/factor values, rounded up; *outLength is their
// number (0 when n or the factor is below 1). Samples outside the signal count as zero.
KROSAC_API void decim(int32_t factor, int32_t taps, const float* h, void* unused, int32_t n,
                      const float* in, float* out, int32_t* outLength);

// Decimates a stream block by block: each group of factor samples gives one output, the sum over t
// of h[t]*delay[t], where delay[0] is the newest sample. The caller keeps the delay line (taps
// values, zero at the start) between calls. out gets n/factor values, *outLength their number (0
// when n < factor or the factor is below 1). Stops the process when n is no multiple of the factor.
KROSAC_API void decimorig(int32_t factor, int32_t taps, const float* h, float* delay, int32_t n,
                          const float* in, float* out, int32_t* outLength);

KROSAC_C_END

#endif
