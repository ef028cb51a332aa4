#include "krosac/dsp/Convolution.h"

#include <gtest/gtest.h>

#include "dsp/Noise.h"

namespace krosac {
namespace {

// Every term in the plain order of the definition, with exactly n readable samples in a.
TEST(Convolution, EqualsThePlainSumsBitForBit) {
  for (const int n : {0, 1, 2, 3, 17, 100, 2047, 2048, 2049, 5000}) {
    for (const int m : {-1, 0, 1, 2, 3, 40, 101, 2200}) {
      const std::vector<float> a = noise(n), b = noise(m);
      std::vector<float> expected, out(a.size(), 9.0f);
      for (int i = 0; i < n; ++i) {
        float sum = 0.0f;
        for (int k = 0; k < m; ++k)
          if (i + 1 - k >= 0 && i + 1 - k < n) sum += a[i + 1 - k] * b[k];
        expected.push_back(sum * 0.3f);
      }
      TDconvolve(a.data(), b.data(), out.data(), static_cast<unsigned>(n), m, 0.3f);
      ASSERT_EQ(out, expected) << n << " " << m;
    }
  }
}

}  // namespace
}  // namespace krosac
