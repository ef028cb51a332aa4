#include "krosac/dsp/InstrumentResponse.h"

#include <complex>
#include <cstddef>
#include <iterator>

namespace krosac {
namespace {

using Complex = std::complex<double>;

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
  Complex result = 1.0;
  for (std::ptrdiff_t k = 0; k < count; ++k) {
    result *= Complex(-double{roots[2 * k]}, omega - double{roots[2 * k + 1]});
  }
  return result;
}

}  // namespace

void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[], float* re,
                        float* im, float omega, float C) {
  const Complex h = double{C} * product(nZeros, zeros, omega) / product(nPoles, poles, omega);
  *re = static_cast<float>(h.real());
  // The conjugate; that is intended.
  *im = static_cast<float>(-h.imag());
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
