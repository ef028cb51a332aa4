#include "krosac/dsp/QuasiRandom.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <random>
#include <thread>
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

TEST(QuasiRandom, FirstPointsArePublished) {
  // Columns 2 and 3 of the first points of Joe and Kuo (2008), in eighths.
  const float published[][2] = {{4, 4}, {2, 2}, {6, 6}, {3, 5}, {7, 1}, {1, 7}, {5, 3}};
  Sequence sequence(2);
  for (const auto& [x, y] : published) EXPECT_EQ(sequence.next(), (Point{x / 8, y / 8}));
}

TEST(QuasiRandom, EveryDimensionFillsEveryDyadicIntervalOnce) {
  Sequence sequence(52);
  std::vector<std::vector<int>> hits(52, std::vector<int>(1024, 0));
  for (auto& h : hits) h[0] = 1;  // the origin
  for (int k = 1; k < 1024; ++k) {
    const Point point = sequence.next();
    for (int d = 0; d < 52; ++d) ++hits[d].at(static_cast<int>(point[d] * 1024));
  }
  for (const auto& h : hits) EXPECT_EQ(h, std::vector<int>(1024, 1));
  EXPECT_EQ(sequence.counter, 1023u);
}

TEST(QuasiRandom, IntegratesBetterThanPseudoRandomNumbers) {
  constexpr int kPoints = 1 << 14;
  Sequence sequence(52);
  std::mt19937 random(1);
  std::uniform_real_distribution<double> uniform(0.0, 1.0);
  double quasi = 0.0, pseudo = 0.0;
  for (int k = 0; k < kPoints; ++k) {
    const Point point = sequence.next();
    double q = 1.0 / kPoints, p = q;
    for (int d = 0; d < 52; ++d) {
      q *= 1.0 + (point[d] - 0.5) / (d + 1);
      p *= 1.0 + (uniform(random) - 0.5) / (d + 1);
    }
    quasi += q;
    pseudo += p;
  }
  // The integral is 1. Random points are off by about 0.37/sqrt(points) = 3e-3.
  EXPECT_LT(std::abs(quasi - 1.0), 5e-4);
  EXPECT_LT(5.0 * std::abs(quasi - 1.0), std::abs(pseudo - 1.0));
}

TEST(QuasiRandom, StartsAgainAfterTwoToTheThirtyPoints) {
  Sequence sequence(3);
  // The last point differs from the origin by the same direction numbers that lead back to it.
  for (int k = 0; k < 2; ++k) {
    sequence.counter = (1u << 30) - 1;
    EXPECT_EQ(sequence.next() == (Point{0, 0, 0}), k == 1);
  }
  EXPECT_EQ(sequence.next(), Sequence(3).next());
}

TEST(QuasiRandom, StatusTellsClampedAndReleased) {
  for (const auto& [asked, status, dimensions] :
       {std::tuple{52, 0, 52}, {53, -1, 52}, {INT_MAX, -1, 52}, {0, 0, 0}, {INT_MIN, 0, 0}}) {
    QuasiRandomContext context;
    EXPECT_EQ(QuasiRandomInitialize(&context, asked), status);
    EXPECT_EQ(context.status, status);
    EXPECT_EQ(context.dimensions, dimensions);
    QuasiRandomRelease(&context);
    EXPECT_EQ(context.status, -9);
    QuasiRandomNumber(&context, nullptr);
  }
}

// Releases too many, and those of other threads, must not take the table from who uses it.
TEST(QuasiRandom, TheTableLivesAsLongAsAnyContext) {
  Sequence sequence(2);
  const auto comeAndGo = [] {
    for (int k = 0; k < 500; ++k) {
      Sequence own(52);
      EXPECT_EQ(own.next(), Point(52, 0.5f));
      QuasiRandomRelease(&own);
    }
  };
  std::thread first(comeAndGo), second(comeAndGo);
  first.join();
  second.join();
  EXPECT_EQ(sequence.next(), Point(2, 0.5f));
}

}  // namespace
}  // namespace krosac
