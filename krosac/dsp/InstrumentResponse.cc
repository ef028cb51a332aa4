#include "krosac/dsp/InstrumentResponse.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "krosac/dsp/internal/PolesAndZeros.h"

namespace krosac {
namespace {

constexpr PolesAndZeros kInstruments[] = {
    {.zeros = {.count = 3},
     .poles = {4, {-0.257f, 0.3376f, -0.257f, -0.3376f, -0.06283f, 0.0f, -0.06283f, 0.0f}},
     .constant = 0.5985275f},
    // The fifth short-period pole repeats the fourth in place of its conjugate; that is intended.
    {.zeros = {.count = 3},
     .poles = {5,
               {-5.0136609f, 6.4151092f, -5.0136609f, -6.4151092f, -8.298151f, 0.0f, -8.6940765f,
                -7.196866f, -8.6940765f, -7.196866f}},
     .constant = 397.54767f},
    {.zeros = {.count = 2},
     .poles = {2, {-6.2831855f, 4.712389f, -6.2831855f, -4.712389f}},
     .constant = 2800.0f}};

constexpr std::size_t kBlock = 64;

// The product of i*omega - root over the roots, at up to kBlock frequencies. Complex arithmetic is
// written out, because compilers differ in how they multiply and divide complex numbers.
struct Product {
  double re[kBlock], im[kBlock];

  Product(int count, const float* roots, std::span<const double> omega) {
    std::fill_n(re, omega.size(), 1.0);
    std::fill_n(im, omega.size(), 0.0);
    for (std::ptrdiff_t k = 0; k < count; ++k) {
      const double x = -double{roots[2 * k]}, root = roots[2 * k + 1];
      for (std::size_t i = 0; i < omega.size(); ++i) {
        const double y = omega[i] - root, product = re[i] * x - im[i] * y;
        im[i] = re[i] * y + im[i] * x;
        re[i] = product;
      }
    }
  }
};

void evaluate(int nZeros, const float* zeros, int nPoles, const float* poles, float constant,
              std::span<const float> omega, float re[], float im[]) {
  while (!omega.empty()) {
    const std::size_t count = std::min(omega.size(), kBlock);
    double frequencies[kBlock];
    std::copy_n(omega.begin(), count, frequencies);
    const Product above(nZeros, zeros, {frequencies, count});
    const Product below(nPoles, poles, {frequencies, count});
    for (std::size_t i = 0; i < count; ++i) {
      // (a + ib) / (c + id) by the method of Smith (1962), which does not overflow where |c + id|^2
      // would. It requires |d| <= |c|; otherwise both numbers are first multiplied by -i.
      const double a = constant * above.re[i], b = constant * above.im[i];
      const double c = below.re[i], d = below.im[i];
      const bool steep = std::fabs(c) < std::fabs(d);
      const double x = steep ? b : a, y = steep ? -a : b, u = steep ? d : c, v = steep ? -c : d;
      const double ratio = v / u, divisor = v * ratio + u;
      re[i] = static_cast<float>((y * ratio + x) / divisor);
      // The conjugate; that is intended.
      im[i] = static_cast<float>(-((y - x * ratio) / divisor));
    }
    omega = omega.subspan(count);
    re += count;
    im += count;
  }
}

void write(float* re, float* im, float real, float imaginary) {
  if (re) *re = real;
  if (im) *im = imaginary;
}

}  // namespace

void respond(const PolesAndZeros& instrument, std::span<const float> omega, float re[],
             float im[]) {
  const auto& [zeros, poles, constant] = instrument;
  evaluate(zeros.count, zeros.pairs, poles.count, poles.pairs, constant, omega, re, im);
}

void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[], float* re,
                        float* im, float omega, float C) {
  if ((nZeros > 0 && !zeros) || (nPoles > 0 && !poles)) return;
  float real, imaginary;
  evaluate(nZeros, zeros, nPoles, poles, C, {&omega, 1}, &real, &imaginary);
  write(re, im, real, imaginary);
}

void respond(int code, std::span<const float> omega, float re[], float im[]) {
  if (code < 1 || code > static_cast<int>(std::size(kInstruments))) {
    std::fill_n(re, omega.size(), 1.0f);
    std::fill_n(im, omega.size(), 0.0f);
    return;
  }
  respond(kInstruments[code - 1], omega, re, im);
}

void GetInstrumentResponse(int code, float* re, float* im, float omega) {
  float real, imaginary;
  respond(code, {&omega, 1}, &real, &imaginary);
  write(re, im, real, imaginary);
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
