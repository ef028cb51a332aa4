// Convolution and decimation. Neighbouring outputs are summed in vectors, each in the order of its
// terms.
#include <cstddef>

#include "krosac/dsp/internal/Kernels.h"
#include "krosac/dsp/internal/simd/Vectors.h"

namespace krosac::KROSAC_KERNELS {
namespace {

#ifdef __AVX__
constexpr std::size_t kVectors = 8;  // enough independent sums to hide the latency of an addition
#else
constexpr std::size_t kVectors = 4;
#endif
constexpr std::size_t kTile = 8 * kVectors;

template <std::size_t kCount>
struct Sums {
  Float8 sum[kCount];

  Sums() {
    for (Float8& s : sum) s = broadcast8(0.0f);
  }
  void add(float factor, const float* x) {
    const Float8 factors = broadcast8(factor);
#pragma GCC unroll 8
    for (std::size_t v = 0; v < kCount; ++v) sum[v] = sum[v] + load8(x + 8 * v) * factors;
  }
  void storeTo(float* to) const {
    for (std::size_t v = 0; v < kCount; ++v) store(to + 8 * v, sum[v]);
  }
};

// Computes the outputs i..i+8*kCount-1 of a convolution, not yet scaled. The last output of all
// must not be among them.
template <std::size_t kCount>
void convolveTile(const float* a, const float* b, float* out, std::size_t i, std::size_t m) {
  Sums<kCount> sums;
  const std::size_t whole = minimum(m, i + 2);
  for (std::size_t k = 0; k < whole; ++k) sums.add(b[k], a + (i + 1 - k));
  sums.storeTo(out + i);
  const std::size_t end = i + 8 * kCount;
  for (std::size_t k = whole; k < minimum(m, end + 1); ++k)
    for (std::size_t j = k - 1; j < end; ++j) out[j] += a[j + 1 - k] * b[k];
}

template <std::size_t kCount>
void sumTile(const float* h, std::size_t taps, std::size_t factor, const float* phases,
             std::size_t phaseLength, float* y) {
  Sums<kCount> sums;
  for (std::size_t t = 0, q = 0; t < taps; ++q)
    for (std::size_t p = 0; p < factor && t < taps; ++p, ++t)
      sums.add(h[t], phases + p * phaseLength + q);
  sums.storeTo(y);
}

}  // namespace

void convolve(const float* a, const float* b, float* out, std::size_t n, std::size_t m,
              float scale) {
  if (n == 0) return;
  std::size_t i = 0;
  for (; i + kTile < n; i += kTile) convolveTile<kVectors>(a, b, out, i, m);
  for (; i + 8 < n; i += 8) convolveTile<1>(a, b, out, i, m);
  for (; i < n; ++i) {
    float sum = 0.0f;
    // The last output would need a[n], which does not exist.
    for (std::size_t k = i + 1 < n ? 0 : 1; k < minimum(m, i + 2); ++k) sum += a[i + 1 - k] * b[k];
    out[i] = sum;
  }
  for (i = 0; i < n; ++i) out[i] *= scale;
}

void decimate(const float* h, std::size_t taps, std::size_t factor, const float* x,
              std::size_t outputs, float* y) {
  // Samples are first sorted by phase (index mod factor), so that neighbouring outputs need
  // adjacent samples.
  constexpr std::size_t kCapacity = 4096;
  float phases[kCapacity];
  const std::size_t phaseLength = kTile + (taps + factor - 1) / factor;
  std::size_t i = 0;
  if (phaseLength <= kCapacity / factor) {
    for (; i + kTile <= outputs; i += kTile) {
      const float* from = x + i * factor;
      const std::size_t length = (kTile - 1) * factor + taps;
      for (std::size_t p = 0; p < factor; ++p)
        for (std::size_t j = 0; p + j * factor < length; ++j)
          phases[p * phaseLength + j] = from[p + j * factor];
      sumTile<kVectors>(h, taps, factor, phases, phaseLength, y + i);
    }
  }
  for (; i < outputs; ++i) {
    float sum = 0.0f;
    for (std::size_t t = 0; t < taps; ++t) sum += h[t] * x[i * factor + t];
    y[i] = sum;
  }
}

}  // namespace krosac::KROSAC_KERNELS
