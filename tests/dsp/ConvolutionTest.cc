#include "krosac/dsp/Convolution.h"

#include <gtest/gtest.h>

#include <random>
#include <vector>

namespace krosac {
namespace {

// Every term in the plain order of the definition, with exactly n readable samples in a.
std::vector<float> plainConvolution(const std::vector<float>& a, const std::vector<float>& b,
                                    float scale) {
  std::vector<float> out;
  for (std::size_t i = 0; i < a.size(); ++i) {
    float sum = 0.0f;
    for (std::size_t k = 0; k < b.size(); ++k)
      if (k <= i + 1 && i + 1 - k < a.size()) sum += a[i + 1 - k] * b[k];
    out.push_back(sum * scale);
  }
  return out;
}

TEST(Convolution, EqualsThePlainSumsBitForBit) {
  std::mt19937 random(7);
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  for (const unsigned n : {0u, 1u, 2u, 3u, 17u, 100u, 2047u, 2048u, 2049u, 5000u}) {
    for (const int m : {0, 1, 2, 3, 40, 101, 2200}) {
      std::vector<float> a(n), b(m), out(n, 9.0f);
      for (float& value : a) value = uniform(random);
      for (float& value : b) value = uniform(random);
      TDconvolve(a.data(), b.data(), out.data(), n, m, 0.3f);
      ASSERT_EQ(out, plainConvolution(a, b, 0.3f)) << n << " " << m;
    }
  }
}

TEST(Convolution, LeadsByOneSample) {
  const std::vector<float> a = {1, 2, 4, 8}, unit = {1}, pair = {10, 1};
  std::vector<float> out(4, 9.0f);
  TDconvolve(a.data(), unit.data(), out.data(), 4, 1, 1.0f);
  EXPECT_EQ(out, (std::vector<float>{2, 4, 8, 0}));
  TDconvolve(a.data(), pair.data(), out.data(), 4, 2, 0.5f);
  EXPECT_EQ(out, (std::vector<float>{10.5, 21, 42, 4}));
  TDconvolve(a.data(), pair.data(), out.data(), 4, -1, 0.5f);
  EXPECT_EQ(out, (std::vector<float>{0, 0, 0, 0}));
}

}  // namespace
}  // namespace krosac
