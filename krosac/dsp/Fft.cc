#include "krosac/dsp/Fft.h"

#include <bit>
#include <cmath>
#include <utility>

#include "krosac/dsp/internal/Kernels.h"

// These loops define the results and serve short arrays. The kernels compute the same for long
// ones; see docs/fft.md.
namespace krosac {
namespace {

// The twiddle factors exp(i*k*theta) for k = 0, 1, 2, ... by a recurrence that stays accurate for
// small angles.
class Twiddle {
 public:
  explicit Twiddle(double theta) : wpi_(std::sin(theta)) {
    const double s = std::sin(0.5 * theta);
    wpr_ = -2.0 * s * s;
  }

  void advance() {
    const double previous = re;
    re = re * wpr_ - im * wpi_ + re;
    im = im * wpr_ + previous * wpi_ + im;
  }

  double re = 1.0;
  double im = 0.0;

 private:
  double wpr_;
  double wpi_;
};

float rounded(double value) {
  return static_cast<float>(value);
}

void reverseBits(float* data, unsigned long nn) {
  unsigned long j = 1;
  for (unsigned long i = 1; i < 2 * nn; i += 2) {
    if (j > i) {
      std::swap(data[j], data[i]);
      std::swap(data[j + 1], data[i + 1]);
    }
    unsigned long m = nn;
    while (m >= 2 && j > m) {
      j -= m;
      m /= 2;
    }
    j += m;
  }
}

}  // namespace

void four1(float* data, unsigned long nn, int isign) {
  if (!data || !std::has_single_bit(nn)) return;
  if (nn >= kShortestTransform) return KROSAC_KERNEL(four1)(data + 1, nn, isign);
  const unsigned long n = 2 * nn;
  reverseBits(data, nn);
  for (unsigned long mmax = 2; mmax < n; mmax *= 2) {
    const unsigned long istep = 2 * mmax;
    Twiddle w(isign * (6.28318530717959 / static_cast<double>(mmax)));
    for (unsigned long m = 1; m < mmax; m += 2, w.advance()) {
      for (unsigned long i = m; i <= n; i += istep) {
        const unsigned long j = i + mmax;
        const float tempr = rounded(w.re * data[j] - w.im * data[j + 1]);
        const float tempi = rounded(w.re * data[j + 1] + w.im * data[j]);
        data[j] = data[i] - tempr;
        data[j + 1] = data[i + 1] - tempi;
        data[i] += tempr;
        data[i + 1] += tempi;
      }
    }
  }
}

void realft(float* data, unsigned long n, int isign) {
  if (!data || n < 2 || !std::has_single_bit(n)) return;
  const bool forward = isign == 1;
  if (n >= 2 * kShortestTransform)
    return (forward ? KROSAC_KERNEL(realftForward) : KROSAC_KERNEL(realftInverse))(data + 1, n);
  const float c1 = 0.5f;
  const float c2 = forward ? -0.5f : 0.5f;
  const double theta = 3.141592653589793 / static_cast<double>(n / 2);
  if (forward) four1(data, n / 2, 1);

  Twiddle w(forward ? theta : -theta);
  for (unsigned long i = 2; i <= n / 4; ++i) {
    w.advance();
    const unsigned long i1 = 2 * i - 1;
    const unsigned long i2 = i1 + 1;
    const unsigned long i3 = n + 3 - i2;
    const unsigned long i4 = i3 + 1;
    const float h1r = c1 * (data[i1] + data[i3]);
    const float h1i = c1 * (data[i2] - data[i4]);
    const float h2r = -c2 * (data[i2] + data[i4]);
    const float h2i = c2 * (data[i1] - data[i3]);
    data[i1] = rounded(h1r + w.re * h2r - w.im * h2i);
    data[i2] = rounded(h1i + w.re * h2i + w.im * h2r);
    data[i3] = rounded(h1r - w.re * h2r + w.im * h2i);
    data[i4] = rounded(-h1i + w.re * h2i + w.im * h2r);
  }

  const float h = data[1];
  const float scale = forward ? 1.0f : 0.5f;
  data[1] = scale * (h + data[2]);
  data[2] = scale * (h - data[2]);
  if (!forward) four1(data, n / 2, -1);
}

}  // namespace krosac
