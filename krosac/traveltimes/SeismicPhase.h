// What the travel-time look-ups answer. A field without a value holds -12345.0, or -1.0 in the
// answers of LocSAT tables.
#ifndef KROSAC_TRAVELTIMES_SEISMICPHASE_H
#define KROSAC_TRAVELTIMES_SEISMICPHASE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// A travel time with its slowness.
typedef struct SeismicPhase {
  float time;      // s
  float slowness;  // horizontal slowness, s/km
} SeismicPhase;

// A travel time with its two derivatives.
typedef struct SeismicPhaseTimeSlowness {
  float time;             // s
  float slowness;         // horizontal slowness, s/km
  float depthDerivative;  // growth of the time with the source depth, s/km
} SeismicPhaseTimeSlowness;

KROSAC_C_END

#endif
