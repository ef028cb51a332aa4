// Recursive Butterworth filters: a cascade of second-order sections, designed by the bilinear
// transform with a prewarped corner and applied in place.
//
// The entry points call BUroots, LP or LPtoHP, CutOffs with the prewarped corner, BiLin and Apply
// in this order. Constants and arithmetic are single precision. There is no static state, so
// several threads may filter different arrays.
#ifndef KROSAC_DSP_BUTTERWORTH_H
#define KROSAC_DSP_BUTTERWORTH_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// The record of a filter design. A section count below 0 counts as 0, one above 10 as 10.
typedef struct BUFilterDesign {
  int32_t reserved;         // not used
  int32_t nSections;        // number of second-order sections, half the poles
  float zeros[20];          // not used: ten complex zeros
  float poleRe[10];         // real parts of the poles in the upper half plane
  float poleIm[10];         // their imaginary parts
  float num[10][3];         // numerators by powers of s; by powers of 1/z after BiLin
  float den[10][3];         // denominators in the same order
  float sectionGain[10];    // 1; only the first is used
  int32_t sectionKind[10];  // 1; not used
} BUFilterDesign;

// Low-pass and high-pass filter npts samples in place. dt is the sample interval in seconds, fc the
// corner frequency in hertz. nPasses = 2 filters forward and backward (no phase shift, twice the
// attenuation in decibels); any other value filters forward once. An odd number of poles uses the
// sections of its design without the real pole: the gain is 1 at the corner, and the pass band is
// amplified near it (three poles: up to 1.15 in one pass, 1.33 in two). With fewer than 2 or more
// than 21 poles the data do not change. The corner is not checked: at 0, at the Nyquist frequency
// and above it the filter is undefined or unstable.
KROSAC_API void GRLPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc);
KROSAC_API void GRHPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc);

// Places the poles on the upper left quarter of the unit circle and sets nSections, sectionGain and
// sectionKind. With fewer than 2 or more than 21 poles there are no sections.
KROSAC_API void BUroots(BUFilterDesign* design, int nPoles);

// Compute the sections of the analog low-pass or high-pass with the corner at 1 rad/s.
KROSAC_API void LP(BUFilterDesign* design);
KROSAC_API void LPtoHP(BUFilterDesign* design);

// Returns the analog frequency in hertz, tan(pi*f*T)/(pi*T), that the bilinear transform with the
// interval T (s) maps onto f (Hz).
KROSAC_API float warp(float f, float T);

// Moves the corner of every section from 1 rad/s to 2*pi*f, f in hertz.
KROSAC_API void CutOffs(BUFilterDesign* design, float f);

// Converts every section from s to z by the bilinear transform s = (1 - 1/z)/(1 + 1/z).
KROSAC_API void BiLin(BUFilterDesign* design);

// Filters npts samples in place with one section after the other, each starting from zero memories,
// and with nPasses = 2 once more from the last sample to the first. npts <= 0 changes nothing.
KROSAC_API void Apply(const BUFilterDesign* design, float* data, int npts, int nPasses);

KROSAC_C_END

#endif
