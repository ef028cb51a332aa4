// Vectors of 256 bits with AVX2.
#ifndef KROSAC_DSP_INTERNAL_SIMD_AVX2_H
#define KROSAC_DSP_INTERNAL_SIMD_AVX2_H

#include <immintrin.h>

namespace krosac {
namespace {

using Float8 = float __attribute__((vector_size(32)));
using Double4 = double __attribute__((vector_size(32)));

inline Float8 broadcast8(float value) {
  return _mm256_set1_ps(value);
}

inline Double4 broadcast4(double value) {
  return Double4{value, value, value, value};
}

inline Float8 load8(const float* from) {
  return _mm256_loadu_ps(from);
}

inline void store(float* to, Float8 value) {
  _mm256_storeu_ps(to, value);
}

inline Double4 toDouble(Float4 value) {
  return _mm256_cvtps_pd(value);
}

inline Float4 toFloat(Double4 value) {
  return _mm256_cvtpd_ps(value);
}

inline Float8 combine(Float4 first, Float4 second) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(first), second, 1);
}

inline Float4 half(Float8 value, int second) {
  return second ? _mm256_extractf128_ps(value, 1) : _mm256_castps256_ps128(value);
}

// Shuffles stay within the two 128-bit halves of a register.
constexpr int kLaneOrder[8] = {0, 1, 4, 5, 2, 3, 6, 7};

inline Float8 loadEven(const float* from) {
  return _mm256_shuffle_ps(load8(from), load8(from + 8), 0x88);
}

inline Float8 loadOdd(const float* from) {
  return _mm256_shuffle_ps(load8(from), load8(from + 8), 0xdd);
}

inline void storeInterleaved(float* to, Float8 a, Float8 b) {
  const Float8 first = _mm256_unpacklo_ps(a, b), second = _mm256_unpackhi_ps(a, b);
  store(to, half(first, 0));
  store(to + 4, half(second, 0));
  store(to + 8, half(first, 1));
  store(to + 12, half(second, 1));
}

inline void transposeHalves(Float8& a, Float8& b, Float8& c, Float8& d) {
  const Float8 ab = _mm256_unpacklo_ps(a, b), AB = _mm256_unpackhi_ps(a, b);
  const Float8 cd = _mm256_unpacklo_ps(c, d), CD = _mm256_unpackhi_ps(c, d);
  a = _mm256_shuffle_ps(ab, cd, 0x44);
  b = _mm256_shuffle_ps(ab, cd, 0xee);
  c = _mm256_shuffle_ps(AB, CD, 0x44);
  d = _mm256_shuffle_ps(AB, CD, 0xee);
}

inline Double4 lowHalves(Double4 a, Double4 b) {
  return _mm256_permute2f128_pd(a, b, 0x20);
}

inline Double4 highHalves(Double4 a, Double4 b) {
  return _mm256_permute2f128_pd(a, b, 0x31);
}

inline Double4 evenLanes(Double4 a, Double4 b) {
  return __builtin_shufflevector(a, b, 0, 4, 2, 6);
}

inline Double4 oddLanes(Double4 a, Double4 b) {
  return __builtin_shufflevector(a, b, 1, 5, 3, 7);
}

}  // namespace
}  // namespace krosac

#endif
