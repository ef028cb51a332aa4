// Primitive polynomials modulo 2 and initial direction numbers of the Sobol sequence, one for each
// dimension.
#ifndef KROSAC_DSP_INTERNAL_SOBOLTABLES_H
#define KROSAC_DSP_INTERNAL_SOBOLTABLES_H

namespace krosac {

inline constexpr int kSobolDimensions = 52;

struct SobolPolynomial {
  int mdeg;                   // degree
  unsigned ip;                // coefficients between the first and the last, highest power first
  unsigned initialValues[8];  // as many as the degree
};

extern const SobolPolynomial kSobolPolynomials[kSobolDimensions];

}  // namespace krosac

#endif
