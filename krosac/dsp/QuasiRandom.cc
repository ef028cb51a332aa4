#include "krosac/dsp/QuasiRandom.h"

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <new>

#include "krosac/dsp/internal/SobolTables.h"
#include "krosac/platform/internal/Reason.h"

namespace krosac {
namespace {

constexpr int kBits = 30;
constexpr double kScale = 1.0 / (1 << kBits);
constexpr std::int32_t kReleased = -9;

// Direction numbers times 2^30.
struct Directions {
  std::uint64_t number[kBits][kSobolDimensions];
};

// The recurrence of Bratley and Fox (1988), equations 2 and 3.
void fillDimension(Directions& v, int d) {
  const SobolPolynomial& polynomial = kSobolPolynomials[d];
  const int degree = polynomial.mdeg;
  for (int k = 0; k < degree; ++k) {
    v.number[k][d] = std::uint64_t{polynomial.initialValues[k]} << (kBits - 1 - k);
  }
  for (int k = degree; k < kBits; ++k) {
    std::uint64_t number = v.number[k - degree][d] ^ (v.number[k - degree][d] >> degree);
    for (int j = 1; j < degree; ++j) {
      if ((polynomial.ip >> (degree - 1 - j)) & 1u) number ^= v.number[k - j][d];
    }
    v.number[k][d] = number;
  }
}

// The table that all contexts share. It is built when the library is loaded and never changes, so
// contexts on several threads need no lock.
const Directions sharedDirections = [] {
  Directions all;
  for (int d = 0; d < kSobolDimensions; ++d) fillDimension(all, d);
  return all;
}();

}  // namespace

std::int32_t QuasiRandomInitialize(QuasiRandomContext* context, std::int32_t d) {
  if (!context) return kReleased;
  const std::int32_t dimensions = std::clamp<std::int32_t>(d, 0, kSobolDimensions);
  *context = {kReleased, 0, 0, nullptr};
  auto* point = new (std::nothrow) std::uint64_t[static_cast<std::size_t>(dimensions)]();
  if (!point) {
    setMemoryReason();
    return kReleased;
  }
  *context = {d > kSobolDimensions ? -1 : 0, dimensions, 0, point};
  return context->status;
}

void QuasiRandomNumber(QuasiRandomContext* context, float* out) {
  if (!context || !context->point) return;
  const int bit = std::min(std::countr_one(context->counter), kBits - 1);
  ++context->counter;
  const std::uint64_t* directions = sharedDirections.number[bit];
  for (std::int32_t d = 0; d < context->dimensions; ++d) {
    context->point[d] ^= directions[d];
    if (out) out[d] = static_cast<float>(static_cast<double>(context->point[d]) * kScale);
  }
}

void QuasiRandomRelease(QuasiRandomContext* context) {
  if (!context) return;
  delete[] context->point;
  *context = {kReleased, 0, 0, nullptr};
}

}  // namespace krosac
