// Sample indexes from quotients.
#ifndef KROSAC_PLATFORM_INTERNAL_TRUNCINDEX_H
#define KROSAC_PLATFORM_INTERNAL_TRUNCINDEX_H

#include <cstdint>
#include <limits>

namespace krosac {

// What truncIndex gives where there is no index.
inline constexpr std::int32_t kNoIndex = std::numeric_limits<std::int32_t>::min();

// A quotient truncated toward zero, the same on every processor; kNoIndex for NaN and values beyond
// 32 bits, which spikes skip and windows refuse.
inline std::int32_t truncIndex(double quotient) {
  return quotient > -2147483649.0 && quotient < 2147483648.0 ? static_cast<std::int32_t>(quotient)
                                                             : kNoIndex;
}

}  // namespace krosac

#endif
