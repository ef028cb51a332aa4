#include "krosac/dsp/Misfits.h"

#include <limits>

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr auto kHuge = std::numeric_limits<std::int32_t>::max();

TEST(Misfits, BeginAtTheSecondSampleAndEndWithTheShorterTrace) {
  const auto a = traceOf({100, 1, 2, -3}, 0.5f), b = traceOf({-100, 2, 4, -1, 50}, 9);
  EXPECT_EQ(L1SacMisfit(*a, *b), 2.5f);
  EXPECT_EQ(L2SacMisfit(*a, *b), 4.5f);
  EXPECT_EQ(L2SacMisfit(*b, *a), 81.0f);  // the first one's DELTA
  EXPECT_EQ(L1SacFracMisfit(*a, *b), 5 / 6.0f);
  EXPECT_EQ(L2SacFracMisfit(*a, *b), 9 / 14.0f);
  for (const Samples& few : {Samples{}, Samples{7}}) {
    const auto s = traceOf(few);
    EXPECT_EQ(L1SacMisfit(*s, *b) + L2SacMisfit(*b, *s), 0.0f);
    EXPECT_TRUE(std::isnan(L1SacFracMisfit(*s, *b)) && std::isnan(L2SacFracMisfit(*b, *s)));
  }
  // 2^25 and ones, which single precision would lose.
  EXPECT_EQ(L1SacMisfit(*traceOf({0, 33554432, 1, 1, 1, 1}), *traceOf(Samples(6))), 33554436.0f);
}

TEST(Misfits, ShiftIsThatOfTheSecondTraceLater) {
  Samples early(40), late(40);
  for (int j = 0; j < 20; ++j) early[j + 8] = late[j + 11] = noise(20)[j];
  const Samples x = noise(5), nan(5, NAN), many = noise(1 << 20);
  const struct {
    Samples a, b;
    std::int32_t m, shift = -12345;
    float misfit = HUGE_VALF;
  } rows[] = {{late, early, 4, 3, 0},
              {early, late, 3, -3, 0},
              {{0, 0, 1, 0, 0}, {0, 1, 0, 1, 0}, 2, -1, 1},  // the first of two
              {{0, 0, 4}, {0, 4, 0, 9, 9}, 1, -1, 1},        // shifts end before m, b at n
              {x, x, 5, -5, 0},  // a shift by all samples leaves no difference
              {x, x, 0},
              {x, x, -kHuge - 1},
              {Samples(5), x, 3},
              {nan, x, kHuge},
              {x, nan, 3},
              {{}, x, kHuge},
              // At once, where all pairs of samples would take hours.
              {many, many, kHuge, -kHuge, 0},
              {Samples(1 << 20), many, 1 << 20}};
  for (const auto& row : rows) {
    for (const auto shifted : {L1SacFracMisfitWithShift, L2SacFracMisfitWithShift}) {
      std::int32_t shift = row.m;
      float misfit = -1;
      shifted(*traceOf(row.a), *traceOf(row.b), &shift, &misfit);
      EXPECT_EQ(std::pair(shift, misfit), std::pair(row.shift, row.misfit)) << &row - rows;
    }
  }
  float untouched = -1;
  L1SacFracMisfitWithShift(*traceOf(x), *traceOf(x), nullptr, &untouched);
  EXPECT_EQ(untouched, -1);
}

}  // namespace
}  // namespace krosac
