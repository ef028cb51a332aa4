// What the spectral operations of the seismogram class share.
#ifndef KROSAC_SEISMOGRAM_INTERNAL_SACOBJECTSPECTRAL_H
#define KROSAC_SEISMOGRAM_INTERNAL_SACOBJECTSPECTRAL_H

#include <algorithm>
#include <cmath>

#include "krosac/dsp/internal/PackedSpectrum.h"
#include "krosac/seismogram/SacObject.h"

namespace krosac {

// Transforms the padded samples, lets `shape` change the spectrum, and takes the samples back,
// times the scale.
template <typename Shape>
void SacObject::shapeSpectrum(Shape shape, double scale) {
  const auto x = samples();
  if (x.empty()) return;
  PackedSpectrum spectrum(x, paddedLength(x.size()), delta());
  if (!spectrum) return;
  spectrum.forward();
  shape(spectrum);
  takeBack(spectrum, scale);
}

}  // namespace krosac

#endif
