// The transforms of krosac/dsp/Fft.cc for 64 complex values and more, with the same roundings in
// another order; docs/fft.md explains it with a picture. Up to three passes are joined, so that
// eight values stay in the first-level cache between them, and each vector holds eight neighbouring
// butterflies.
#include <cmath>
#include <cstddef>

#include "krosac/dsp/internal/Kernels.h"
#include "krosac/dsp/internal/Twiddles.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr std::size_t kSegment = 1 << 14;  // complex values that fit in the second-level cache
constexpr int kReversed3[8] = {0, 4, 2, 6, 1, 5, 3, 7};

// Eight complex values. Between passes memory holds them split: eight real parts, then eight
// imaginary ones.
struct Complex8 {
  Float8 re, im;
};

inline Complex8 loadSplit(const float* from) {
  return {load8(from), load8(from + 8)};
}

inline void storeSplit(float* to, Complex8 value) {
  store(to, value.re);
  store(to + 8, value.im);
}

struct Twiddle8 {
  Double8 re, im;
};

inline Complex8 product(const Twiddle8& w, const Double8& re, const Double8& im) {
  return {toFloat(w.re * re - w.im * im), toFloat(w.re * im + w.im * re)};
}

// The product of b and the twiddle factor 1 + 0i. All products are exact in single precision. The
// products with zero cannot be left out: they determine the signs of zeros and propagate NaN.
inline Complex8 productWithOne(Complex8 b) {
  const Float8 zero = broadcast8(0.0f);
  return {b.re - zero * b.im, b.im + zero * b.re};
}

// The butterfly of a and b, given the product of b and its twiddle factor.
inline void butterfly(Complex8& a, Complex8& b, Complex8 product) {
  b = {a.re - product.re, a.im - product.im};
  a = {a.re + product.re, a.im + product.im};
}

// The last pass stores interleaved values.
template <bool kLast>
inline void butterfly(float* a, float* b, Complex8 product) {
  Complex8 up = loadSplit(a), down;
  butterfly(up, down, product);
  if (kLast) {
    storeInterleaved(a, up.re, up.im);
    storeInterleaved(b, down.re, down.im);
  } else {
    storeSplit(a, up);
    storeSplit(b, down);
  }
}

template <bool kLast>
inline void butterfly(float* a, float* b, const Twiddle8& w) {
  butterfly<kLast>(a, b, product(w, load8AsDouble(b), load8AsDouble(b + 8)));
}

// The pass that joins rows 2^kPass apart, over the given number of columns. Rows lie `row` floats
// apart.
template <int kRows, int kPass, bool kLast>
inline void runPass(float* x, std::size_t row, const Twiddles* w, std::size_t columns) {
  constexpr std::size_t kDistance = 1 << kPass;
#pragma GCC unroll 8
  for (std::size_t r = 0; r < kRows; ++r) {
    if (r & kDistance) continue;
    const Twiddles* ofRow = w + (r & (kDistance - 1)) * columns / 4;
    float *a = x + r * row, *b = a + kDistance * row;
    for (std::size_t i = 0; i < columns / 4; i += 2) {
      const Complex4 &w0 = ofRow[i].pass[kPass], &w1 = ofRow[i + 1].pass[kPass];
      butterfly<kLast>(a + 8 * i, b + 8 * i, {{w0.re, w1.re}, {w0.im, w1.im}});
    }
  }
}

// The passes of a group from kPass on, over the columns of one block. The recurrences of all groups
// advance in between.
template <int kPasses, int kPass, bool kLast>
inline void runPasses(Groups& groups, Group& group, float* x, const Twiddles* w) {
  constexpr bool kLastPass = kPass + 1 == kPasses;
  group.completeTwiddles(kPass);
  runPass<1 << kPasses, kPass, kLast && kLastPass>(x, 2 * group.half, w, group.columnsAtOnce());
  groups.advanceTwiddles();
  if constexpr (!kLastPass) runPasses<kPasses, kPass + 1, kLast>(groups, group, x, w);
}

// All passes of a group over `length` values. All blocks share the twiddle factors of a chunk.
template <int kPasses, bool kLast>
void runGroup(Groups& groups, Group& group, float* x, std::size_t length) {
  const bool isLong = group.stored == nullptr;
  RowTwiddles rows;
  Twiddles chunk[kChunkColumns];
  group.completeTwiddles(0);
  if (isLong) rows.start(group);
  for (std::size_t k = 0; k < group.half; k += group.columnsAtOnce()) {
    if (isLong) rows.computeChunk(chunk);
    for (std::size_t block = 0; block < length; block += group.blockLength())
      runPasses<kPasses, 0, kLast>(groups, group, x + 2 * (block + k),
                                   isLong ? chunk : group.stored);
  }
}

