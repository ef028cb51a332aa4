// Quasi-random numbers that fill a unit cube of up to 52 dimensions evenly.
#ifndef KROSAC_DSP_QUASIRANDOM_H
#define KROSAC_DSP_QUASIRANDOM_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// One running sequence. All share one constant table of direction numbers, so contexts may come and
// go on any thread; each context is for one thread at a time.
typedef struct QuasiRandomContext {
  int32_t status;      // 0; -1 when the dimensions were limited to 52; -9 when it holds no sequence
  int32_t dimensions;  // 0..52
  uint64_t counter;    // points given so far
  uint64_t* point;     // the last point times 2^30
} QuasiRandomContext;

// Starts a sequence of points of d dimensions in a context that holds none; a negative d counts as
// 0. Returns the context's status: 0, -1 when d was limited to 52, -9 without memory. Release it
// with QuasiRandomRelease.
KROSAC_API int32_t QuasiRandomInitialize(QuasiRandomContext* context, int32_t d);

// Writes the next point of the Sobol sequence, in Gray-code order and without the origin, into
// out[0..dimensions-1]. Components lie in 0..1, exact for the first 2^24 - 1 points and rounded to
// single precision after; with the 2^30th point the sequence returns to the origin and starts
// again. A released or zero-filled context writes nothing. Sources: Sobol (1967), Antonov and
// Saleev (1979), Bratley and Fox (1988); direction numbers of Joe and Kuo (2008).
KROSAC_API void QuasiRandomNumber(QuasiRandomContext* context, float* out);

// Ends a sequence and sets the status to -9. A context that holds none is only marked.
KROSAC_API void QuasiRandomRelease(QuasiRandomContext* context);

KROSAC_C_END

#endif
