// The twiddle factors of the transforms in krosac/dsp/FftKernel.cc; docs/fft.md explains the whole.
// Each step of a recurrence waits for the one before, so several recurrences run side by side:
// those of several passes, and in long passes those of several rows.
#ifndef KROSAC_DSP_INTERNAL_TWIDDLES_H
#define KROSAC_DSP_INTERNAL_TWIDDLES_H

#include <cmath>
#include <cstddef>

#include "krosac/dsp/internal/simd/Vectors.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr int kMaxPasses = 8 * sizeof(std::size_t);
constexpr std::size_t kMaxStoredColumns = 64;  // a group of at most so many stores its twiddles
constexpr std::size_t kChunkColumns = 32;      // others compute those of so many at a time

// A value of a recurrence, or its step: exp(i*theta) - 1.
template <typename Value>
struct Recurrence {
  Value re, im;

  void advance(const Recurrence& step) {
    const Value previous = re;
    re = re * step.re - im * step.im + re;
    im = im * step.re + previous * step.im + im;
  }
};

using Twiddle = Recurrence<double>;

// Four recurrences, one in each lane.
struct Twiddle4 : Recurrence<Double4> {
  Twiddle lane(int i) const { return {re[i], im[i]}; }

  void setLane(int i, const Twiddle& one) {
    re[i] = one.re;
    im[i] = one.im;
  }
};

struct Complex4 {
  Double4 re, im;
};

// Advances four recurrences by four steps. Stores the four values of recurrence i in place(i), or
// only those of recurrences 2 and 3.
template <typename Place>
inline void computeFour(Twiddle4& w, const Twiddle4& step, Place place, bool lastTwoOnly = false) {
  Twiddle4 values[4];
#pragma GCC unroll 4
  for (Twiddle4& value : values) {
    value = w;
    w.advance(step);
  }
  Complex4 &first = place(0), &second = place(1), &third = place(2), &fourth = place(3);
  storeTransposed(first.re, second.re, third.re, fourth.re, values[0].re, values[1].re,
                  values[2].re, values[3].re, lastTwoOnly);
  storeTransposed(first.im, second.im, third.im, fourth.im, values[0].im, values[1].im,
                  values[2].im, values[3].im, lastTwoOnly);
}

// Four consecutive twiddle factors of each pass of a group, and of the step that separates the bins
// of a real transform, which only the last group has.
struct Twiddles {
  Complex4 pass[3];
  Complex4 real;
};

// The lane of the real transform in a group's recurrences; lanes 0 to 2 are the group's passes.
constexpr int kRealLane = 3;

// sin(theta) of each pass; pass p makes blocks of 2^p complex values. Each pass has twice the angle
// of the next one.
class PassSines {
 public:
  PassSines(std::size_t nn, int isign) {
    double mmax = 4.0;
    int pass = 2;
    do {
      sines_[pass] = std::sin(isign * (6.28318530717959 / mmax));
      mmax *= 2.0;
      ++pass;
    } while (nn >> (pass - 1) != 0);
  }

  Twiddle step(int pass) const {
    return {-2.0 * sines_[pass + 1] * sines_[pass + 1], sines_[pass]};
  }

 private:
  double sines_[kMaxPasses + 2];
};

// One to three passes that run together on blocks of 2^passes rows of `half` columns. Pass p of
// them joins rows 2^p apart and needs 2^p * half twiddle factors. A short group stores them all. A
// long group stores the values of the recurrences at the start of each row.
struct Group {
  std::size_t half;
  int passes;
  Twiddles* stored;  // row after row; null in a long group
  std::size_t stepsDone, stepsInAll;
  Twiddle4 step, state;
  Twiddle4 rowStart[4];

  void initialize(std::size_t firstHalf, int firstPass, int count, const PassSines& sines,
                  Twiddles* room) {
    half = firstHalf;
    passes = count;
    stored = half <= kMaxStoredColumns ? room : nullptr;
    stepsDone = 0;
    const std::size_t rows = std::size_t{1} << (passes - 1);
    stepsInAll = stored != nullptr ? rows * half : (rows - 1) * half + 1;
    // Unused lanes are zero, because denormal numbers left on the stack would slow down all lanes.
    step = Twiddle4{};
    for (int pass = 0; pass < count; ++pass) step.setLane(pass, sines.step(firstPass + pass));
    state = {{broadcast4(1.0), broadcast4(0.0)}};
  }

  std::size_t blockLength() const { return half << passes; }
  std::size_t columnsAtOnce() const { return stored != nullptr ? half : kChunkColumns; }

  // Advances the recurrences by four steps, unless all are done.
  void advanceTwiddles() {
    if (stepsDone >= stepsInAll) return;
    if (stored != nullptr) {
      Twiddles& four = stored[stepsDone / 4];
      // From the third row on only the last pass and the real transform need twiddle factors.
      computeFour(
          state, step, [&four](int i) -> Complex4& { return i < 3 ? four.pass[i] : four.real; },
          stepsDone >= 2 * half);
    } else {
      if ((stepsDone & (half - 1)) == 0) rowStart[stepsDone / half] = state;
      for (int i = 0; i < 4; ++i) state.advance(step);
    }
    stepsDone += 4;
  }

  // Completes what the pass of this index needs. A pass needs twice as many rows as the one before.
  void completeTwiddles(int pass) {
    const std::size_t needed = stored != nullptr ? half << pass : stepsInAll;
    while (stepsDone < needed) advanceTwiddles();
  }
};

// The recurrences of all rows and passes of a long group.
class RowTwiddles {
 public:
  void start(const Group& group) {
    for (int r = 0; r < 8; ++r) {
      w_[r / 4].setLane(r % 4, group.rowStart[kRow[r]].lane(kPass[r]));
      step_[r / 4].setLane(r % 4, group.step.lane(kPass[r]));
    }
  }

  void computeChunk(Twiddles (&chunk)[kChunkColumns]) {
    for (std::size_t i = 0; i < kChunkColumns / 4; ++i) {
      for (int four = 0; four < 2; ++four) {
        computeFour(w_[four], step_[four], [&](int lane) -> Complex4& {
          const int r = 4 * four + lane;
          return chunk[kRow[r] * kChunkColumns / 4 + i].pass[kPass[r]];
        });
      }
    }
  }

 private:
  static constexpr int kPass[8] = {0, 1, 1, 2, 2, 2, 2, 0};
  static constexpr std::size_t kRow[8] = {0, 0, 1, 0, 1, 2, 3, 1};  // no pass reads the last one

  Twiddle4 w_[2], step_[2];
};

// The groups of the passes after the first three. All have three passes but the first, which has
// the rest.
class Groups {
 public:
  Groups(std::size_t nn, const PassSines& sines) {
    int passes = 0;
    while (nn >> (passes + 4) != 0) ++passes;
    int pass = 4;
    for (int joined = (passes + 2) % 3 + 1; passes > 0; passes -= joined, joined = 3) {
      list_[count_].initialize(std::size_t{1} << (pass - 1), pass, joined, sines,
                               storage_[count_ % 2]);
      ++count_;
      pass += joined;
    }
  }

  int count() const { return count_; }
  Group& operator[](int i) { return list_[i]; }
  Group& last() { return list_[count_ - 1]; }

  void advanceTwiddles() {
    for (int i = 0; i < count_; ++i) list_[i].advanceTwiddles();
  }

 private:
  Group list_[kMaxPasses / 3];
  int count_ = 0;
  Twiddles storage_[2][kMaxStoredColumns];  // at most the first two groups are short
};

}  // namespace
}  // namespace krosac::KROSAC_KERNELS

#endif
