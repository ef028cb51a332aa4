#include "krosac/dsp/QuasiRandom.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <set>
#include <tuple>
#include <vector>

namespace krosac {
namespace {

using Point = std::vector<float>;

struct Sequence : QuasiRandomContext {
  explicit Sequence(int d) : QuasiRandomContext{} { QuasiRandomInitialize(this, d); }
  ~Sequence() { QuasiRandomRelease(this); }
  Point next() {
    Point out(dimensions);
    QuasiRandomNumber(this, out.data());
    return out;
  }
};

TEST(QuasiRandom, IsTheSequenceOfJoeAndKuo) {
  // Columns 2 to 53 of the point with index 999 in 1024ths, from SciPy 1.10, qmc.Sobol.
  const Point published = {931, 83,  1013, 991, 865, 879, 729, 833, 647, 23,  453, 485, 969,
                           851, 571, 289,  673, 695, 39,  343, 371, 397, 361, 789, 353, 233,
                           171, 381, 797,  983, 85,  495, 799, 757, 341, 549, 147, 763, 811,
                           359, 709, 791,  655, 285, 671, 957, 365, 959, 299, 169, 849, 579};
  Sequence sequence(52);
  Point point;
  while (sequence.counter < 999) point = sequence.next();
  for (float& x : point) x *= 1024;
  EXPECT_EQ(point, published);
}

TEST(QuasiRandom, EveryDimensionFillsEveryDyadicIntervalOnce) {
  Sequence sequence(52);
  std::vector<std::set<float>> hits(52, {0.0f});  // the origin
  for (int k = 1; k < 1024; ++k) {
    const Point point = sequence.next();
    for (int d = 0; d < 52; ++d) hits[d].insert(std::floor(point[d] * 1024));
  }
  for (const auto& h : hits) EXPECT_TRUE(h.size() == 1024 && *h.rbegin() == 1023.0f);
}

TEST(QuasiRandom, StartsAgainAfterTwoToTheThirtyPoints) {
  Sequence sequence(3);
  sequence.counter = (1u << 30) - 1;  // the last point and the origin differ by the same step
  EXPECT_NE(sequence.next(), Point(3));
  sequence.counter = (1u << 30) - 1;
  EXPECT_EQ(sequence.next(), Point(3));
  EXPECT_EQ(sequence.next(), Point(3, 0.5f));
}

TEST(QuasiRandom, StatusAndRelease) {
  for (const auto& [asked, status, dimensions] :
       {std::tuple{52, 0, 52}, {53, -1, 52}, {INT_MAX, -1, 52}, {0, 0, 0}, {INT_MIN, 0, 0}}) {
    Sequence sequence(asked);
    EXPECT_EQ(sequence.status, status);
    EXPECT_EQ(sequence.next(), Point(dimensions, 0.5f));
    QuasiRandomRelease(&sequence);
    EXPECT_EQ(sequence.status, -9);
    QuasiRandomNumber(&sequence, nullptr);
    QuasiRandomRelease(&sequence);  // once too often
  }
}

}  // namespace
}  // namespace krosac
