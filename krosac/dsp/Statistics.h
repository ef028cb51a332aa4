// Extrema, mean, compensated sum, sorting and medians of single-precision arrays.
#ifndef KROSAC_DSP_STATISTICS_H
#define KROSAC_DSP_STATISTICS_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The largest and the smallest of n values, starting from -1e30 and 1e30 (which is the result where
// no value lies beyond, so for a negative n); -12345.0 for n = 0. NaN is passed over.
KROSAC_API float vmax(const float* x, int n);
KROSAC_API float vmin(const float* x, int n);

// The mean, summed in single precision in index order; -12345.0 for n = 0.
KROSAC_API float vmean(const float* x, int n);

// The sum in double precision with the compensation of Kahan (1965), rounded to single. Below two
// values it is the first element; without an array 0.
KROSAC_API float kahanSum(const float* x, int n);

// Sorts x[1..n] ascending in place by heap sort, NaN last. n < 2 changes nothing.
KROSAC_API void sort(int n, float* x);

// The median of x[1..n], the mean of the middle two for an even n; NaN counts as largest. Sorts the
// array. n < 1 gives -12345.0.
KROSAC_API void mdian1(float* x, int n, float* median);

// The same median without sorting: the array stays as it is. A guess moves toward a weighted mean
// until as many elements lie above as below; at most 52 passes over the array. Method: Press et
// al., Numerical Recipes (1986), with halving of the bracket where the guess leaves it.
KROSAC_API void mdian2(const float* x, int n, float* median);

KROSAC_C_END

#endif
