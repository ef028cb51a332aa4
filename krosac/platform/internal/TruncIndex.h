// Integers from quotients, the same on every processor.
#ifndef KROSAC_PLATFORM_INTERNAL_TRUNCINDEX_H
#define KROSAC_PLATFORM_INTERNAL_TRUNCINDEX_H

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>

namespace krosac {

// What truncIndex returns for NaN: a negative number that equals no saturated index.
inline constexpr std::int64_t kNoIndex = std::numeric_limits<std::int64_t>::min();

// The index of a sample: the quotient truncated toward zero and limited to the range of int32_t.
// Windows and spikes use it, so an infinite time lies beyond either end of the trace.
inline std::int64_t truncIndex(double quotient) {
  using Limits = std::numeric_limits<std::int32_t>;
  if (std::isnan(quotient)) return kNoIndex;
  return static_cast<std::int64_t>(
      std::clamp(quotient, double{Limits::min()}, double{Limits::max()}));
}

// What truncInt32 returns where there is no such integer.
inline constexpr std::int32_t kNoInt32 = std::numeric_limits<std::int32_t>::min();

// The quotient truncated toward zero; kNoInt32 for NaN and values beyond 32 bits. Lengths, counts
// and fields use it, which must refuse such values instead of limiting them.
inline std::int32_t truncInt32(double quotient) {
  return quotient > -2147483649.0 && quotient < 2147483648.0 ? static_cast<std::int32_t>(quotient)
                                                             : kNoInt32;
}

}  // namespace krosac

#endif
