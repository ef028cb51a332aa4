// Results of travel-time look-ups. A field without a value is -12345.0, or -1.0 from LocSAT tables.
#ifndef KROSAC_TRAVELTIMES_SEISMICPHASE_H
#define KROSAC_TRAVELTIMES_SEISMICPHASE_H

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// A travel time and its slowness.
typedef struct SeismicPhase {
  float time;      // s
  float slowness;  // horizontal slowness, s/km
} SeismicPhase;

// A travel time and its two derivatives.
typedef struct SeismicPhaseTimeSlowness {
  float time;             // s
  float slowness;         // horizontal slowness, s/km
  float depthDerivative;  // derivative of the time with respect to source depth, s/km
} SeismicPhaseTimeSlowness;

KROSAC_C_END

#endif
