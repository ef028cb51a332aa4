// The transforms of dsp/Fft.cc for 64 complex values and more, with the same roundings in another
// order. Up to three passes are joined, so that eight values stay in the first cache between them,
// and eight butterflies of neighbouring rotations go side by side.
#include <cmath>
#include <cstddef>

#include "krosac/dsp/internal/Kernels.h"
#include "krosac/dsp/internal/Rotations.h"
#include "krosac/dsp/internal/Vectors.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr std::size_t kSegment = 1 << 14;  // complex values that stay in the second cache
constexpr int kReversed3[8] = {0, 4, 2, 6, 1, 5, 3, 7};

// Eight complex values. Between the passes they lie as eight real and eight imaginary parts.
struct Complex8 {
  Float8 re, im;
};

inline Complex8 loadParts(const float* from) {
  return {load8(from), load8(from + 8)};
}

inline void storeParts(float* to, Complex8 value) {
  store(to, value.re);
  store(to + 8, value.im);
}

struct Rotation8 {
  Double8 re, im;
};

inline Complex8 rotated(const Double8& re, const Double8& im, const Rotation8& w) {
  return {rounded(w.re * re - w.im * im), rounded(w.re * im + w.im * re)};
}

// b with the rotation 1. Its products are exact in single precision; those with zero give the signs
// of zeros and spread NaN.
inline Complex8 unitRotated(Complex8 b) {
  const Float8 zero = eightTimes(0.0f);
  return {b.re - zero * b.im, b.im + zero * b.re};
}

// The butterfly of a and b, given b's product with the rotation.
inline void butterfly(Complex8& a, Complex8& b, Complex8 product) {
  b = {a.re - product.re, a.im - product.im};
  a = {a.re + product.re, a.im + product.im};
}

template <bool kLast>
inline void butterfly(float* a, float* b, Complex8 product) {
  Complex8 up = loadParts(a), down;
  butterfly(up, down, product);
  if (kLast) {
    storeMixed(a, up.re, up.im);
    storeMixed(b, down.re, down.im);
  } else {
    storeParts(a, up);
    storeParts(b, down);
  }
}

template <bool kLast>
inline void butterfly(float* a, float* b, const Rotation8& w) {
  butterfly<kLast>(a, b, rotated(loadWidened(b), loadWidened(b + 8), w));
}

// The pass that joins 2^kPass rows of a block, over so many columns.
template <int kRows, int kPass, bool kLast>
inline void pass(float* x, std::size_t row, const Quads* w, std::size_t columns) {
  constexpr std::size_t kDistance = 1 << kPass;
#pragma GCC unroll 8
  for (std::size_t r = 0; r < kRows; ++r) {
    if (r & kDistance) continue;
    const Quads* quads = w + (r & (kDistance - 1)) * columns / 4;
    float *a = x + r * row, *b = a + kDistance * row;
    for (std::size_t i = 0; i < columns / 4; i += 2) {
      const Quads &w0 = quads[i], &w1 = quads[i + 1];
      butterfly<kLast>(a + 8 * i, b + 8 * i,
                       {{w0.re[kPass], w1.re[kPass]}, {w0.im[kPass], w1.im[kPass]}});
    }
  }
}

// The passes of a block's columns from kPass on. The first runs of groups go on meanwhile.
template <int kPasses, int kPass, bool kLast>
inline void passes(Groups& groups, Group& group, float* x, const Quads* w) {
  constexpr bool kLastPass = kPass + 1 == kPasses;
  group.finish(kPass);
  pass<1 << kPasses, kPass, kLast && kLastPass>(x, 2 * group.half, w, group.columns());
  groups.run();
  if constexpr (!kLastPass) passes<kPasses, kPass + 1, kLast>(groups, group, x, w);
}

// A group's passes: all blocks share the rotations of a chunk.
template <int kPasses, bool kLast>
void sweep(Groups& groups, Group& group, float* x, std::size_t length) {
  const bool made = group.kept == nullptr;
  RowRotations rotations;
  Quads chunk[kChunk];
  group.finish(0);
  if (made) rotations.start(group);
  for (std::size_t k = 0; k < group.half; k += group.columns()) {
    if (made) rotations.fill(chunk);
    for (std::size_t block = 0; block < length; block += group.length())
      passes<kPasses, 0, kLast>(groups, group, x + 2 * (block + k), made ? chunk : group.kept);
  }
}

