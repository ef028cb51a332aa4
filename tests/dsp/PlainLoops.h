// The loops that define the results of the kernels bit for bit, written as plainly as possible.
#ifndef KROSAC_TESTS_DSP_PLAINLOOPS_H
#define KROSAC_TESTS_DSP_PLAINLOOPS_H

#include <algorithm>
#include <cmath>

namespace krosac::plain {

// The twiddle factors exp(i k theta) for k = 0, 1, ... by a recurrence.
struct Twiddle {
  double theta, re = 1.0, im = 0.0;
  void advance() {
    const double half = std::sin(0.5 * theta), wpr = -2.0 * half * half, wpi = std::sin(theta);
    const double previous = re;
    re = re * wpr - im * wpi + re;
    im = im * wpr + previous * wpi + im;
  }
};

inline void four1(float* data, unsigned long nn, int isign) {
  const unsigned long n = 2 * nn;
  for (unsigned long i = 1, j = 1; i < n; i += 2) {
    if (j > i) std::swap_ranges(data + j, data + j + 2, data + i);
    unsigned long m = nn;
    for (; m >= 2 && j > m; m /= 2) j -= m;
    j += m;
  }
  for (unsigned long mmax = 2; mmax < n; mmax *= 2) {
    Twiddle w{isign * (6.28318530717959 / static_cast<double>(mmax))};
    for (unsigned long m = 1; m < mmax; m += 2, w.advance()) {
      for (unsigned long i = m; i <= n; i += 2 * mmax) {
        const unsigned long j = i + mmax;
        const auto tempr = static_cast<float>(w.re * data[j] - w.im * data[j + 1]);
        const auto tempi = static_cast<float>(w.re * data[j + 1] + w.im * data[j]);
        data[j] = data[i] - tempr;
        data[j + 1] = data[i + 1] - tempi;
        data[i] += tempr;
        data[i + 1] += tempi;
      }
    }
  }
}

inline void realft(float* data, unsigned long n, int isign) {
  const float sign = isign == 1 ? 1.0f : -1.0f, c2 = -0.5f * sign, scale = isign == 1 ? 1.0f : 0.5f;
  if (isign == 1) four1(data, n / 2, 1);
  Twiddle w{sign * 3.141592653589793 / static_cast<double>(n / 2)};
  for (unsigned long i = 2; i <= n / 4; ++i) {
    w.advance();
    const unsigned long i1 = 2 * i - 1, i2 = i1 + 1, i3 = n + 3 - i2, i4 = i3 + 1;
    const float h1r = 0.5f * (data[i1] + data[i3]), h1i = 0.5f * (data[i2] - data[i4]);
    const float h2r = -c2 * (data[i2] + data[i4]), h2i = c2 * (data[i1] - data[i3]);
    data[i1] = static_cast<float>(h1r + w.re * h2r - w.im * h2i);
    data[i2] = static_cast<float>(h1i + w.re * h2i + w.im * h2r);
    data[i3] = static_cast<float>(h1r - w.re * h2r + w.im * h2i);
    data[i4] = static_cast<float>(-h1i + w.re * h2i + w.im * h2r);
  }
  const float h = data[1];
  data[1] = scale * (h + data[2]);
  data[2] = scale * (h - data[2]);
  if (isign != 1) four1(data, n / 2, -1);
}

// a[n] does not exist.
inline void convolve(const float* a, const float* b, float* out, long n, long m, float scale) {
  for (long i = 0; i < n; ++i) {
    float sum = 0.0f;
    for (long k = 0; k < m; ++k)
      if (i + 1 - k >= 0 && i + 1 - k < n) sum += a[i + 1 - k] * b[k];
    out[i] = sum * scale;
  }
}

// The outputs at 0, factor, 2*factor, ... < n.
inline void decimate(const float* h, long taps, long factor, const float* x, long n, float* y) {
  for (long i = 0; i < n; i += factor) {
    float sum = 0.0f;
    for (long t = 0; t < taps; ++t) {
      const long j = i - (taps - 1) / 2 + t;
      if (j >= 0 && j < n) sum += h[t] * x[j];
    }
    y[i / factor] = sum;
  }
}

inline void section(const float (&b)[3], const float (&a)[3], float* data, long npts, long step) {
  float x1 = 0.0f, x2 = 0.0f, y1 = 0.0f, y2 = 0.0f;
  for (long n = 0; n < npts; ++n) {
    const float x = data[n * step];
    const float y = b[0] * x + b[1] * x1 + b[2] * x2 - a[1] * y1 - a[2] * y2;
    x2 = x1;
    x1 = x;
    y2 = y1;
    y1 = y;
    data[n * step] = y;
  }
}

}  // namespace krosac::plain

#endif
