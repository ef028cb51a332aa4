#include "krosac/dsp/WeightsInternal.h"

#include <gtest/gtest.h>

#include <cmath>
#include <vector>

namespace krosac {
namespace {

TEST(Weights, GreatestIsFoundInEveryPlace) {
  for (const std::size_t count : {1, 31, 32, 33, 100}) {
    for (std::size_t place = 0; place < count; ++place) {
      std::vector<float> sizes(count, 1.0f);
      sizes[(place + 32) % count] = NAN;  // the next in the same lane
      sizes[place] = 2.0f;
      EXPECT_EQ(greatestOf(count, [&](std::size_t i) { return sizes[i]; }), 2.0f) << place;
    }
  }
  EXPECT_EQ(greatestOf(0, [](std::size_t) { return 1.0f; }), 0.0f);
  EXPECT_EQ(greatestOf(40, [](std::size_t) { return NAN; }), 0.0f);
}

}  // namespace
}  // namespace krosac
