// Radix-2 Fourier transforms of single-precision arrays.
//
// Both work in place on unit-offset arrays: pass the address of the first sample minus one element,
// so that data[1] is the first sample. Nothing before data[1] is accessed. The forward transform
// has a positive exponent, so a delay of t seconds multiplies the bin at f Hz by exp(+2*pi*i*f*t).
// Neither direction is normalised. If the length is not a power of two, the data do not change.
#ifndef KROSAC_DSP_FFT_H
#define KROSAC_DSP_FFT_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Replaces nn complex values, interleaved in data[1..2*nn], by their transform
// X[k] = sum over j of x[j]*exp(isign*2*pi*i*j*k/nn), isign +1 or -1. A forward and an
// inverse transform return nn times the input. Method: Danielson and Lanczos (1942), as in Press et
// al., Numerical Recipes (1992).
KROSAC_API void four1(float* data, unsigned long nn, int isign);

// Forward (isign 1): replaces n real samples data[1..n] by the positive-frequency half of their
// transform F, packed: data[1] = F[0], data[2] = F[n/2], data[2*k+1] and data[2*k+2] = real and
// imaginary part of F[k] for k = 1..n/2-1. Inverse (any other isign): replaces such bins by n/2
// times the samples. If n is below 2, the data do not change. Method: Press et al., Numerical
// Recipes (1992).
KROSAC_API void realft(float* data, unsigned long n, int isign);

KROSAC_C_END

#endif
