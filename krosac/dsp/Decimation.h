// Reduction of the sampling rate by an integer factor with a low-pass FIR filter, which is applied
// at the output samples only. Sums are single precision, in the order of the taps. The output must
// not overlap the input.
#ifndef KROSAC_DSP_DECIMATION_H
#define KROSAC_DSP_DECIMATION_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The coefficients for each factor: symmetric, with unit sum and equiripple. The pass band reaches
// 0.90 of the new Nyquist frequency within 1.7 %; the stop band starts at that frequency and lies
// at -47.6 dB or lower. tools/make_decimation_tables writes them from
// tools/constants/decimation_by*.csv.
KROSAC_API extern const float DECIMATEby2[95];
KROSAC_API extern const float DECIMATEby3[141];
KROSAC_API extern const float DECIMATEby4[181];
KROSAC_API extern const float DECIMATEby5[221];

// Decimates n samples by a factor of 2..5 with the table of that factor, without a phase shift.
// Drops the last n mod factor samples, writes n/factor values to out and their number (0 if n <
// factor) to *outLength. Samples outside the signal count as zero. Returns 0, or 1 if the factor is
// outside 1..5. A factor of 1 returns 0 and writes nothing; the caller keeps its own signal.
KROSAC_API int32_t decimateSignal(int32_t factor, int32_t n, const float* in, float* out,
                                  int32_t* outLength);

// Decimates n samples with a filter of the caller: out[i/factor] = sum over t of
// h[t]*in[i-(taps-1)/2+t] for i = 0, factor, 2*factor, ... < n. Writes n/factor values, rounded up,
// and their number (0 if n or the factor is below 1) to *outLength. Samples outside the signal
// count as zero. The pointer `unused` is ignored.
KROSAC_API void decim(int32_t factor, int32_t taps, const float* h, void* unused, int32_t n,
                      const float* in, float* out, int32_t* outLength);

// Decimates a stream in blocks: every `factor` samples produce one output, the sum over t of
// h[t]*delay[t], where delay[0] is the newest sample. The caller keeps the delay line (taps values,
// zero at the start) between calls. Writes n/factor values to out and their number (0 if n < factor
// or the factor is below 1) to *outLength. Stops the process if n is not a multiple of the factor.
KROSAC_API void decimorig(int32_t factor, int32_t taps, const float* h, float* delay, int32_t n,
                          const float* in, float* out, int32_t* outLength);

KROSAC_C_END

#endif