void sweep(Groups& groups, int i, float* x, std::size_t length) {
  Group& group = groups[i];
  if (i + 1 == groups.count()) return sweep<3, true>(groups, group, x, length);
  if (group.passes == 1) return sweep<1, false>(groups, group, x, length);
  if (group.passes == 2) return sweep<2, false>(groups, group, x, length);
  sweep<3, false>(groups, group, x, length);
}

// The rotations of the second and third pass that are not 1.
struct FirstRotations {
  Rotation8 second, third[3];
};

FirstRotations firstRotations(const Sines& sines) {
  const auto eightTimes = [](const Rotation& w) {
    const Double4 re = fourTimes(w.re), im = fourTimes(w.im);
    return Rotation8{{re, re}, {im, im}};
  };
  FirstRotations first;
  Rotation w{1.0, 0.0};
  w.advance(sines.step(2));
  first.second = eightTimes(w);
  w = {1.0, 0.0};
  for (Rotation8& third : first.third) {
    w.advance(sines.step(3));
    third = eightTimes(w);
  }
  return first;
}

// Eight rows of eight complex values, whose columns lie in the order kOrder.
using Square = float[8 * 16];

// The first three passes of eight columns, whose rows are taken in the order of reversed bits. The
// groups' recurrences run meanwhile, since they wait for their own results most of the time.
inline void firstPasses(const float* from, std::size_t row, Square& square, const FirstRotations& w,
                        Groups& groups) {
#pragma GCC unroll 2
  for (int first = 0; first < 8; first += 4) {
    groups.run();
    Complex8 x[4];
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
      const float* values = from + static_cast<std::size_t>(kReversed3[first + r]) * row;
      x[r] = {evens(values), odds(values)};
    }
    butterfly(x[0], x[1], unitRotated(x[1]));
    butterfly(x[2], x[3], unitRotated(x[3]));
    butterfly(x[0], x[2], unitRotated(x[2]));
    butterfly(x[1], x[3], rotated(widened(x[3].re), widened(x[3].im), w.second));
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) storeParts(square + 16 * (first + r), x[r]);
  }
  groups.run();
  float* half = square + 16 * 4;
  butterfly<false>(square, half, unitRotated(loadParts(half)));
  for (int r = 1; r < 4; ++r) butterfly<false>(square + 16 * r, half + 16 * r, w.third[r - 1]);
  groups.run();
}

// Columns become rows, in the order of reversed bits.
inline void turn(const Square& square, float* to, std::size_t row) {
  for (int first = 0; first < 8; first += 4) {
    for (int part = 0; part < 16; part += 8) {
      const float* from = square + 16 * first + part;
      Float8 x[4] = {load8(from), load8(from + 16), load8(from + 32), load8(from + 48)};
      transposeHalves(x[0], x[1], x[2], x[3]);
#pragma GCC unroll 8
      for (int i = 0; i < 8; ++i)
        store(to + static_cast<std::size_t>(kReversed3[kOrder[i]]) * row + part + first,
              half(x[i % 4], i / 4));
    }
  }
}

// Bit reversal and the first three passes, by squares of eight rows and eight columns: one square
// changes places with the one whose place has the reversed bits.
void reverseAndBegin(float* x, std::size_t nn, const Sines& sines, Groups& groups) {
  const FirstRotations w = firstRotations(sines);
  const std::size_t row = nn / 4, squares = nn / 64;
  Square a, b;
  for (std::size_t i = 0, reversed = 0; i < squares; ++i) {
    if (i <= reversed) {
      float *here = x + 16 * i, *there = x + 16 * reversed;
      firstPasses(here, row, a, w, groups);
      if (i != reversed) {
        firstPasses(there, row, b, w, groups);
        turn(b, here, row);
      }
      turn(a, there, row);
    }
    std::size_t bit = squares / 2;
    for (; (reversed & bit) != 0; bit /= 2) reversed ^= bit;
    reversed |= bit;
  }
}

void transform(float* x, std::size_t nn, const Sines& sines, Groups& groups) {
  reverseAndBegin(x, nn, sines, groups);
  int next = 0;
  const std::size_t segment = least(nn, kSegment);
  for (std::size_t begin = 0; begin < nn; begin += segment) {
    for (next = 0; next < groups.count() && groups[next].length() <= segment; ++next)
      sweep(groups, next, x + 2 * begin, segment);
  }
  for (; next < groups.count(); ++next) sweep(groups, next, x, nn);
}

// The step of the rotations that take the transform of a real sequence apart.
Rotation realStep(std::size_t n, bool forward) {
  const double angle = 3.141592653589793 / static_cast<double>(n / 2);
  const double theta = forward ? angle : -angle, s = std::sin(0.5 * theta);
  return {-2.0 * s * s, std::sin(theta)};
}

