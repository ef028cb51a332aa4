// The inner loops of the library, compiled once for each instruction set that it may meet. All give
// the bits of the plain loops; they differ in speed alone.
#ifndef KROSAC_DSP_INTERNAL_KERNELS_H
#define KROSAC_DSP_INTERNAL_KERNELS_H

#include <cstddef>

// Transforms of dsp/Fft.h from x[0] on, of kShortestTransform complex values or more.
//
// convolve: TDconvolve of dsp/Convolution.h.
//
// decimate: y[i] = sum over t of h[t]*x[i*factor+t] for i = 0..outputs-1, single precision in the
// order of t.
//
// cascade: the sections of Apply of dsp/Butterworth.h one after the other, each from rest, over
// npts samples that lie step apart, npts at least 1.
#define KROSAC_DECLARE_KERNELS(set)                                                       \
  namespace krosac::set {                                                                 \
  void four1(float* x, std::size_t nn, int isign);                                        \
  void realftForward(float* x, std::size_t n);                                            \
  void realftInverse(float* x, std::size_t n);                                            \
  void convolve(const float* a, const float* b, float* out, std::size_t n, std::size_t m, \
                float scale);                                                             \
  void decimate(const float* h, std::size_t taps, std::size_t factor, const float* x,     \
                std::size_t outputs, float* y);                                           \
  void cascade(const float (*num)[3], const float (*den)[3], int sections, float* data,   \
               std::ptrdiff_t npts, std::ptrdiff_t step);                                 \
  }

KROSAC_DECLARE_KERNELS(baseline)

namespace krosac {
constexpr std::size_t kShortestTransform = 64;
}

// Which set runs is known when the library is loaded: the compiler's own start-up code asks the
// processor.
#ifdef KROSAC_AVX2
KROSAC_DECLARE_KERNELS(avx2)
#define KROSAC_KERNEL(name) (__builtin_cpu_supports("avx2") ? avx2::name : baseline::name)
#else
#define KROSAC_KERNEL(name) (baseline::name)
#endif

#endif
