// Extrema, mean, compensated sum, sorting and medians of single-precision arrays.
#ifndef KROSAC_DSP_STATISTICS_H
#define KROSAC_DSP_STATISTICS_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// Return the largest and the smallest of n values, ignoring NaN; -12345.0 if n = 0. The search
// starts from -1e30 and 1e30, which are the results for a negative n or values beyond them.
KROSAC_API float vmax(const float* x, int n);
KROSAC_API float vmin(const float* x, int n);

// Returns the mean, summed in single precision in index order; -12345.0 if n = 0.
KROSAC_API float vmean(const float* x, int n);

// Returns the sum in double precision with the compensation of Kahan (1965), rounded to single. If
// n < 2 it is the first element; for a null array 0.
KROSAC_API float kahanSum(const float* x, int n);

// Sorts x[1..n] in ascending order in place by heap sort, with NaN last. n < 2 changes nothing.
KROSAC_API void sort(int n, float* x);

// Computes the median of x[1..n], or the mean of the middle two if n is even, and sorts the array.
// NaN counts as the largest value. If n < 1, the median is -12345.0.
KROSAC_API void mdian1(float* x, int n, float* median);

// Computes the same median without changing the array. A guess moves toward a weighted mean until
// as many elements are above as below it, in at most 52 passes over the array. Method: Press et
// al., Numerical Recipes (1986), with bisection where the guess leaves its bracket.
KROSAC_API void mdian2(const float* x, int n, float* median);

KROSAC_C_END

#endif
