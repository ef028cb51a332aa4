// Misfits between two seismograms.
#ifndef KROSAC_SEISMOGRAM_MISFITS_H
#define KROSAC_SEISMOGRAM_MISFITS_H

#include <cstdint>

#include "krosac/platform/Export.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// DELTA of a times the sum of (a - b)^2 or |a - b| over the samples that both have, in double
// precision. The sums begin at the second sample (intended); fewer than two give 0.
KROSAC_API float L2SacMisfit(const SacObject& a, const SacObject& b);
KROSAC_API float L1SacMisfit(const SacObject& a, const SacObject& b);

// The sum of (a - b)^2 over that of a^2, and of |a - b| over that of |a|; NaN for fewer than two
// samples.
KROSAC_API float L2SacFracMisfit(const SacObject& a, const SacObject& b);
KROSAC_API float L1SacFracMisfit(const SacObject& a, const SacObject& b);

// The smallest such ratio with b moved later by s samples, s = -m .. m - 1, all samples counted and
// terms without a partner skipped; the earliest on ties. *shift holds m on entry and the best s on
// return, *misfit its ratio. Where no ratio is a number (or m < 1) these are -12345 and infinity. A
// shift by all samples leaves no term and so a ratio of 0.
KROSAC_API void L2SacFracMisfitWithShift(const SacObject& a, const SacObject& b,
                                         std::int32_t* shift, float* misfit);
KROSAC_API void L1SacFracMisfitWithShift(const SacObject& a, const SacObject& b,
                                         std::int32_t* shift, float* misfit);

}  // namespace krosac

#endif
