// The transforms of dsp/Fft.cc for 64 complex values and more, with the same roundings in another
// order. Up to three passes are joined, so that eight values stay in the first cache between them,
// and eight butterflies of neighbouring rotations go side by side.
#include <cmath>
#include <cstddef>

#include "krosac/dsp/KernelsInternal.h"
#include "krosac/dsp/RotationsInternal.h"
#include "krosac/dsp/VectorsInternal.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr std::size_t kSegment = 1 << 14;  // complex values that stay in the second cache
constexpr int kReversed3[8] = {0, 4, 2, 6, 1, 5, 3, 7};

inline void butterfly(Float4& ar, Float4& ai, Float4& br, Float4& bi, Double4 re, Double4 im) {
  const Double4 dr = widened(br), di = widened(bi);
  const Float4 tempr = rounded(re * dr - im * di);
  const Float4 tempi = rounded(re * di + im * dr);
  br = ar - tempr;
  bi = ai - tempi;
  ar += tempr;
  ai += tempi;
}

// The butterfly with the rotation 1, whose products are exact in single precision. The products
// with zero give the signs of zeros and spread NaN.
inline void unitButterfly(Float4& ar, Float4& ai, Float4& br, Float4& bi) {
  const Float4 tempr = br - 0.0f * bi;
  const Float4 tempi = bi + 0.0f * br;
  br = ar - tempr;
  bi = ai - tempi;
  ar += tempr;
  ai += tempi;
}

// Between the passes eight complex values lie as eight real and eight imaginary parts.
template <bool kLast>
inline void butterfly(float* a, float* b, const Quads* w, int lane) {
  const Double4 br0 = widened(load(b)), br1 = widened(load(b + 4));
  const Double4 bi0 = widened(load(b + 8)), bi1 = widened(load(b + 12));
  const Double4 re0 = w[0].re[lane], im0 = w[0].im[lane], re1 = w[1].re[lane], im1 = w[1].im[lane];
  const Float8 tempr = rounded(re0 * br0 - im0 * bi0, re1 * br1 - im1 * bi1);
  const Float8 tempi = rounded(re0 * bi0 + im0 * br0, re1 * bi1 + im1 * br1);
  const Float8 ar = load8(a), ai = load8(a + 8);
  if (kLast) {
    storeMixed(a, ar + tempr, ai + tempi);
    storeMixed(b, ar - tempr, ai - tempi);
  } else {
    store(a, ar + tempr);
    store(a + 8, ai + tempi);
    store(b, ar - tempr);
    store(b + 8, ai - tempi);
  }
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
    for (std::size_t i = 0; i < columns / 4; i += 2)
      butterfly<kLast>(a + 8 * i, b + 8 * i, quads + i, kPass);
  }
}

