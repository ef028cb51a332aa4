// Vectors of four and eight, as the kernels use them. Operations on each lane are those of single
// numbers, so every kind of processor gives the same bits. A kernel is compiled once for each
// instruction set, so everything here is its own in each.
#ifndef KROSAC_DSP_INTERNAL_VECTORS_H
#define KROSAC_DSP_INTERNAL_VECTORS_H

#ifdef __SSE2__
#include <immintrin.h>
#endif

namespace krosac {
namespace {

using Float4 = float __attribute__((vector_size(16)));

// Copies, since Clang takes the alignment of a vector type for granted, whatever its attributes
// say.
inline Float4 load(const float* from) {
  Float4 value;
  __builtin_memcpy(&value, from, sizeof value);
  return value;
}

inline void store(float* to, Float4 value) {
  __builtin_memcpy(to, &value, sizeof value);
}

#ifdef __AVX__

using Double4 = double __attribute__((vector_size(32)));

using Float8 = float __attribute__((vector_size(32)));

inline Float8 eightTimes(float value) {
  return _mm256_set1_ps(value);
}

inline Float8 load8(const float* from) {
  return _mm256_loadu_ps(from);
}

inline void store(float* to, Float8 value) {
  _mm256_storeu_ps(to, value);
}

inline Double4 widened(Float4 value) {
  return _mm256_cvtps_pd(value);
}

inline Float4 rounded(Double4 value) {
  return _mm256_cvtpd_ps(value);
}

inline Float8 joined(Float4 first, Float4 second) {
  return _mm256_insertf128_ps(_mm256_castps128_ps256(first), second, 1);
}

inline Float4 half(Float8 value, int second) {
  return second ? _mm256_extractf128_ps(value, 1) : _mm256_castps256_ps128(value);
}

// Every second of sixteen values, from the first or from the second on, in the order kOrder.
constexpr int kOrder[8] = {0, 1, 4, 5, 2, 3, 6, 7};

inline Float8 evens(const float* from) {
  return _mm256_shuffle_ps(load8(from), load8(from + 8), 0x88);
}

inline Float8 odds(const float* from) {
  return _mm256_shuffle_ps(load8(from), load8(from + 8), 0xdd);
}

// Stores a[0], b[0], a[1], b[1] and so on.
inline void storeMixed(float* to, Float8 a, Float8 b) {
  const Float8 first = _mm256_unpacklo_ps(a, b), second = _mm256_unpackhi_ps(a, b);
  store(to, half(first, 0));
  store(to + 4, half(second, 0));
  store(to + 8, half(first, 1));
  store(to + 12, half(second, 1));
}

// Each half by itself, as four rows of four.
inline void transposeHalves(Float8& a, Float8& b, Float8& c, Float8& d) {
  const Float8 ab = _mm256_unpacklo_ps(a, b), AB = _mm256_unpackhi_ps(a, b);
  const Float8 cd = _mm256_unpacklo_ps(c, d), CD = _mm256_unpackhi_ps(c, d);
  a = _mm256_shuffle_ps(ab, cd, 0x44);
  b = _mm256_shuffle_ps(ab, cd, 0xee);
  c = _mm256_shuffle_ps(AB, CD, 0x44);
  d = _mm256_shuffle_ps(AB, CD, 0xee);
}

inline Double4 firstHalves(Double4 a, Double4 b) {
  return _mm256_permute2f128_pd(a, b, 0x20);
}

inline Double4 secondHalves(Double4 a, Double4 b) {
  return _mm256_permute2f128_pd(a, b, 0x31);
}

inline Double4 evens(Double4 a, Double4 b) {
  return __builtin_shufflevector(a, b, 0, 4, 2, 6);
}

inline Double4 odds(Double4 a, Double4 b) {
  return __builtin_shufflevector(a, b, 1, 5, 3, 7);
}

#else

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

inline Float8 eightTimes(float value) {
  const Float4 four{value, value, value, value};
  return {four, four};
}

inline Float8 load8(const float* from) {
  return {load(from), load(from + 4)};
}

inline void store(float* to, Float8 value) {
  store(to, value.first);
  store(to + 4, value.second);
}

inline void storeMixed(float* to, Float8 a, Float8 b) {
  store(to, __builtin_shufflevector(a.first, b.first, 0, 4, 1, 5));
  store(to + 4, __builtin_shufflevector(a.first, b.first, 2, 6, 3, 7));
  store(to + 8, __builtin_shufflevector(a.second, b.second, 0, 4, 1, 5));
  store(to + 12, __builtin_shufflevector(a.second, b.second, 2, 6, 3, 7));
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

inline Double4 widened(Float4 value) {
#ifdef __SSE2__
  return {_mm_cvtps_pd(value), _mm_cvtps_pd(_mm_movehl_ps(value, value))};
#else
  return {Double2{value[0], value[1]}, Double2{value[2], value[3]}};
#endif
}

inline Float4 rounded(Double4 value) {
#ifdef __SSE2__
  return _mm_movelh_ps(_mm_cvtpd_ps(value.first), _mm_cvtpd_ps(value.second));
#else
  return Float4{static_cast<float>(value.first[0]), static_cast<float>(value.first[1]),
                static_cast<float>(value.second[0]), static_cast<float>(value.second[1])};
#endif
}

inline Float8 joined(Float4 first, Float4 second) {
  return {first, second};
}

inline Float4 half(Float8 value, int second) {
  return second ? value.second : value.first;
}

inline Float4 evens(Float4 a, Float4 b) {
  return __builtin_shufflevector(a, b, 0, 2, 4, 6);
}

inline Float4 odds(Float4 a, Float4 b) {
  return __builtin_shufflevector(a, b, 1, 3, 5, 7);
}

constexpr int kOrder[8] = {0, 1, 2, 3, 4, 5, 6, 7};

inline Float8 evens(const float* from) {
  return {evens(load(from), load(from + 4)), evens(load(from + 8), load(from + 12))};
}

inline Float8 odds(const float* from) {
  return {odds(load(from), load(from + 4)), odds(load(from + 8), load(from + 12))};
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

inline Double4 firstHalves(Double4 a, Double4 b) {
  return {a.first, b.first};
}

inline Double4 secondHalves(Double4 a, Double4 b) {
  return {a.second, b.second};
}

inline Double4 evens(Double4 a, Double4 b) {
  return {__builtin_shufflevector(a.first, b.first, 0, 2),
          __builtin_shufflevector(a.second, b.second, 0, 2)};
}

inline Double4 odds(Double4 a, Double4 b) {
  return {__builtin_shufflevector(a.first, b.first, 1, 3),
          __builtin_shufflevector(a.second, b.second, 1, 3)};
}

#endif

// The columns of the rows a, b, c and d, or only the last two of them.
inline void storeColumns(Double4& first, Double4& second, Double4& third, Double4& fourth,
                         Double4 a, Double4 b, Double4 c, Double4 d, bool lastOnly) {
  if (!lastOnly) {
    const Double4 ac = firstHalves(a, c), bd = firstHalves(b, d);
    first = evens(ac, bd);
    second = odds(ac, bd);
  }
  const Double4 ac = secondHalves(a, c), bd = secondHalves(b, d);
  third = evens(ac, bd);
  fourth = odds(ac, bd);
}

inline Double4 fourTimes(double value) {
#ifdef __AVX__
  return Double4{value, value, value, value};
#else
  return {Double2{value, value}, Double2{value, value}};
#endif
}

struct Double8 {
  Double4 first, second;
};

inline Double8 operator+(const Double8& a, const Double8& b) {
  return {a.first + b.first, a.second + b.second};
}

inline Double8 operator-(const Double8& a, const Double8& b) {
  return {a.first - b.first, a.second - b.second};
}

inline Double8 operator*(const Double8& a, const Double8& b) {
  return {a.first * b.first, a.second * b.second};
}

inline Double8 widened(Float8 value) {
  return {widened(half(value, 0)), widened(half(value, 1))};
}

// From memory, where no halves need to be taken out of a vector.
inline Double8 loadWidened(const float* from) {
  return {widened(load(from)), widened(load(from + 4))};
}

inline Float8 rounded(const Double8& value) {
  return joined(rounded(value.first), rounded(value.second));
}

}  // namespace
}  // namespace krosac

#endif
