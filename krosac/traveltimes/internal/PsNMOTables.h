// The grid of the Ps moveout curves.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_PSNMOTABLES_H
#define KROSAC_TRAVELTIMES_INTERNAL_PSNMOTABLES_H

#include <cstdint>

namespace krosac {

inline constexpr std::int32_t kPsNMODepths = 15, kPsNMODistances = 14;
inline constexpr std::int32_t kPsNMOCurves = kPsNMODepths * kPsNMODistances;

}  // namespace krosac

#endif
