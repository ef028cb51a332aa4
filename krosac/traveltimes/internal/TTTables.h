// What TTTableObject shares with the plain functions.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_TTTABLES_H
#define KROSAC_TRAVELTIMES_INTERNAL_TTTABLES_H

#include "krosac/traveltimes/internal/PhaseTable.h"

namespace krosac {

inline constexpr std::int32_t kTTColumns = 18;

// ReadTTTablePhase for an array that holds `capacity` rows.
void readTTPhase(const char* prefix, const char* phase, std::int32_t capacity, float* table,
                 std::int32_t* rows);

}  // namespace krosac

#endif
