// The source depth of a seismogram, whose unit differs between archives.
#ifndef KROSAC_EXAMPLES_DEPTH_H
#define KROSAC_EXAMPLES_DEPTH_H

#include "krosac/krosac.h"

// Returns EVDP in km. A value above 1000 is taken as metres, which many files hold.
inline float depthInKilometres(const krosac::SacObject& s) {
  return s.evdp() > 1000.0f ? s.evdp() / 1000.0f : s.evdp();
}

#endif
