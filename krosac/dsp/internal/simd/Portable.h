// Pairs of 128-bit vectors in the vector extension of GCC and Clang, for every processor. Only the
// conversions of SSE2, which compilers do not form by themselves, are written out.
#ifndef KROSAC_DSP_INTERNAL_SIMD_PORTABLE_H
#define KROSAC_DSP_INTERNAL_SIMD_PORTABLE_H

#ifdef __SSE2__
#include <emmintrin.h>
#endif

namespace krosac {
namespace {

using Double2 = double __attribute__((vector_size(16)));

struct Float8 {
  Float4 first, second;
};

inline Float8 operator+(Float8 a, Float8 b) {
  return {a.first + b.first, a.second + b.second};
}

inline Float8 operator-(Float8 a, Float8 b) {
  return {a.first - b.first, a.second - b.second};
}

inline Float8 operator*(Float8 a, Float8 b) {
  return {a.first * b.first, a.second * b.second};
}

struct Double4 {
  Double2 first, second;

  using Lane = double __attribute__((may_alias));
  Lane& operator[](int lane) { return reinterpret_cast<Lane*>(this)[lane]; }
  double operator[](int lane) const { return lane < 2 ? first[lane] : second[lane - 2]; }
};

inline Double4 operator+(Double4 a, Double4 b) {
  return {a.first + b.first, a.second + b.second};
}

inline Double4 operator-(Double4 a, Double4 b) {
  return {a.first - b.first, a.second - b.second};
}

inline Double4 operator-(Double4 a) {
  return {-a.first, -a.second};
}

inline Double4 operator*(Double4 a, Double4 b) {
  return {a.first * b.first, a.second * b.second};
}

inline Float8 broadcast8(float value) {
  const Float4 four{value, value, value, value};
  return {four, four};
}

inline Double4 broadcast4(double value) {
  return {Double2{value, value}, Double2{value, value}};
}

inline Float8 load8(const float* from) {
  return {load(from), load(from + 4)};
}

inline void store(float* to, Float8 value) {
  store(to, value.first);
  store(to + 4, value.second);
}

inline Double4 toDouble(Float4 value) {
#ifdef __SSE2__
  return {_mm_cvtps_pd(value), _mm_cvtps_pd(_mm_movehl_ps(value, value))};
#else
  return {Double2{value[0], value[1]}, Double2{value[2], value[3]}};
#endif
}

inline Float4 toFloat(Double4 value) {
#ifdef __SSE2__
  return _mm_movelh_ps(_mm_cvtpd_ps(value.first), _mm_cvtpd_ps(value.second));
#else
  return Float4{static_cast<float>(value.first[0]), static_cast<float>(value.first[1]),
                static_cast<float>(value.second[0]), static_cast<float>(value.second[1])};
#endif
}

inline Float8 combine(Float4 first, Float4 second) {
  return {first, second};
}

inline Float4 half(Float8 value, int second) {
  return second ? value.second : value.first;
}

constexpr int kLaneOrder[8] = {0, 1, 2, 3, 4, 5, 6, 7};

inline Float4 evenLanes(Float4 a, Float4 b) {
  return __builtin_shufflevector(a, b, 0, 2, 4, 6);
}

inline Float4 oddLanes(Float4 a, Float4 b) {
  return __builtin_shufflevector(a, b, 1, 3, 5, 7);
}

inline Float8 loadEven(const float* from) {
  return {evenLanes(load(from), load(from + 4)), evenLanes(load(from + 8), load(from + 12))};
}

inline Float8 loadOdd(const float* from) {
  return {oddLanes(load(from), load(from + 4)), oddLanes(load(from + 8), load(from + 12))};
}

inline void storeInterleaved(float* to, Float8 a, Float8 b) {
  store(to, __builtin_shufflevector(a.first, b.first, 0, 4, 1, 5));
  store(to + 4, __builtin_shufflevector(a.first, b.first, 2, 6, 3, 7));
  store(to + 8, __builtin_shufflevector(a.second, b.second, 0, 4, 1, 5));
  store(to + 12, __builtin_shufflevector(a.second, b.second, 2, 6, 3, 7));
}

inline void transpose(Float4& a, Float4& b, Float4& c, Float4& d) {
  const Float4 ab = __builtin_shufflevector(a, b, 0, 4, 1, 5);
  const Float4 AB = __builtin_shufflevector(a, b, 2, 6, 3, 7);
  const Float4 cd = __builtin_shufflevector(c, d, 0, 4, 1, 5);
  const Float4 CD = __builtin_shufflevector(c, d, 2, 6, 3, 7);
  a = __builtin_shufflevector(ab, cd, 0, 1, 4, 5);
  b = __builtin_shufflevector(ab, cd, 2, 3, 6, 7);
  c = __builtin_shufflevector(AB, CD, 0, 1, 4, 5);
  d = __builtin_shufflevector(AB, CD, 2, 3, 6, 7);
}

inline void transposeHalves(Float8& a, Float8& b, Float8& c, Float8& d) {
  transpose(a.first, b.first, c.first, d.first);
  transpose(a.second, b.second, c.second, d.second);
}

inline Double4 lowHalves(Double4 a, Double4 b) {
  return {a.first, b.first};
}

inline Double4 highHalves(Double4 a, Double4 b) {
  return {a.second, b.second};
}

inline Double4 evenLanes(Double4 a, Double4 b) {
  return {__builtin_shufflevector(a.first, b.first, 0, 2),
          __builtin_shufflevector(a.second, b.second, 0, 2)};
}

inline Double4 oddLanes(Double4 a, Double4 b) {
  return {__builtin_shufflevector(a.first, b.first, 1, 3),
          __builtin_shufflevector(a.second, b.second, 1, 3)};
}

}  // namespace
}  // namespace krosac

#endif
