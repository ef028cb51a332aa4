// The transforms of dsp/Fft.cc for 64 complex values and more, with the same roundings in another
// order. Up to three passes are joined, so that eight values stay in registers between them, and
// four butterflies of neighbouring rotations go side by side. A rotation is a recurrence whose
// steps wait for each other, so several are computed side by side too: those of different passes,
// and parts of one pass that start from states met on a first run through it.
#include <cmath>
#include <cstddef>

#include "krosac/dsp/KernelsInternal.h"
#include "krosac/dsp/VectorsInternal.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr int kMostPasses = 8 * sizeof(std::size_t);
constexpr std::size_t kChunk = 16;         // rotations made at a time
constexpr std::size_t kSegment = 1 << 14;  // complex values that stay in the second cache
constexpr int kReversed3[8] = {0, 4, 2, 6, 1, 5, 3, 7};

std::size_t least(std::size_t a, std::size_t b) {
  return a < b ? a : b;
}

// Four recurrences side by side.
struct Rotations {
  Double4 re, im;
};

inline void advance(Rotations& w, const Rotations& step) {
  const Double4 previous = w.re;
  w.re = w.re * step.re - w.im * step.im + w.re;
  w.im = w.im * step.re + previous * step.im + w.im;
}

// sin(theta) of the passes, by the binary logarithm of the complex values that a pass joins. Half
// the angle of a pass is the angle of the next one.
class Sines {
 public:
  Sines(std::size_t nn, int isign) {
    double mmax = 4.0;
    for (int pass = 2; nn >> (pass - 1) != 0; ++pass, mmax *= 2.0)
      sines_[pass] = std::sin(isign * (6.28318530717959 / mmax));
  }

  void setStep(int pass, Rotations& step, int lane) const {
    step.re[lane] = -2.0 * sines_[pass + 1] * sines_[pass + 1];
    step.im[lane] = sines_[pass];
  }

 private:
  double sines_[kMostPasses + 2];
};

// One to three passes that are done at once; the first joins blocks of `half` values. Its lanes are
// the passes, and in the fourth another recurrence that the caller wants. at[q] is their state
// after q*half steps.
struct Group {
  std::size_t half;
  int passes;
  Rotations step;
  Rotations at[4];
  Rotations state;
  std::size_t done;

  void begin(std::size_t firstHalf, int firstPass, int count, const Sines& sines) {
    half = firstHalf;
    passes = count;
    done = 0;
    step = Rotations{};
    for (int pass = 0; pass < count; ++pass) sines.setStep(firstPass + pass, step, pass);
    state = at[0] = Rotations{fourTimes(1.0), fourTimes(0.0)};
  }

  std::size_t length() const { return half << passes; }

  void run(std::size_t steps) {
    const std::size_t end = ((std::size_t{1} << (passes - 1)) - 1) * half;
    while (steps > 0 && done < end) {
      const std::size_t count = least(steps, half - (done & (half - 1)));
      for (std::size_t i = 0; i < count; ++i) advance(state, step);
      done += count;
      steps -= count;
      if ((done & (half - 1)) == 0) at[done / half] = state;
    }
  }
};

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

// Rotations of a group's passes: row 0 for the first, 1 and 2 for the second, 3 to 6 for the third,
// where a pass with 2^p rows has in row r those of r*half and after.
struct Chunk {
  Double4 re[8][kChunk / 4], im[8][kChunk / 4];
};

// Makes the next four of each of four rotations.
inline void fill(Rotations& w, const Rotations& step, Double4 (*re)[kChunk / 4],
                 Double4 (*im)[kChunk / 4], std::size_t i) {
  Rotations s[4];
  for (Rotations& next : s) {
    next = w;
    advance(w, step);
  }
  transpose(s[0].re, s[1].re, s[2].re, s[3].re);
  transpose(s[0].im, s[1].im, s[2].im, s[3].im);
  for (int lane = 0; lane < 4; ++lane) {
    re[lane][i] = s[lane].re;
    im[lane][i] = s[lane].im;
  }
}

