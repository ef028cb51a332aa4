// Random samples between -1 and 1, the same in every run.
#ifndef KROSAC_TESTS_DSP_NOISE_H
#define KROSAC_TESTS_DSP_NOISE_H

#include <random>
#include <vector>

namespace krosac {

inline std::vector<float> noise(int n) {
  std::mt19937 random(static_cast<unsigned>(n));
  std::uniform_real_distribution<float> uniform(-1.0f, 1.0f);
  std::vector<float> x;
  for (int j = 0; j < n; ++j) x.push_back(uniform(random));
  return x;
}

}  // namespace krosac

#endif
