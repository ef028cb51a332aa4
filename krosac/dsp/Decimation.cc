#include "krosac/dsp/Decimation.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <iterator>

#include "krosac/dsp/internal/Kernels.h"

namespace krosac {
namespace {

struct Filter {
  const float* h;
  std::int64_t taps;
};

constexpr Filter kFilters[] = {{DECIMATEby2, std::size(DECIMATEby2)},
                               {DECIMATEby3, std::size(DECIMATEby3)},
                               {DECIMATEby4, std::size(DECIMATEby4)},
                               {DECIMATEby5, std::size(DECIMATEby5)}};

// Returns the sum of h[t]*x[start+t], ignoring samples outside x[0..n-1].
float outputAt(const Filter& f, const float* x, std::int64_t n, std::int64_t start) {
  const std::int64_t last = std::min(f.taps, n - start);
  float sum = 0.0f;
  for (std::int64_t t = std::max<std::int64_t>(0, -start); t < last; ++t) {
    sum += f.h[t] * x[start + t];
  }
  return sum;
}

// Writes the outputs at samples 0, factor, 2*factor, ... < n and returns their number.
std::int32_t decimate(const Filter& f, std::int64_t factor, const float* x, std::int64_t n,
                      float* y) {
  if (n < 1 || factor < 1 || !x || (f.taps > 0 && !f.h)) return 0;
  const std::int64_t centre = (f.taps - 1) / 2;
  const std::int64_t length = (n - 1) / factor + 1;
  if (!y) return static_cast<std::int32_t>(length);
  // The outputs first..last-1 need only samples inside the signal.
  const std::int64_t first = std::min((centre + factor - 1) / factor, length);
  const std::int64_t room = n + centre - f.taps;
  const std::int64_t last = room < 0 ? first : std::clamp(room / factor + 1, first, length);
  for (std::int64_t i = 0; i < first; ++i) y[i] = outputAt(f, x, n, i * factor - centre);
  if (first < last) {
    KROSAC_KERNEL(decimate)
    (f.h, static_cast<std::size_t>(f.taps), static_cast<std::size_t>(factor),
     x + (first * factor - centre), static_cast<std::size_t>(last - first), y + first);
  }
  for (std::int64_t i = last; i < length; ++i) y[i] = outputAt(f, x, n, i * factor - centre);
  return static_cast<std::int32_t>(length);
}

void write(std::int32_t* length, std::int32_t value) {
  if (length) *length = value;
}

// Stops the process in every build, as assert() does in a debug build.
void requireWholeBlocks(std::int32_t n, std::int32_t factor) {
  if (n % factor == 0) return;
  std::fputs(
      "Assertion failed: (num_inp % factor_M == 0), function decimorig, file adecimateSignal.\n",
      stderr);
  std::abort();
}

}  // namespace

std::int32_t decimateSignal(std::int32_t factor, std::int32_t n, const float* in, float* out,
                            std::int32_t* outLength) {
  if (factor < 1 || factor > 5) return 1;
  // Factor 1 does not even write the length; that is intended.
  if (factor == 1) return 0;
  n -= n % factor;
  if (n > 0 && !in) return 1;
  write(outLength, decimate(kFilters[factor - 2], factor, in, n, out));
  return 0;
}

void decim(std::int32_t factor, std::int32_t taps, const float* h, void* /*unused*/, std::int32_t n,
           const float* in, float* out, std::int32_t* outLength) {
  write(outLength, decimate({h, std::max(taps, 0)}, factor, in, n, out));
}

void decimorig(std::int32_t factor, std::int32_t taps, const float* h, float* delay, std::int32_t n,
               const float* in, float* out, std::int32_t* outLength) {
  write(outLength, 0);
  if (factor < 1) return;
  requireWholeBlocks(n, factor);
  taps = std::max(taps, 0);
  if (!in || (taps > 0 && (!h || !delay))) return;
  const std::int32_t length = std::max(n / factor, 0);
  // If a block is longer than the delay line, its oldest samples are not needed.
  const std::int32_t kept = std::min(factor, taps);
  for (std::int32_t i = 0; i < length; ++i) {
    in += factor;
    std::copy_backward(delay, delay + (taps - kept), delay + taps);
    std::reverse_copy(in - kept, in, delay);
    if (out) out[i] = outputAt({h, taps}, delay, taps, 0);
  }
  write(outLength, length);
}

}  // namespace krosac
