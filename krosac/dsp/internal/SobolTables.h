// Primitive polynomials modulo 2 and initial direction numbers of the Sobol sequence, for each
// dimension.
#ifndef KROSAC_DSP_INTERNAL_SOBOLTABLES_H
#define KROSAC_DSP_INTERNAL_SOBOLTABLES_H

namespace krosac {

inline constexpr int kSobolDimensions = 52;

struct SobolPolynomial {
  int mdeg;                   // degree
  unsigned ip;                // inner coefficients as bits, highest power first
  unsigned initialValues[8];  // `mdeg` of them are used
};

extern const SobolPolynomial kSobolPolynomials[kSobolDimensions];

}  // namespace krosac

#endif
