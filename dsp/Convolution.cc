#include "krosac/dsp/Convolution.h"

#include <algorithm>
#include <cstdint>

namespace krosac {

// Each out[i] takes its terms in the order of k; going through k outside i lets the processor add
// many outputs at once, and a block of them stays in its nearest cache.
void TDconvolve(const float* a, const float* b, float* out, unsigned int n, int m, float scale) {
  constexpr std::int64_t kBlock = 2048;
  const std::int64_t length = n;
  for (std::int64_t begin = 0; begin < length; begin += kBlock) {
    const std::int64_t end = std::min(begin + kBlock, length);
    std::fill(out + begin, out + end, 0.0f);
    // The output leads by one sample (a[i+1] meets b[0]); that is intended.
    const std::int64_t terms = std::min<std::int64_t>(m, end + 1);
    for (std::int64_t k = 0; k < terms; ++k) {
      const std::int64_t first = std::max(begin, k - 1);
      const std::int64_t last = std::min(end, length - 1 + k);
      for (std::int64_t i = first; i < last; ++i) out[i] += a[i + 1 - k] * b[k];
    }
    for (std::int64_t i = begin; i < end; ++i) out[i] *= scale;
  }
}

}  // namespace krosac