void runGroup(Groups& groups, int i, float* x, std::size_t length) {
  Group& group = groups[i];
  if (i + 1 == groups.count()) return runGroup<3, true>(groups, group, x, length);
  if (group.passes == 1) return runGroup<1, false>(groups, group, x, length);
  if (group.passes == 2) return runGroup<2, false>(groups, group, x, length);
  runGroup<3, false>(groups, group, x, length);
}

// The twiddle factors of the second and third pass, except 1, each in all lanes.
struct FirstTwiddles {
  Twiddle8 second, third[3];
};

FirstTwiddles firstTwiddles(const PassSines& sines) {
  const auto broadcast = [](const Twiddle& w) {
    const Double4 re = broadcast4(w.re), im = broadcast4(w.im);
    return Twiddle8{{re, re}, {im, im}};
  };
  FirstTwiddles first;
  Twiddle w{1.0, 0.0};
  w.advance(sines.step(2));
  first.second = broadcast(w);
  w = {1.0, 0.0};
  for (Twiddle8& third : first.third) {
    w.advance(sines.step(3));
    third = broadcast(w);
  }
  return first;
}

// Eight rows of eight complex values, split, with their columns in the order kLaneOrder.
using Square = float[8 * 16];

// Reads the rows of eight columns in bit-reversed order and runs the first three passes on them.
// The recurrences of the groups advance in between, because they mostly wait for their own results.
inline void firstPasses(const float* from, std::size_t row, Square& square, const FirstTwiddles& w,
                        Groups& groups) {
#pragma GCC unroll 2
  for (int first = 0; first < 8; first += 4) {
    groups.advanceTwiddles();
    Complex8 x[4];
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) {
      const float* values = from + static_cast<std::size_t>(kReversed3[first + r]) * row;
      x[r] = {loadEven(values), loadOdd(values)};
    }
    butterfly(x[0], x[1], productWithOne(x[1]));
    butterfly(x[2], x[3], productWithOne(x[3]));
    butterfly(x[0], x[2], productWithOne(x[2]));
    butterfly(x[1], x[3], product(w.second, toDouble(x[3].re), toDouble(x[3].im)));
#pragma GCC unroll 4
    for (int r = 0; r < 4; ++r) storeSplit(square + 16 * (first + r), x[r]);
  }
  groups.advanceTwiddles();
  float* half = square + 16 * 4;
  butterfly<false>(square, half, productWithOne(loadSplit(half)));
  for (int r = 1; r < 4; ++r) butterfly<false>(square + 16 * r, half + 16 * r, w.third[r - 1]);
  groups.advanceTwiddles();
}

// Stores the columns of the square as rows, in bit-reversed order.
inline void storeTransposed(const Square& square, float* to, std::size_t row) {
  for (int first = 0; first < 8; first += 4) {
    for (int part = 0; part < 16; part += 8) {
      const float* from = square + 16 * first + part;
      Float8 x[4] = {load8(from), load8(from + 16), load8(from + 32), load8(from + 48)};
      transposeHalves(x[0], x[1], x[2], x[3]);
#pragma GCC unroll 8
      for (int i = 0; i < 8; ++i)
        store(to + static_cast<std::size_t>(kReversed3[kLaneOrder[i]]) * row + part + first,
              half(x[i % 4], i / 4));
    }
  }
}

// Bit reversal and the first three passes, in squares of eight rows and eight columns. Each square
// changes places with the square at the bit-reversed index.
void reverseBitsAndRunFirstPasses(float* x, std::size_t nn, const PassSines& sines,
                                  Groups& groups) {
  const FirstTwiddles w = firstTwiddles(sines);
  const std::size_t row = nn / 4, squares = nn / 64;
  Square a, b;
  for (std::size_t i = 0, reversed = 0; i < squares; ++i) {
    if (i <= reversed) {
      float *here = x + 16 * i, *there = x + 16 * reversed;
      firstPasses(here, row, a, w, groups);
      if (i != reversed) {
        firstPasses(there, row, b, w, groups);
        storeTransposed(b, here, row);
      }
      storeTransposed(a, there, row);
    }
    std::size_t bit = squares / 2;
    for (; (reversed & bit) != 0; bit /= 2) reversed ^= bit;
    reversed |= bit;
  }
}

void transform(float* x, std::size_t nn, const PassSines& sines, Groups& groups) {
  reverseBitsAndRunFirstPasses(x, nn, sines, groups);
  int next = 0;
  const std::size_t segment = minimum(nn, kSegment);
  for (std::size_t begin = 0; begin < nn; begin += segment) {
    for (next = 0; next < groups.count() && groups[next].blockLength() <= segment; ++next)
      runGroup(groups, next, x + 2 * begin, segment);
  }
  for (; next < groups.count(); ++next) runGroup(groups, next, x, nn);
}

