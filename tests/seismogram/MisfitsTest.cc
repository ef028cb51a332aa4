#include "krosac/seismogram/Misfits.h"

#include <limits>

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr auto kMost = std::numeric_limits<std::int32_t>::max();

TEST(Misfits, StartAtTheSecondSampleAndEndWithTheShorterTrace) {
  const auto a = traceOf({100, 1, 2, -3}, 0.5f), b = traceOf({-100, 2, 4, -1, 50}, 9);
  EXPECT_EQ(L1SacMisfit(*a, *b), 2.5f);
  EXPECT_EQ(L2SacMisfit(*a, *b), 4.5f);
  EXPECT_EQ(L2SacMisfit(*b, *a), 81.0f);  // DELTA of the first
  EXPECT_EQ(L1SacFracMisfit(*a, *b), 5 / 6.0f);
  EXPECT_EQ(L2SacFracMisfit(*a, *b), 9 / 14.0f);
  EXPECT_EQ(L1SacMisfit(*traceOf({}), *b), 0.0f);
  EXPECT_TRUE(std::isnan(L2SacFracMisfit(*b, *traceOf({7}))));
  // 2^25 plus ones, which a single-precision sum would lose.
  EXPECT_EQ(L1SacMisfit(*traceOf({0, 33554432, 1, 1, 1, 1}), *traceOf(Samples(6))), 33554436.0f);
}

TEST(Misfits, APositiveShiftMovesTheSecondTraceLater) {
  const Samples x = noise(5), nan(5, NAN), many = noise(1 << 20);
  const struct {
    Samples a, b;
    std::int32_t m, shift = -12345;
    float misfit = HUGE_VALF;
  } rows[] = {{{9, 8, 7, 6, 3, 1, 2}, {6, 3, 1, 2, 5, 5, 5}, 4, 3, 0},
              {{0, 0, 1, 0, 0}, {0, 1, 0, 1, 0}, 2, -1, 1},  // the first of two equal ones
              {{0, 0, 4}, {0, 4, 0, 9, 9}, 1, -1, 1},        // shifts end at m - 1, b at n
              {x, x, -kMost - 1},
              {Samples(5), x, 3},
              {nan, x, kMost},
              {Samples(1 << 20), many, 1 << 20},
              {{}, x, kMost},
              // A shift by all samples has no terms. It is found at once; comparing all pairs of
              // samples would take hours.
              {many, many, kMost, -kMost, 0}};
  for (const auto& row : rows) {
    for (const auto shifted : {L1SacFracMisfitWithShift, L2SacFracMisfitWithShift}) {
      std::int32_t shift = row.m;
      float misfit = -1;
      shifted(*traceOf(row.a), *traceOf(row.b), &shift, &misfit);
      EXPECT_EQ(std::pair(shift, misfit), std::pair(row.shift, row.misfit)) << &row - rows;
      shifted(*traceOf(row.a), *traceOf(row.b), nullptr, nullptr);
    }
  }
}

}  // namespace
}  // namespace krosac
