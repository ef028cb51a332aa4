// Recursive filters. Each output of a section depends on the output before it, so up to four
// sections run in the lanes of a vector, each two samples behind the previous section.
#include <cstddef>

#include "krosac/dsp/internal/Kernels.h"
#include "krosac/dsp/internal/simd/Vectors.h"

namespace krosac::KROSAC_KERNELS {
namespace {

using Mask4 = int __attribute__((vector_size(16)));

Float4 column(const float (*coefficients)[3], int sections, int power) {
  Float4 lanes{};
  for (int s = 0; s < sections; ++s) lanes[s] = coefficients[s][power];
  return lanes;
}

template <int kSections>
void cascade(const float (*num)[3], const float (*den)[3], float* data, std::ptrdiff_t npts,
             std::ptrdiff_t step) {
  const Float4 b0 = column(num, kSections, 0), b1 = column(num, kSections, 1),
               b2 = column(num, kSections, 2), a1 = column(den, kSections, 1),
               a2 = column(den, kSections, 2);
  constexpr std::ptrdiff_t kBehind = 2 * (kSections - 1);
  constexpr Mask4 kLanes = {0, 1, 2, 3};
  Float4 x1{}, x2{}, y1{}, y2{};
  // A section keeps its memories at zero until its first sample arrives.
  const auto run = [&](std::ptrdiff_t begin, std::ptrdiff_t end, bool first) {
    for (std::ptrdiff_t n = begin; n < end; ++n) {
      const float in = n < npts ? data[n * step] : 0.0f;
      const Float4 x = __builtin_shufflevector(y2, Float4{in, 0.0f, 0.0f, 0.0f}, 4, 0, 1, 2);
      Float4 y = b0 * x + b1 * x1 + b2 * x2 - a1 * y1 - a2 * y2;
      if (first) {
        const int started = static_cast<int>(n / 2);
        const Mask4 runs = kLanes <= Mask4{started, started, started, started};
        y = reinterpret_cast<Float4>(reinterpret_cast<Mask4>(y) & runs);
      }
      x2 = x1;
      x1 = x;
      y2 = y1;
      y1 = y;
      if (n >= kBehind) data[(n - kBehind) * step] = y[kSections - 1];
    }
  };
  run(0, kBehind, true);
  run(kBehind, npts, false);
  run(npts < kBehind ? kBehind : npts, npts + kBehind, false);
}

}  // namespace

void cascade(const float (*num)[3], const float (*den)[3], int sections, float* data,
             std::ptrdiff_t npts, std::ptrdiff_t step) {
  for (; sections >= 4; sections -= 4, num += 4, den += 4) cascade<4>(num, den, data, npts, step);
  if (sections == 3) cascade<3>(num, den, data, npts, step);
  if (sections == 2) cascade<2>(num, den, data, npts, step);
  if (sections == 1) cascade<1>(num, den, data, npts, step);
}

}  // namespace krosac::KROSAC_KERNELS
