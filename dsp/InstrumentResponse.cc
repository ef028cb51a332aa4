#include "krosac/dsp/InstrumentResponse.h"

#include <cmath>
#include <cstddef>
#include <iterator>

namespace krosac {
namespace {

// Written out, since compilers differ in how they multiply and divide complex numbers.
struct Complex {
  double re, im;

  Complex operator*(Complex z) const { return {re * z.re - im * z.im, re * z.im + im * z.re}; }
  // Smith (1962), whose parts stay in range where those of the square of z would not.
  Complex operator/(Complex z) const {
    if (std::fabs(z.re) < std::fabs(z.im)) {
      const double ratio = z.re / z.im, divisor = z.re * ratio + z.im;
      return {(re * ratio + im) / divisor, (im * ratio - re) / divisor};
    }
    const double ratio = z.im / z.re, divisor = z.im * ratio + z.re;
    return {(im * ratio + re) / divisor, (im - re * ratio) / divisor};
  }
};

struct Instrument {
  int nZeros;
  int nPoles;
  float poles[10];
  float constant;
};

// The fifth short-period pole repeats the fourth instead of conjugating it; that is intended.
constexpr Instrument kInstruments[] = {
    {3, 4, {-0.257f, 0.3376f, -0.257f, -0.3376f, -0.06283f, 0.0f, -0.06283f, 0.0f}, 0.5985275f},
    {3,
     5,
     {-5.0136609f, 6.4151092f, -5.0136609f, -6.4151092f, -8.298151f, 0.0f, -8.6940765f, -7.196866f,
      -8.6940765f, -7.196866f},
     397.54767f},
    {2, 2, {-6.2831855f, 4.712389f, -6.2831855f, -4.712389f}, 2800.0f}};

constexpr float kZerosAtOrigin[6] = {};

Complex product(int count, const float* roots, double omega) {
  Complex result{1.0, 0.0};
  for (std::ptrdiff_t k = 0; k < count; ++k) {
    result = result * Complex{-double{roots[2 * k]}, omega - double{roots[2 * k + 1]}};
  }
  return result;
}

}  // namespace

void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[], float* re,
                        float* im, float omega, float C) {
  const Complex zerosProduct = product(nZeros, zeros, omega);
  const Complex h =
      Complex{C * zerosProduct.re, C * zerosProduct.im} / product(nPoles, poles, omega);
  *re = static_cast<float>(h.re);
  // The conjugate; that is intended.
  *im = static_cast<float>(-h.im);
}

void GetInstrumentResponse(int code, float* re, float* im, float omega) {
  if (code < 1 || code > static_cast<int>(std::size(kInstruments))) {
    *re = 1.0f;
    *im = 0.0f;
    return;
  }
  const Instrument& instrument = kInstruments[code - 1];
  ComputeInstRespnse(instrument.nZeros, kZerosAtOrigin, instrument.nPoles, instrument.poles, re, im,
                     omega, instrument.constant);
}

void GetWWLPResponse(float* re, float* im, float omega) {
  GetInstrumentResponse(1, re, im, omega);
}

void GetWWSPResponse(float* re, float* im, float omega) {
  GetInstrumentResponse(2, re, im, omega);
}

void GetWAResponse(float* re, float* im, float omega) {
  GetInstrumentResponse(3, re, im, omega);
}

}  // namespace krosac
