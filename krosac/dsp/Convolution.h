// Convolution in the time domain.
#ifndef KROSAC_DSP_CONVOLUTION_H
#define KROSAC_DSP_CONVOLUTION_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Writes out[i] = scale * sum over k = 0..m-1 of a[i+1-k]*b[k] for i = 0..n-1: the causal
// convolution of a (n samples) with b (m samples), advanced by one sample. Samples before a[0]
// and the sample a[n] count as zero and are not read. Sums are single precision, in the order of k.
// The scale is usually the sample interval in seconds. If m <= 0, out is set to zero. out must not
// overlap a or b.
KROSAC_API void TDconvolve(const float* a, const float* b, float* out, unsigned int n, int m,
                           float scale);

KROSAC_C_END

#endif