// The step of the twiddle factors that separate the bins of a real transform.
Twiddle realStep(std::size_t n, bool forward) {
  const double angle = 3.141592653589793 / static_cast<double>(n / 2);
  const double theta = forward ? angle : -angle, s = std::sin(0.5 * theta);
  return {-2.0 * s * s, std::sin(theta)};
}

// Separates bins k..k+3 at `up` and their mirror images at `down`.
template <bool kForward>
inline void separateFour(float* up, float* down, const Complex4& w) {
  const float c1 = 0.5f, c2 = kForward ? -0.5f : 0.5f;
  const Float4 a = load(up), b = load(up + 4), c = load(down), d = load(down + 4);
  const Float4 r1 = __builtin_shufflevector(a, b, 0, 2, 4, 6);
  const Float4 i1 = __builtin_shufflevector(a, b, 1, 3, 5, 7);
  const Float4 r3 = __builtin_shufflevector(d, c, 2, 0, 6, 4);
  const Float4 i3 = __builtin_shufflevector(d, c, 3, 1, 7, 5);
  const Double4 h1r = toDouble(c1 * (r1 + r3)), h1i = toDouble(c1 * (i1 - i3));
  const Double4 h2r = toDouble(-c2 * (i1 + i3)), h2i = toDouble(c2 * (r1 - r3));
  const Float4 upRe = toFloat(h1r + w.re * h2r - w.im * h2i);
  const Float4 upIm = toFloat(h1i + w.re * h2i + w.im * h2r);
  const Float4 downRe = toFloat(h1r - w.re * h2r + w.im * h2i);
  const Float4 downIm = toFloat(-h1i + w.re * h2i + w.im * h2r);
  store(up, __builtin_shufflevector(upRe, upIm, 0, 4, 1, 5));
  store(up + 4, __builtin_shufflevector(upRe, upIm, 2, 6, 3, 7));
  store(down, __builtin_shufflevector(downRe, downIm, 3, 7, 2, 6));
  store(down + 4, __builtin_shufflevector(downRe, downIm, 1, 5, 0, 4));
}

// The same for bins 0..3. Bin 0 has no mirror image and keeps its value.
template <bool kForward>
void separateFirstFour(float* x, std::size_t n, const Complex4& w) {
  const float first[2] = {x[0], x[1]};
  float down[8];
  store(down, load(x + n - 6));
  store(down + 4, Float4{x[n - 2], x[n - 1], 0.0f, 0.0f});
  separateFour<kForward>(x, down, w);
  x[0] = first[0];
  x[1] = first[1];
  for (std::size_t j = 0; j < 6; ++j) x[n - 6 + j] = down[j];
}

// Separates all bins below n/4. The recurrences of the four quarters of them run side by side, each
// from its own start.
template <bool kForward>
void separateBins(float* x, std::size_t n, Groups& groups) {
  const Group& group = groups.last();
  const std::size_t quarter = group.half;
  const auto separate = [&](std::size_t bin, const Complex4& w) {
    if (bin == 0) return separateFirstFour<kForward>(x, n, w);
    separateFour<kForward>(x + 2 * bin, x + n - 2 * bin - 6, w);
  };
  if (group.stored != nullptr) {
    for (std::size_t bin = 0; bin < 4 * quarter; bin += 4)
      separate(bin, group.stored[bin / 4].real);
    return;
  }
  Twiddle4 w{}, step{};
  for (int q = 0; q < 4; ++q) {
    w.setLane(q, group.rowStart[q].lane(kRealLane));
    step.setLane(q, group.step.lane(kRealLane));
  }
  for (std::size_t k = 0; k < quarter; k += 4) {
    Complex4 ofQuarter[4];
    computeFour(w, step, [&](int q) -> Complex4& { return ofQuarter[q]; });
    for (std::size_t q = 0; q < 4; ++q) separate(q * quarter + k, ofQuarter[q]);
  }
}

}  // namespace

void four1(float* x, std::size_t nn, int isign) {
  const PassSines sines(nn, isign);
  Groups groups(nn, sines);
  transform(x, nn, sines, groups);
}

void realftForward(float* x, std::size_t n) {
  const PassSines sines(n / 2, 1);
  Groups groups(n / 2, sines);
  groups.last().step.setLane(kRealLane, realStep(n, true));
  transform(x, n / 2, sines, groups);
  separateBins<true>(x, n, groups);
  const float h = x[0];
  x[0] = h + x[1];
  x[1] = h - x[1];
}

void realftInverse(float* x, std::size_t n) {
  const PassSines sines(n / 2, -1);
  Groups groups(n / 2, sines);
  groups.last().step.setLane(kRealLane, realStep(n, false));
  groups.last().completeTwiddles(2);
  separateBins<false>(x, n, groups);
  const float h = x[0];
  x[0] = 0.5f * (h + x[1]);
  x[1] = 0.5f * (h - x[1]);
  transform(x, n / 2, sines, groups);
}

}  // namespace krosac::KROSAC_KERNELS
