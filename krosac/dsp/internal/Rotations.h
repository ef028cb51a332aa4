// The rotations of the transforms of dsp/FftKernel.cc. A rotation is a recurrence whose steps wait
// for each other, so several are computed side by side: those of different passes, and parts of one
// pass that start from states met on a first run through it.
#ifndef KROSAC_DSP_INTERNAL_ROTATIONS_H
#define KROSAC_DSP_INTERNAL_ROTATIONS_H

#include <cmath>
#include <cstddef>

#include "krosac/dsp/internal/Vectors.h"

namespace krosac::KROSAC_KERNELS {
namespace {

constexpr int kMostPasses = 8 * sizeof(std::size_t);
constexpr std::size_t kShort = 64;  // columns of a group that keeps its rotations
constexpr std::size_t kChunk = 32;  // columns whose rotations others have at a time

inline std::size_t least(std::size_t a, std::size_t b) {
  return a < b ? a : b;
}

// The state of a recurrence, or its step.
template <typename Value>
struct Recurrence {
  Value re, im;

  void advance(const Recurrence& step) {
    const Value previous = re;
    re = re * step.re - im * step.im + re;
    im = im * step.re + previous * step.im + im;
  }
};

using Rotation = Recurrence<double>;

// Four recurrences side by side.
struct Rotations : Recurrence<Double4> {
  Rotation lane(int i) const { return {re[i], im[i]}; }

  void setLane(int i, const Rotation& one) {
    re[i] = one.re;
    im[i] = one.im;
  }
};

// Four steps of four recurrences, a vector a recurrence. Quads of a group lie row after row; lane p
// is the pass that joins 2^p rows and has so many rows of its own, the last one is for real bins.
struct Quads {
  Double4 re[4], im[4];

  // Those of all four, or only of the last two.
  void take(Rotations& w, const Rotations& step, bool lastOnly = false) {
    take(
        w, step, [this](int lane) -> Double4& { return re[lane]; },
        [this](int lane) -> Double4& { return im[lane]; }, lastOnly);
  }

  // The same to any places of the four.
  template <typename Re, typename Im>
  static void take(Rotations& w, const Rotations& step, Re toRe, Im toIm, bool lastOnly = false) {
    Rotations taken[4];
#pragma GCC unroll 4
    for (Rotations& one : taken) {
      one = w;
      w.advance(step);
    }
    storeColumns(toRe(0), toRe(1), toRe(2), toRe(3), taken[0].re, taken[1].re, taken[2].re,
                 taken[3].re, lastOnly);
    storeColumns(toIm(0), toIm(1), toIm(2), toIm(3), taken[0].im, taken[1].im, taken[2].im,
                 taken[3].im, lastOnly);
  }
};

// sin(theta) of the passes, by the binary logarithm of the complex values that a pass joins. Half
// the angle of a pass is the angle of the next one.
class Sines {
 public:
  Sines(std::size_t nn, int isign) {
    double mmax = 4.0;
    int pass = 2;
    do {
      sines_[pass] = std::sin(isign * (6.28318530717959 / mmax));
      mmax *= 2.0;
      ++pass;
    } while (nn >> (pass - 1) != 0);
  }

  Rotation step(int pass) const {
    return {-2.0 * sines_[pass + 1] * sines_[pass + 1], sines_[pass]};
  }

 private:
  double sines_[kMostPasses + 2];
};

// One to three passes that are done at once; the first joins blocks of `half` values. The lanes of
// its recurrences are the passes, and the fourth another one that the caller wants. A first run
// through them keeps all rotations of a short group, and of a long one the states at[q] after
// q*half steps, where rows start.
struct Group {
  std::size_t half;
  int passes;
  Quads* kept;  // none in a long group
  std::size_t done, steps;
  Rotations step, state;
  Rotations at[4];

  void begin(std::size_t firstHalf, int firstPass, int count, const Sines& sines, Quads* room) {
    half = firstHalf;
    passes = count;
    kept = half <= kShort ? room : nullptr;
    done = 0;
    const std::size_t rows = std::size_t{1} << (passes - 1);
    steps = kept != nullptr ? rows * half : (rows - 1) * half + 1;
    step = Rotations{};
    for (int pass = 0; pass < count; ++pass) step.setLane(pass, sines.step(firstPass + pass));
    state = {{fourTimes(1.0), fourTimes(0.0)}};
  }

  std::size_t length() const { return half << passes; }
  std::size_t columns() const { return kept != nullptr ? half : kChunk; }

  // Four steps of the first run, unless it is over.
  void run() {
    if (done >= steps) return;
    if (kept != nullptr) {
      kept[done / 4].take(state, step, done >= 2 * half);  // where only the last passes have rows
    } else {
      if ((done & (half - 1)) == 0) at[done / half] = state;
      for (int i = 0; i < 4; ++i) state.advance(step);
    }
    done += 4;
  }

  // What the group's pass needs: a pass has the rows of those before it and as many more.
  void finish(int pass) {
    const std::size_t needed = kept != nullptr ? half << pass : steps;
    while (done < needed) run();
  }
};

// The recurrences of a long group's rows, each from the state that it starts with.
class RowRotations {
 public:
  void start(const Group& group) {
    for (int r = 0; r < 8; ++r) {
      w_[r / 4].setLane(r % 4, group.at[kRow[r]].lane(kLane[r]));
      step_[r / 4].setLane(r % 4, group.step.lane(kLane[r]));
    }
  }

  void fill(Quads (&chunk)[kChunk]) {
    for (std::size_t i = 0; i < kChunk / 4; ++i) {
      for (int four = 0; four < 2; ++four) {
        const auto quads = [&](int lane) -> Quads& {
          return chunk[kRow[4 * four + lane] * kChunk / 4 + i];
        };
        Quads::take(
            w_[four], step_[four],
            [&](int lane) -> Double4& { return quads(lane).re[kLane[4 * four + lane]]; },
            [&](int lane) -> Double4& { return quads(lane).im[kLane[4 * four + lane]]; });
      }
    }
  }

 private:
  static constexpr int kLane[8] = {0, 1, 1, 2, 2, 2, 2, 0};
  static constexpr std::size_t kRow[8] = {0, 0, 1, 0, 1, 2, 3, 1};  // the last one is not used

  Rotations w_[2], step_[2];
};

// The groups of passes after the first three, three passes each but for the first.
class Groups {
 public:
  Groups(std::size_t nn, const Sines& sines) {
    int passes = 0;
    while (nn >> (passes + 4) != 0) ++passes;
    int pass = 4;
    for (int joined = (passes + 2) % 3 + 1; passes > 0; passes -= joined, joined = 3) {
      list_[count_].begin(std::size_t{1} << (pass - 1), pass, joined, sines, room_[count_ % 2]);
      ++count_;
      pass += joined;
    }
  }

  int count() const { return count_; }
  Group& operator[](int i) { return list_[i]; }
  Group& last() { return list_[count_ - 1]; }

  void run() {
    for (int i = 0; i < count_; ++i) list_[i].run();
  }

 private:
  Group list_[kMostPasses / 3];
  int count_ = 0;
  Quads room_[2][kShort];  // the two first groups may be short
};

}  // namespace
}  // namespace krosac::KROSAC_KERNELS

#endif
