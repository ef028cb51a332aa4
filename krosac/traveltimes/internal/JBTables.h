// What JBTableObject shares with the plain functions.
#ifndef KROSAC_TRAVELTIMES_INTERNAL_JBTABLES_H
#define KROSAC_TRAVELTIMES_INTERNAL_JBTABLES_H

#include "krosac/traveltimes/SeismicPhase.h"
#include "krosac/traveltimes/internal/PhaseTable.h"

namespace krosac {

inline constexpr char kNoJBTables[] = "Sorry, can't open the JB Tables file.\n";
inline constexpr std::size_t kJBPRows = 118, kJBSRows = 120;

// ReadJBTablePhase for an array that holds `capacity` rows.
void readJBPhase(const char* phase, std::int32_t capacity, float* table, std::int32_t* rows);

}  // namespace krosac

#endif
