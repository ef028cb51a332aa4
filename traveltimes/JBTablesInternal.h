// What JBTableObject shares with the plain functions.
#ifndef KROSAC_TRAVELTIMES_JBTABLESINTERNAL_H
#define KROSAC_TRAVELTIMES_JBTABLESINTERNAL_H

#include "krosac/traveltimes/PhaseTableInternal.h"
#include "krosac/traveltimes/SeismicPhase.h"

namespace krosac {

inline constexpr char kNoJBTables[] = "Sorry, can't open the JB Tables file.\n";
inline constexpr std::size_t kJBPRows = 118, kJBSRows = 120;

// ReadJBTablePhase for an array that holds `capacity` rows.
void readJBPhase(const char* phase, std::int32_t capacity, float* table, std::int32_t* rows);

}  // namespace krosac

#endif