// A group's passes: all blocks share the rotations of a chunk. The first runs of later groups go on
// meanwhile.
template <int kPasses, bool kLast>
void sweep(Groups& groups, Group& group, float* x, std::size_t length) {
  constexpr int kRows = 1 << kPasses;
  const std::size_t row = 2 * group.half, columns = group.columns();
  const auto meanwhile = [&groups] {
    if (!kLast) groups.run();
  };
  group.finish();
  RowRotations rotations;
  Chunk made;
  if (group.kept == nullptr) rotations.start(group);
  const Quads* w = group.kept != nullptr ? group.kept : made;
  for (std::size_t k = 0; k < group.half; k += columns) {
    if (group.kept == nullptr) rotations.fill(made);
    for (std::size_t block = 0; block < length; block += group.length()) {
      float* first = x + 2 * (block + k);
      pass<kRows, 0, false>(first, row, w, columns);
      meanwhile();
      if constexpr (kPasses > 1) {
        pass<kRows, 1, false>(first, row, w, columns);
        meanwhile();
      }
      if constexpr (kPasses > 2) {
        pass<kRows, 2, kLast>(first, row, w, columns);
        meanwhile();
      }
    }
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
  Rotations second, third[3];
};

FirstRotations firstRotations(const Sines& sines) {
  Rotations step{}, w{fourTimes(1.0), fourTimes(0.0)};
  sines.setStep(2, step, 0);
  for (int lane = 1; lane < 4; ++lane) sines.setStep(3, step, lane);
  FirstRotations first{};
  for (int k = 0; k < 3; ++k) {
    w.advance(step);
    if (k == 0) first.second = {fourTimes(w.re[0]), fourTimes(w.im[0])};
    first.third[k] = {fourTimes(w.re[1]), fourTimes(w.im[1])};
  }
  return first;
}

// The first three passes of eight columns of eight values each, whose rows are taken in the order
// of reversed bits; the columns become rows, in that order too.
inline void firstPasses(const float* from, std::size_t fromRow, float* to, std::size_t toRow,
                        const FirstRotations& w, Groups& groups) {
  for (int half = 0; half < 2; ++half) {
    groups.run();
    Float4 re[8], im[8];
#pragma GCC unroll 8
    for (int r = 0; r < 8; ++r) {
      const float* row = from + static_cast<std::size_t>(kReversed3[r]) * fromRow + 8 * half;
      const Float4 a = load(row), b = load(row + 4);
      re[r] = __builtin_shufflevector(a, b, 0, 2, 4, 6);
      im[r] = __builtin_shufflevector(a, b, 1, 3, 5, 7);
    }
#pragma GCC unroll 4
    for (int r = 0; r < 8; r += 2) unitButterfly(re[r], im[r], re[r + 1], im[r + 1]);
#pragma GCC unroll 2
    for (int r = 0; r < 8; r += 4) {
      unitButterfly(re[r], im[r], re[r + 2], im[r + 2]);
      butterfly(re[r + 1], im[r + 1], re[r + 3], im[r + 3], w.second.re, w.second.im);
    }
    groups.run();
    unitButterfly(re[0], im[0], re[4], im[4]);
#pragma GCC unroll 3
    for (int r = 1; r < 4; ++r)
      butterfly(re[r], im[r], re[r + 4], im[r + 4], w.third[r - 1].re, w.third[r - 1].im);
#pragma GCC unroll 2
    for (int r = 0; r < 8; r += 4) {
      transpose(re[r], re[r + 1], re[r + 2], re[r + 3]);
      transpose(im[r], im[r + 1], im[r + 2], im[r + 3]);
#pragma GCC unroll 4
      for (int lane = 0; lane < 4; ++lane) {
        float* row = to + static_cast<std::size_t>(kReversed3[4 * half + lane]) * toRow + r;
        store(row, re[r + lane]);
        store(row + 8, im[r + lane]);
      }
    }
  }
}

// Bit reversal and the first three passes, by squares of eight rows and eight columns: one square
// changes places with the one whose place has the reversed bits. The group's recurrences run
// meanwhile, since they wait for their own results most of the time.
void reverseAndBegin(float* x, std::size_t nn, const Sines& sines, Groups& groups) {
  const FirstRotations w = firstRotations(sines);
  const std::size_t row = nn / 4, squares = nn / 64;
  float square[128];
  for (std::size_t i = 0, reversed = 0; i < squares; ++i) {
    if (i <= reversed) {
      float *here = x + 16 * i, *there = x + 16 * reversed;
      firstPasses(here, row, square, 16, w, groups);
      if (i != reversed) firstPasses(there, row, here, row, w, groups);
      for (std::size_t r = 0; r < 8; ++r)
        for (std::size_t c = 0; c < 16; c += 4)
          store(there + r * row + c, load(square + 16 * r + c));
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
void setRealStep(std::size_t n, bool forward, Rotations& step) {
  const double angle = 3.141592653589793 / static_cast<double>(n / 2);
  const double theta = forward ? angle : -angle, s = std::sin(0.5 * theta);
  step.re[3] = -2.0 * s * s;
  step.im[3] = std::sin(theta);
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
    w.setLane(q, groups.last().at[q], 3);
    step.setLane(q, groups.last().step, 3);
  }
  for (std::size_t k = 0; k < quarter; k += 4) {
    Quads quads;
    quads.take(w, step);
    quads.turn();
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
  setRealStep(n, true, groups.last().step);
  transform(x, n / 2, sines, groups);
  separate<true>(x, n, groups);
  const float h = x[0];
  x[0] = h + x[1];
  x[1] = h - x[1];
}

void realftInverse(float* x, std::size_t n) {
  const Sines sines(n / 2, -1);
  Groups groups(n / 2, sines);
  setRealStep(n, false, groups.last().step);
  groups.last().finish();
  separate<false>(x, n, groups);
  const float h = x[0];
  x[0] = 0.5f * (h + x[1]);
  x[1] = 0.5f * (h - x[1]);
  transform(x, n / 2, sines, groups);
}

}  // namespace krosac::KROSAC_KERNELS
