#include "krosac/dsp/Convolution.h"

#include <algorithm>

#include "krosac/dsp/internal/Kernels.h"

namespace krosac {

void TDconvolve(const float* a, const float* b, float* out, unsigned int n, int m, float scale) {
  if (!out || (n > 0 && !a) || (m > 0 && !b)) return;
  // The output is advanced by one sample (a[i+1] is multiplied by b[0]); that is intended.
  KROSAC_KERNEL(convolve)(a, b, out, n, static_cast<std::size_t>(std::max(m, 0)), scale);
}

}  // namespace krosac