// The recurrences of a group's passes, each from the states that its rows start with.
template <int kPasses>
class GroupRotations {
 public:
  explicit GroupRotations(const Group& group) {
    constexpr int kLanes[8] = {0, 1, 1, 2, 2, 2, 2, 2};
    constexpr int kStarts[8] = {0, 0, 1, 0, 1, 2, 3, 3};
    for (int i = 0; i < 8; ++i) {
      const int lane = kLanes[i], start = lane < kPasses ? kStarts[i] : 0;
      w_[i / 4].re[i % 4] = group.at[start].re[lane];
      w_[i / 4].im[i % 4] = group.at[start].im[lane];
      step_[i / 4].re[i % 4] = group.step.re[lane];
      step_[i / 4].im[i % 4] = group.step.im[lane];
    }
  }

  void makeNext(Chunk& chunk, std::size_t i) {
    fill(w_[0], step_[0], chunk.re, chunk.im, i);
    if (kPasses == 3) fill(w_[1], step_[1], chunk.re + 4, chunk.im + 4, i);
  }

 private:
  Rotations w_[2], step_[2];
};

// Between the passes eight complex values lie as eight real and eight imaginary parts.
template <bool kLast>
inline void butterfly(float* a, float* b, const Double4* re, const Double4* im) {
  const Double4 br0 = widened(load(b)), br1 = widened(load(b + 4));
  const Double4 bi0 = widened(load(b + 8)), bi1 = widened(load(b + 12));
  const Float8 tempr = rounded(re[0] * br0 - im[0] * bi0, re[1] * br1 - im[1] * bi1);
  const Float8 tempi = rounded(re[0] * bi0 + im[0] * br0, re[1] * bi1 + im[1] * br1);
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

// One pass of the rows of a block, over the values of a chunk.
template <int kRows, int kDistance, bool kLast>
inline void pass(float* x, std::size_t row, const Chunk& w, std::size_t count) {
#pragma GCC unroll 8
  for (int r = 0; r < kRows; ++r) {
    if (r & kDistance) continue;
    const int of = kDistance - 1 + (r & (kDistance - 1));
    float *a = x + static_cast<std::size_t>(r) * row, *b = a + kDistance * row;
    for (std::size_t i = 0; i < count / 4; i += 2)
      butterfly<kLast>(a + 8 * i, b + 8 * i, &w.re[of][i], &w.im[of][i]);
  }
}

// Calls between() twice, where its work can go on beside that of the passes.
template <int kPasses, bool kLast, typename Between>
inline void passes(float* x, std::size_t row, const Chunk& w, std::size_t count, Between between) {
  constexpr int kRows = 1 << kPasses;
  between(0);
  pass<kRows, 1, false>(x, row, w, count);
  between(1);
  if constexpr (kPasses > 1) pass<kRows, 2, false>(x, row, w, count);
  if constexpr (kPasses > 2) pass<kRows, 4, kLast>(x, row, w, count);
}

// Several blocks share the rotations of a chunk.
template <int kPasses>
void sweepBlocks(const Group& group, float* x, std::size_t length) {
  GroupRotations<kPasses> rotations(group);
  Chunk chunk;
  for (std::size_t k = 0; k < group.half; k += kChunk) {
    const std::size_t count = least(kChunk, group.half - k);
    for (std::size_t i = 0; i < count / 4; ++i) rotations.makeNext(chunk, i);
    for (std::size_t block = 0; block < length; block += group.length())
      passes<kPasses, false>(x + 2 * (block + k), 2 * group.half, chunk, count, [](int) {});
  }
}

// In one block the next rotations are made while these are used.
template <bool kLast>
void sweepBlock(const Group& group, float* x) {
  GroupRotations<3> rotations(group);
  Chunk chunks[2];
  for (std::size_t i = 0; i < 2; ++i) rotations.makeNext(chunks[0], i);
  for (std::size_t k = 0; k < group.half; k += 8) {
    const Chunk& chunk = chunks[k / 8 % 2];
    Chunk& next = chunks[(k / 8 + 1) % 2];
    passes<3, kLast>(x + 2 * k, 2 * group.half, chunk, 8,
                     [&](std::size_t i) { rotations.makeNext(next, i); });
  }
}

void sweep(const Group& group, float* x, std::size_t length, bool last) {
  if (group.passes == 1) return sweepBlocks<1>(group, x, length);
  if (group.passes == 2) return sweepBlocks<2>(group, x, length);
  if (last) return sweepBlock<true>(group, x);
  if (length == group.length()) return sweepBlock<false>(group, x);
  sweepBlocks<3>(group, x, length);
}

// The groups of passes after the first three, three passes each but for the first.
struct Groups {
  Group list[kMostPasses / 3];
  int count = 0;

  Groups(std::size_t nn, const Sines& sines) {
    int passes = 0;
    while (nn >> (passes + 4) != 0) ++passes;
    int pass = 4;
    for (int joined = (passes + 2) % 3 + 1; passes > 0; passes -= joined, joined = 3) {
      list[count++].begin(std::size_t{1} << (pass - 1), pass, joined, sines);
      pass += joined;
    }
  }
  void run(std::size_t steps) {
    for (int i = 0; i < count; ++i) list[i].run(steps);
  }
  void finish() { run(4 * last().half); }
  Group& last() { return list[count - 1]; }
};

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
    advance(w, step);
    if (k == 0) first.second = {fourTimes(w.re[0]), fourTimes(w.im[0])};
    first.third[k] = {fourTimes(w.re[1]), fourTimes(w.im[1])};
  }
  return first;
}

