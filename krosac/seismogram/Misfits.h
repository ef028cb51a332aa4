// Misfits between two seismograms. These are C++ functions.
#ifndef KROSAC_SEISMOGRAM_MISFITS_H
#define KROSAC_SEISMOGRAM_MISFITS_H

#include <cstdint>

#include "krosac/platform/Export.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// DELTA of a times the sum of (a - b)^2 or |a - b| over the samples that both have, in double
// precision. The sums start at the second sample (intended); 0 for fewer than two samples.
KROSAC_API float L2SacMisfit(const SacObject& a, const SacObject& b);
KROSAC_API float L1SacMisfit(const SacObject& a, const SacObject& b);

// The sum of (a - b)^2 over that of a^2, and of |a - b| over that of |a|; NaN for fewer than 2
// samples.
KROSAC_API float L2SacFracMisfit(const SacObject& a, const SacObject& b);
KROSAC_API float L1SacFracMisfit(const SacObject& a, const SacObject& b);

// The smallest such ratio with b shifted later by s samples, s = -m .. m - 1, and that shift, the
// earliest on ties. All samples count; terms without a partner are skipped, so a shift by all
// samples has the ratio 0. *shift is m on entry and the best s on return, *misfit its ratio: -12345
// and infinity where every ratio is NaN or m < 1. Null pointers change nothing.
KROSAC_API void L2SacFracMisfitWithShift(const SacObject& a, const SacObject& b,
                                         std::int32_t* shift, float* misfit);
KROSAC_API void L1SacFracMisfitWithShift(const SacObject& a, const SacObject& b,
                                         std::int32_t* shift, float* misfit);

}  // namespace krosac

#endif
