// Samples for the functions outside the class.
#ifndef KROSAC_SEISMOGRAM_INTERNAL_SAMPLES_H
#define KROSAC_SEISMOGRAM_INTERNAL_SAMPLES_H

#include <span>

#include "krosac/seismogram/SacObject.h"

namespace krosac {

// The samples that are both stated by NPTS and in the buffer.
inline std::span<float> samplesOf(const SacObject& s) {
  return s.samples();
}

}  // namespace krosac

#endif
