#include "krosac/dsp/QuasiRandom.h"

#include <gtest/gtest.h>

#include <climits>
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
  // Columns 2 to 53 of the point with index 999, times 1024, from qmc.Sobol of SciPy 1.10.
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

TEST(QuasiRandom, StartsAgainAfterTwoToTheThirtyPointsAndEndsWithItsRelease) {
  for (const auto& [asked, status, dimensions] :
       {std::tuple{52, 0, 52}, {53, -1, 52}, {INT_MAX, -1, 52}, {INT_MIN, 0, 0}}) {
    Sequence sequence(asked);
    EXPECT_EQ(sequence.status, status);
    for (const bool isOrigin : {dimensions == 0, true}) {
      sequence.counter = (1u << 30) - 1;  // the last point and the origin differ by the same step
      EXPECT_EQ(sequence.next() == Point(dimensions), isOrigin);
    }
    EXPECT_EQ(sequence.next(), Point(dimensions, 0.5f));
    QuasiRandomRelease(&sequence);
    EXPECT_EQ(sequence.status, -9);
    QuasiRandomNumber(&sequence, nullptr);
  }
}

}  // namespace
}  // namespace krosac
