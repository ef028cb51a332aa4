// Recursive Butterworth filters: a cascade of second-order sections from the bilinear transform
// with a prewarped corner, applied in place.
//
// The entry points run BUroots, LP or LPtoHP, CutOffs with the prewarped corner, BiLin and Apply in
// turn. Constants and arithmetic are single precision. Nothing is static, so threads may filter
// different arrays at once.
#ifndef KROSAC_DSP_BUTTERWORTH_H
#define KROSAC_DSP_BUTTERWORTH_H

#include <stdint.h>

#include "krosac/platform/Export.h"

KROSAC_C_BEGIN

// A filter being designed. A section count outside 0..10 counts as 0 or 10.
typedef struct BUFilterDesign {
  int32_t reserved;         // not used
  int32_t nSections;        // second-order sections, half the poles
  float zeros[20];          // not used: room for ten complex zeros
  float poleRe[10];         // poles of the upper half of the unit circle, real parts
  float poleIm[10];         // and imaginary parts
  float num[10][3];         // numerators by powers of s, after BiLin of 1/z
  float den[10][3];         // denominators alike
  float sectionGain[10];    // 1; only the first is used
  int32_t sectionKind[10];  // 1; not used
} BUFilterDesign;

// Low-pass and high-pass filter npts samples in place. dt is the sample interval in seconds, fc the
// corner in hertz. nPasses 2 filters forward and backward (no phase shift, twice the decibels); any
// other value filters forward once. An odd pole count has the sections of its design without the
// real pole. Fewer than 2 or more than 21 poles leave the data unchanged. The corner is not
// checked: at or above the Nyquist frequency or at 0 the filter is unstable or undefined.
KROSAC_API void GRLPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc);
KROSAC_API void GRHPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc);

// Places the poles of the upper left quarter of the unit circle and sets nSections, the gains and
// the kinds. Fewer than 2 or more than 21 poles give no sections.
KROSAC_API void BUroots(BUFilterDesign* design, int nPoles);

// Sections of the analog low-pass, and of the analog high-pass, with the corner at 1 rad per unit.
KROSAC_API void LP(BUFilterDesign* design);
KROSAC_API void LPtoHP(BUFilterDesign* design);

// The analog frequency in hertz, tan(pi*f*T)/(pi*T), that the bilinear transform with interval T
// (s) maps onto f (Hz).
KROSAC_API float warp(float f, float T);

// Moves the corner from 1 rad per unit to 2*pi*f.
KROSAC_API void CutOffs(BUFilterDesign* design, float f);

// Turns every section from s to z by s = (1 - 1/z)/(1 + 1/z).
KROSAC_API void BiLin(BUFilterDesign* design);

// Runs the sections one after the other over npts samples in place, each from rest; with nPasses 2
// once more, backward. No samples when npts <= 0.
KROSAC_API void Apply(const BUFilterDesign* design, float* data, int npts, int nPasses);

KROSAC_C_END

#endif
