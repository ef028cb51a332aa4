// Radix-2 Fourier transforms of single-precision arrays.
//
// Both work in place on unit-offset arrays: pass the address of the first sample minus one element,
// so that data[1] is the first sample. Nothing before data[1] is touched. The forward kernel has a
// positive exponent, so a delay of t seconds multiplies the bin at f by exp(+2*pi*i*f*t). Neither
// direction is normalised. Lengths that are no power of two leave the data unchanged.
#ifndef KROSAC_DSP_FFT_H
#define KROSAC_DSP_FFT_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Replaces nn complex values, interleaved in data[1..2*nn], by their transform
// X[k] = sum over j of x[j]*exp(isign*2*pi*i*j*k/nn), isign +1 or -1. Forward and back gives nn
// times the input. Method: Danielson and Lanczos (1942), as in Press et al., Numerical Recipes
// (1992).
KROSAC_API void four1(float* data, unsigned long nn, int isign);

// Forward (isign 1): replaces n real samples data[1..n] by the positive-frequency half of their
// transform F, packed: data[1] = F[0], data[2] = F[n/2], data[2*k+1] and data[2*k+2] = real and
// imaginary part of F[k] for k = 1..n/2-1. Inverse (any other isign): the reverse, times n/2.
// Lengths below 2 leave the data unchanged. Method: Press et al., Numerical Recipes (1992).
KROSAC_API void realft(float* data, unsigned long n, int isign);

KROSAC_C_END

#endif
