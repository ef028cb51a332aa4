// Quasi-random points that fill a unit cube of up to 52 dimensions evenly.
#ifndef KROSAC_DSP_QUASIRANDOM_H
#define KROSAC_DSP_QUASIRANDOM_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The state of one sequence. All contexts share a constant table of direction numbers. Several
// threads may use different contexts, but not the same one at the same time.
typedef struct QuasiRandomContext {
  int32_t status;      // 0; -1 if the dimensions were limited to 52; -9 without a sequence
  int32_t dimensions;  // 0..52
  uint64_t counter;    // number of points returned so far
  uint64_t* point;     // the last point multiplied by 2^30
} QuasiRandomContext;

// Starts a sequence of points of d dimensions in a context that holds none. A negative d counts as
// 0. Returns the context's status: 0, -1 if d was limited to 52, or -9 if there is no memory. The
// caller releases the sequence with QuasiRandomRelease.
KROSAC_API int32_t QuasiRandomInitialize(QuasiRandomContext* context, int32_t d);

// Writes the next point of the Sobol sequence, in Gray-code order and without the origin, into
// out[0..dimensions-1]. Components are between 0 and 1, exact for the first 2^24 - 1 points and
// rounded to single precision afterwards. The 2^30th point is the origin, and the sequence repeats.
// A released or zero-filled context writes nothing. Sources: Sobol (1967), Antonov and
// Saleev (1979), Bratley and Fox (1988); direction numbers of Joe and Kuo (2008).
KROSAC_API void QuasiRandomNumber(QuasiRandomContext* context, float* out);

// Frees a sequence and sets the status to -9. A context without a sequence only gets the status.
KROSAC_API void QuasiRandomRelease(QuasiRandomContext* context);

KROSAC_C_END

#endif