// The first three passes of eight columns of eight values each, whose rows are taken in the order
// of reversed bits; the columns become rows, in that order too.
inline void firstPasses(const float* from, std::size_t fromRow, float* to, std::size_t toRow,
                        const FirstRotations& w, Groups& groups) {
  constexpr std::size_t kSteps = 4;
  for (int half = 0; half < 2; ++half) {
    groups.run(kSteps);
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
    groups.run(kSteps);
    unitButterfly(re[0], im[0], re[4], im[4]);
#pragma GCC unroll 3
    for (int r = 1; r < 4; ++r)
      butterfly(re[r], im[r], re[r + 4], im[r + 4], w.third[r - 1].re, w.third[r - 1].im);
    groups.run(kSteps);
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
  groups.finish();
}

void transform(float* x, std::size_t nn, const Sines& sines, Groups& groups) {
  reverseAndBegin(x, nn, sines, groups);
  int next = 0;
  const std::size_t segment = least(nn, kSegment);
  for (std::size_t begin = 0; begin < nn; begin += segment) {
    for (next = 0; next < groups.count && groups.list[next].length() <= segment; ++next)
      sweep(groups.list[next], x + 2 * begin, segment, next + 1 == groups.count);
  }
  for (; next < groups.count; ++next) sweep(groups.list[next], x, nn, next + 1 == groups.count);
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

// The four quarters of the bins below n/4 side by side, each with the recurrence from its own
// start.
template <bool kForward>
void separate(float* x, std::size_t n, const Group& group) {
  Rotations w, step;
  for (int q = 0; q < 4; ++q) {
    w.re[q] = group.at[q].re[3];
    w.im[q] = group.at[q].im[3];
    step.re[q] = group.step.re[3];
    step.im[q] = group.step.im[3];
  }
  const std::size_t quarter = n / 16;
  Chunk chunk;
  fill(w, step, chunk.re, chunk.im, 0);
  for (std::size_t k = 0, i = 0; k < quarter; k += 4, i = 1 - i) {
    for (std::size_t q = 0; q < 4; ++q) {
      const std::size_t bin = q * quarter + k;
      if (q == 1) fill(w, step, chunk.re, chunk.im, 1 - i);
      if (bin != 0) {
        separate<kForward>(x + 2 * bin, x + n - 2 * bin - 6, chunk.re[q][i], chunk.im[q][i]);
      } else {
        // Bin 0 has no mirror image: it stays as it is.
        const float first[2] = {x[0], x[1]};
        float down[8];
        store(down, load(x + n - 6));
        store(down + 4, Float4{x[n - 2], x[n - 1], 0.0f, 0.0f});
        separate<kForward>(x, down, chunk.re[0][0], chunk.im[0][0]);
        x[0] = first[0];
        x[1] = first[1];
        for (std::size_t j = 0; j < 6; ++j) x[n - 6 + j] = down[j];
      }
    }
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
  separate<true>(x, n, groups.last());
  const float h = x[0];
  x[0] = h + x[1];
  x[1] = h - x[1];
}

void realftInverse(float* x, std::size_t n) {
  const Sines sines(n / 2, -1);
  Groups groups(n / 2, sines);
  setRealStep(n, false, groups.last().step);
  groups.finish();
  separate<false>(x, n, groups.last());
  const float h = x[0];
  x[0] = 0.5f * (h + x[1]);
  x[1] = 0.5f * (h - x[1]);
  transform(x, n / 2, sines, groups);
}

}  // namespace krosac::KROSAC_KERNELS
