#include "krosac/dsp/Misfits.h"

#include <limits>

#include "SpectralTraces.h"

namespace krosac {
namespace {

constexpr auto kHuge = std::numeric_limits<std::int32_t>::max();
constexpr float kInfinity = std::numeric_limits<float>::infinity();

TEST(Misfits, BeginAtTheSecondSampleAndEndWithTheShorterTrace) {
  const auto a = madeTrace({100, 1, 2, -3}, 0.5f), b = madeTrace({-100, 2, 4, -1, 50}, 9.0f);
  EXPECT_EQ(L1SacMisfit(*a, *b), 2.5f);
  EXPECT_EQ(L2SacMisfit(*a, *b), 4.5f);
  EXPECT_EQ(L2SacMisfit(*b, *a), 81.0f);  // the first one's DELTA
  EXPECT_EQ(L1SacFracMisfit(*a, *b), 5 / 6.0f);
  EXPECT_EQ(L2SacFracMisfit(*a, *b), 9 / 14.0f);
  EXPECT_EQ(L1SacFracMisfit(*b, *a), 5 / 7.0f);
  for (const Samples& few : {Samples{}, Samples{7}}) {
    const auto s = madeTrace(few);
    EXPECT_EQ(L1SacMisfit(*s, *b) + L2SacMisfit(*b, *s), 0.0f);
    EXPECT_TRUE(std::isnan(L1SacFracMisfit(*s, *b)) && std::isnan(L2SacFracMisfit(*b, *s)));
  }
  // 2^25 and ones: single precision would lose them.
  const auto large = madeTrace({0, 33554432, 1, 1, 1, 1}), none = madeTrace(Samples(6));
  EXPECT_EQ(L1SacMisfit(*large, *none), 33554436.0f);
}

struct Shifted {
  std::int32_t shift;
  float misfit = -1;
  bool operator==(const Shifted&) const = default;
};

Shifted shifted(const Samples& a, const Samples& b, std::int32_t m, int norm) {
  Shifted result{m};
  (norm == 1 ? L1SacFracMisfitWithShift : L2SacFracMisfitWithShift)(*madeTrace(a), *madeTrace(b),
                                                                    &result.shift, &result.misfit);
  return result;
}

TEST(Misfits, ShiftIsThatOfTheSecondTraceLater) {
  Samples early(40), late(40);
  for (int j = 0; j < 20; ++j) early[j + 8] = late[j + 11] = noise(20)[j];
  for (const int norm : {1, 2}) {
    EXPECT_EQ(shifted(late, early, 4, norm), (Shifted{3, 0}));
    EXPECT_EQ(shifted(early, late, 3, norm), (Shifted{-3, 0}));
    EXPECT_NE(shifted(late, early, 3, norm).shift, 3);  // the shifts end before m
    // Equal at -1 and 1.
    EXPECT_EQ(shifted({0, 0, 1, 0, 0}, {0, 1, 0, 1, 0}, 2, norm), (Shifted{-1, 1}));
  }
}

TEST(Misfits, BestShiftIsThatOfASlowSearch) {
  for (const int norm : {1, 2}) {
    for (const auto& [count, otherCount, m] : {std::tuple{30, 30, 7}, {30, 22, 21}, {9, 30, 9}}) {
      const Samples a = richNoise(count), b = richNoise(otherCount);
      const int n = std::min(count, otherCount);
      Shifted expected{-12345, kInfinity};
      for (int s = -m; s < m; ++s) {
        double sum = 0, size = 0;
        for (int i = 0; i < n; ++i) {
          size += std::pow(std::abs(a[i]), norm);
          for (int j = 0; j < n; ++j)
            if (i - j == s) sum += std::pow(std::abs(double{a[i]} - b[j]), norm);
        }
        if (sum / size < expected.misfit) expected = {s, static_cast<float>(sum / size)};
      }
      const Shifted best = shifted(a, b, m, norm);
      EXPECT_EQ(best.shift, expected.shift);
      EXPECT_FLOAT_EQ(best.misfit, expected.misfit);
    }
  }
}

TEST(Misfits, ShiftsWithoutAnAnswerOrBeyondTheTrace) {
  const Shifted none{-12345, kInfinity};
  const Samples x = noise(5), nan(5, std::nanf(""));
  for (const int norm : {1, 2}) {
    for (const std::int32_t m : {0, -1, -kHuge - 1}) EXPECT_EQ(shifted(x, x, m, norm), none);
    EXPECT_EQ(shifted(Samples(5), x, 3, norm), none);
    EXPECT_EQ(shifted(nan, x, kHuge, norm), none);
    EXPECT_EQ(shifted(x, nan, 3, norm), none);
    EXPECT_EQ(shifted({}, x, kHuge, norm), none);
    // A shift by all samples leaves no difference.
    EXPECT_EQ(shifted(x, x, 5, norm), (Shifted{-5, 0}));
    // At once, where all pairs of samples would take hours.
    const Samples many = noise(1 << 20);
    EXPECT_EQ(shifted(many, many, kHuge, norm), (Shifted{-kHuge, 0}));
    EXPECT_EQ(shifted(Samples(1 << 20), many, 1 << 20, norm), none);
  }
  const auto s = madeTrace(x);
  float misfit = -1;
  L1SacFracMisfitWithShift(*s, *s, nullptr, &misfit);
  EXPECT_EQ(misfit, -1);
}

}  // namespace
}  // namespace krosac
