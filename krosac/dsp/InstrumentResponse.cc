#include "krosac/dsp/InstrumentResponse.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <iterator>

#include "krosac/dsp/internal/InstrumentResponse.h"

namespace krosac {
namespace {

constexpr float kZerosAtOrigin[6] = {};
constexpr float kLongPeriodPoles[] = {-0.257f,   0.3376f, -0.257f,   -0.3376f,
                                      -0.06283f, 0.0f,    -0.06283f, 0.0f};
// The fifth short-period pole repeats the fourth instead of conjugating it; that is intended.
constexpr float kShortPeriodPoles[] = {-5.0136609f, 6.4151092f, -5.0136609f, -6.4151092f,
                                       -8.298151f,  0.0f,       -8.6940765f, -7.196866f,
                                       -8.6940765f, -7.196866f};
constexpr float kWoodAndersonPoles[] = {-6.2831855f, 4.712389f, -6.2831855f, -4.712389f};

constexpr PolesAndZeros kInstruments[] = {{3, kZerosAtOrigin, 4, kLongPeriodPoles, 0.5985275f},
                                          {3, kZerosAtOrigin, 5, kShortPeriodPoles, 397.54767f},
                                          {2, kZerosAtOrigin, 2, kWoodAndersonPoles, 2800.0f}};

constexpr std::size_t kBlock = 64;

// Complex arithmetic is written out, since compilers differ in how they multiply and divide complex
// numbers.
struct Block {
  double re[kBlock], im[kBlock];

  // The product of i*omega - root over the roots, at up to kBlock frequencies.
  Block(int count, const float* roots, std::span<const double> omega) {
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

}  // namespace

void respond(const PolesAndZeros& instrument, std::span<const float> omega, float re[],
             float im[]) {
  const auto& [nZeros, zeros, nPoles, poles, constant] = instrument;
  while (!omega.empty()) {
    const std::size_t count = std::min(omega.size(), kBlock);
    double frequencies[kBlock];
    std::copy_n(omega.begin(), count, frequencies);
    const Block above(nZeros, zeros, {frequencies, count});
    const Block below(nPoles, poles, {frequencies, count});
    for (std::size_t i = 0; i < count; ++i) {
      // (a + ib) / (c + id) as Smith (1962) has it, whose parts stay in range where those of the
      // square of c + id would not. It wants |d| <= |c|; else both are first multiplied by -i.
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

void ComputeInstRespnse(int nZeros, const float zeros[], int nPoles, const float poles[], float* re,
                        float* im, float omega, float C) {
  respond({nZeros, zeros, nPoles, poles, C}, {&omega, 1}, re, im);
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
  respond(code, {&omega, 1}, re, im);
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
