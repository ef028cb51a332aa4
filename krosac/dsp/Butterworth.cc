#include "krosac/dsp/Butterworth.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <utility>

#include "krosac/dsp/internal/Kernels.h"

namespace krosac {
namespace {

constexpr int kMaxSections = 10;
// Sines and tangents are computed in double precision and rounded to single, because
// single-precision versions differ between mathematics libraries.
constexpr float kPi = 3.1415927410125732f;
constexpr float kTwoPi = 6.2831854820251465f;

int sectionCount(const BUFilterDesign* design) {
  return design ? std::clamp(design->nSections, 0, kMaxSections) : 0;
}

void setCoefficients(float (&coefficients)[3], float c0, float c1, float c2) {
  coefficients[0] = c0;
  coefficients[1] = c1;
  coefficients[2] = c2;
}

void filter(float* data, int npts, int nPasses, int nPoles, float dt, float fc,
            void (*placeSections)(BUFilterDesign*)) {
  BUFilterDesign design;
  BUroots(&design, nPoles);
  placeSections(&design);
  CutOffs(&design, warp(0.5f * fc * dt, 2.0f));
  BiLin(&design);
  Apply(&design, data, npts, nPasses);
}

}  // namespace

void GRLPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc) {
  filter(data, npts, nPasses, nPoles, dt, fc, LP);
}

void GRHPBUfilter(float* data, int npts, int nPasses, int nPoles, float dt, float fc) {
  filter(data, npts, nPasses, nPoles, dt, fc, LPtoHP);
}

void BUroots(BUFilterDesign* design, int nPoles) {
  if (!design) return;
  const bool fits = nPoles >= 2 && nPoles / 2 <= kMaxSections;
  design->nSections = fits ? nPoles / 2 : 0;
  // The real pole of an odd order is never placed; that is intended.
  for (int k = 0; k < design->nSections; ++k) {
    const float fraction = static_cast<float>(2 * k + 1) / static_cast<float>(2 * nPoles);
    const double theta = kPi * (fraction + 0.5f);
    design->poleRe[k] = static_cast<float>(std::cos(theta));
    design->poleIm[k] = static_cast<float>(std::sin(theta));
    design->sectionGain[k] = 1.0f;
    design->sectionKind[k] = 1;
  }
}

void LP(BUFilterDesign* design) {
  for (int k = 0; k < sectionCount(design); ++k) {
    const float re = design->poleRe[k];
    const float m = re * re + design->poleIm[k] * design->poleIm[k];
    const float gain = k == 0 ? design->sectionGain[0] : 1.0f;
    setCoefficients(design->num[k], m * gain, 0.0f, 0.0f);
    setCoefficients(design->den[k], m, -2.0f * re, 1.0f);
  }
}

// Substitutes 1/s for s in the low-pass.
void LPtoHP(BUFilterDesign* design) {
  LP(design);
  for (int k = 0; k < sectionCount(design); ++k) {
    std::swap(design->num[k][0], design->num[k][2]);
    std::swap(design->den[k][0], design->den[k][2]);
  }
}

float warp(float f, float T) {
  const float angle = kPi * f * T;
  return static_cast<float>(std::tan(double{angle})) / (kPi * T);
}

void CutOffs(BUFilterDesign* design, float f) {
  const float omega = kTwoPi * f;
  for (int k = 0; k < sectionCount(design); ++k) {
    for (float* coefficients : {design->num[k], design->den[k]}) {
      coefficients[1] /= omega;
      coefficients[2] /= omega * omega;
    }
  }
}

void BiLin(BUFilterDesign* design) {
  for (int k = 0; k < sectionCount(design); ++k) {
    const auto& b = design->num[k];
    const auto& a = design->den[k];
    const float d = a[0] + a[1] + a[2];
    setCoefficients(design->num[k], (b[0] + b[1] + b[2]) / d, 2.0f * (b[0] - b[2]) / d,
                    (b[0] - b[1] + b[2]) / d);
    setCoefficients(design->den[k], 1.0f, 2.0f * (a[0] - a[2]) / d, (a[0] - a[1] + a[2]) / d);
  }
}

void Apply(const BUFilterDesign* design, float* data, int npts, int nPasses) {
  if (!design || !data || npts <= 0) return;
  const auto run = [&](float* first, std::ptrdiff_t step) {
    KROSAC_KERNEL(cascade)(design->num, design->den, sectionCount(design), first, npts, step);
  };
  run(data, 1);
  // Only exactly two passes include the backward one; that is intended.
  if (nPasses == 2) run(data + (npts - 1), -1);
}

}  // namespace krosac