// Bins k..k+3 and their mirror images.
template <bool kForward>
inline void separate(float* up, float* down, Double4 re, Double4 im) {
  const float c1 = 0.5f, c2 = kForward ? -0.5f : 0.5f;
  const Float4 a = load(up), b = load(up + 4), c = load(down), d = load(down + 4);
  const Float4 r1 = __builtin_shufflevector(a, b, 0, 2, 4, 6);
  const Float4 i1 = __builtin_shufflevector(a, b, 1, 3, 5, 7);
  const Float4 r3 = __builtin_shufflevector(d, c, 2, 0, 6, 4);
  const Float4 i3 = __builtin_shufflevector(d, c, 3, 1, 7, 5);
  const Double4 h1r = widened(c1 * (r1 + r3)), h1i = widened(c1 * (i1 - i3));
  const Double4 h2r = widened(-c2 * (i1 + i3)), h2i = widened(c2 * (r1 - r3));
  const Float4 upRe = rounded(h1r + re * h2r - im * h2i);
  const Float4 upIm = rounded(h1i + re * h2i + im * h2r);
  const Float4 downRe = rounded(h1r - re * h2r + im * h2i);
  const Float4 downIm = rounded(-h1i + re * h2i + im * h2r);
  store(up, __builtin_shufflevector(upRe, upIm, 0, 4, 1, 5));
  store(up + 4, __builtin_shufflevector(upRe, upIm, 2, 6, 3, 7));
  store(down, __builtin_shufflevector(downRe, downIm, 3, 7, 2, 6));
  store(down + 4, __builtin_shufflevector(downRe, downIm, 1, 5, 0, 4));
}

// Bin 0 has no mirror image: it stays as it is.
template <bool kForward>
void separateFirst(float* x, std::size_t n, Double4 re, Double4 im) {
  const float first[2] = {x[0], x[1]};
  float down[8];
  store(down, load(x + n - 6));
  store(down + 4, Float4{x[n - 2], x[n - 1], 0.0f, 0.0f});
  separate<kForward>(x, down, re, im);
  x[0] = first[0];
  x[1] = first[1];
  for (std::size_t j = 0; j < 6; ++j) x[n - 6 + j] = down[j];
}

// The four quarters of the bins below n/4 side by side, each with the recurrence from its own
// start.
template <bool kForward>
void separate(float* x, std::size_t n, Groups& groups) {
  const std::size_t quarter = groups.last().half;
  const auto bins = [&](std::size_t bin, Double4 re, Double4 im) {
    if (bin == 0) return separateFirst<kForward>(x, n, re, im);
    separate<kForward>(x + 2 * bin, x + n - 2 * bin - 6, re, im);
  };
  if (const Quads* kept = groups.last().kept) {
    for (std::size_t bin = 0; bin < 4 * quarter; bin += 4)
      bins(bin, kept[bin / 4].re[3], kept[bin / 4].im[3]);
    return;
  }
  Rotations w{}, step{};
  for (int q = 0; q < 4; ++q) {
    w.setLane(q, groups.last().at[q].lane(3));
    step.setLane(q, groups.last().step.lane(3));
  }
  for (std::size_t k = 0; k < quarter; k += 4) {
    Quads quads;
    quads.take(w, step);
    for (std::size_t q = 0; q < 4; ++q) bins(q * quarter + k, quads.re[q], quads.im[q]);
  }
}

}  // namespace

void four1(float* x, std::size_t nn, int isign) {
  const Sines sines(nn, isign);
  Groups groups(nn, sines);
  transform(x, nn, sines, groups);
}

void realftForward(float* x, std::size_t n) {
  const Sines sines(n / 2, 1);
  Groups groups(n / 2, sines);
  groups.last().step.setLane(3, realStep(n, true));
  transform(x, n / 2, sines, groups);
  separate<true>(x, n, groups);
  const float h = x[0];
  x[0] = h + x[1];
  x[1] = h - x[1];
}

void realftInverse(float* x, std::size_t n) {
  const Sines sines(n / 2, -1);
  Groups groups(n / 2, sines);
  groups.last().step.setLane(3, realStep(n, false));
  groups.last().finish(2);
  separate<false>(x, n, groups);
  const float h = x[0];
  x[0] = 0.5f * (h + x[1]);
  x[1] = 0.5f * (h - x[1]);
  transform(x, n / 2, sines, groups);
}

}  // namespace krosac::KROSAC_KERNELS
