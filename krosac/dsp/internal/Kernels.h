// The inner loops of the library, compiled once for each instruction set. All return the same bits
// as the plain loops and differ only in speed.
#ifndef KROSAC_DSP_INTERNAL_KERNELS_H
#define KROSAC_DSP_INTERNAL_KERNELS_H

#include <cstddef>

// four1, realftForward, realftInverse: the transforms of krosac/dsp/Fft.h on x[0], x[1], ..., for
// at least kShortestTransform complex values.
//
// convolve: TDconvolve of krosac/dsp/Convolution.h.
//
// decimate: y[i] = sum over t of h[t]*x[i*factor+t] for i = 0..outputs-1, in single precision and
// in the order of t.
//
// cascade: filters npts >= 1 samples, `step` floats apart, with one section after the other as
// Apply of krosac/dsp/Butterworth.h does, each section starting from zero memories.
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

// The compiler's start-up code queries the processor when the library is loaded; a call only looks
// up the answer.
#ifdef KROSAC_AVX2
KROSAC_DECLARE_KERNELS(avx2)
#define KROSAC_KERNEL(name) (__builtin_cpu_supports("avx2") ? avx2::name : baseline::name)
#else
#define KROSAC_KERNEL(name) (baseline::name)
#endif

#endif
