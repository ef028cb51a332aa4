// The short vectors of the kernels, on top of those of one instruction set. Every operation works
// lane by lane with the rounding of scalar arithmetic, so all processors return the same bits. The
// kernels are compiled once for each instruction set, and everything here has internal linkage: no
// two of those compilations share a function.
#ifndef KROSAC_DSP_INTERNAL_SIMD_VECTORS_H
#define KROSAC_DSP_INTERNAL_SIMD_VECTORS_H

#include <cstddef>

namespace krosac {
namespace {

using Float4 = float __attribute__((vector_size(16)));

// Loads and stores go through memcpy, because Clang assumes that a vector type is aligned, whatever
// its attributes say.
inline Float4 load(const float* from) {
  Float4 value;
  __builtin_memcpy(&value, from, sizeof value);
  return value;
}

inline void store(float* to, Float4 value) {
  __builtin_memcpy(to, &value, sizeof value);
}

// Not std::min, whose one copy in the library could come from a compilation for AVX2.
inline std::size_t minimum(std::size_t a, std::size_t b) {
  return a < b ? a : b;
}

}  // namespace
}  // namespace krosac

// Both headers define Float8 and Double4 with the same functions:
// - broadcast8 and broadcast4: one value in every lane;
// - load8 and store, without alignment;
// - loadEven and loadOdd: every second of 16 values, number kLaneOrder[i] of them in lane i;
// - storeInterleaved: the inverse, which stores a[0], b[0], a[1], b[1], ...;
// - toDouble and toFloat: conversions of four lanes;
// - combine and half: a Float8 from two Float4, and one of the two;
// - transposeHalves: a 4x4 transpose of the low halves, and one of the high halves;
// - lowHalves, highHalves, evenLanes and oddLanes: shuffles of two Double4.
#ifdef __AVX__
#include "krosac/dsp/internal/simd/Avx2.h"
#else
#include "krosac/dsp/internal/simd/Portable.h"
#endif

namespace krosac {
namespace {

// Stores the columns of the 4x4 matrix with the rows a, b, c and d, or only the last two of them.
inline void storeTransposed(Double4& first, Double4& second, Double4& third, Double4& fourth,
                            Double4 a, Double4 b, Double4 c, Double4 d, bool lastTwoOnly) {
  if (!lastTwoOnly) {
    const Double4 ac = lowHalves(a, c), bd = lowHalves(b, d);
    first = evenLanes(ac, bd);
    second = oddLanes(ac, bd);
  }
  const Double4 ac = highHalves(a, c), bd = highHalves(b, d);
  third = evenLanes(ac, bd);
  fourth = oddLanes(ac, bd);
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

inline Double8 toDouble(Float8 value) {
  return {toDouble(half(value, 0)), toDouble(half(value, 1))};
}

// Loading four lanes at a time avoids extracting the halves of a Float8.
inline Double8 load8AsDouble(const float* from) {
  return {toDouble(load(from)), toDouble(load(from + 4))};
}

inline Float8 toFloat(const Double8& value) {
  return combine(toFloat(value.first), toFloat(value.second));
}

}  // namespace
}  // namespace krosac

#endif
