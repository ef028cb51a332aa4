#include "krosac/seismogram/Misfits.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <span>

#include "krosac/seismogram/internal/SacObjectAccess.h"

namespace krosac {
namespace {

double square(double x) {
  return x * x;
}
double absolute(double x) {
  return std::fabs(x);
}

// The samples that two traces have in common.
struct Common {
  Common(const SacObject& first, const SacObject& second)
      : n(static_cast<std::int64_t>(std::min(samplesOf(first).size(), samplesOf(second).size()))),
        a(samplesOf(first).data()),
        b(samplesOf(second).data()) {}
  std::int64_t n;
  const float *a, *b;
};

using Norm = double (*)(double);

// The sums start at index 1; this is intended.
double differenceFromSecond(const Common& x, Norm norm) {
  double sum = 0.0;
  for (std::int64_t i = 1; i < x.n; ++i) sum += norm(static_cast<double>(x.a[i]) - x.b[i]);
  return sum;
}

float misfit(const SacObject& a, const SacObject& b, Norm norm) {
  return static_cast<float>(a.delta() * differenceFromSecond({a, b}, norm));
}

float relativeMisfit(const SacObject& a, const SacObject& b, Norm norm) {
  const Common x(a, b);
  double size = 0.0;
  for (std::int64_t i = 1; i < x.n; ++i) size += norm(x.a[i]);
  return static_cast<float>(differenceFromSecond(x, norm) / size);
}

void shiftedMisfit(const SacObject& a, const SacObject& b, std::int32_t& shift, float& best,
                   Norm norm) {
  const Common x(a, b);
  const std::int64_t m = shift;
  shift = kSacUndefinedInt;
  best = std::numeric_limits<float>::infinity();
  double size = 0.0, least = 1e40;
  for (std::int64_t i = 0; i < x.n; ++i) size += norm(x.a[i]);
  if (!(size > 0.0)) return;
  // Stops at a ratio of 0, which nothing beats; a shift by n or more has no terms and yields it.
  for (std::int64_t s = -m; s < m && least > 0.0; ++s) {
    double sum = 0.0;
    for (std::int64_t i = std::max<std::int64_t>(s, 0); i < std::min(x.n, x.n + s); ++i) {
      sum += norm(static_cast<double>(x.a[i]) - x.b[i - s]);
    }
    if (const double ratio = sum / size; ratio < least) {
      least = ratio;
      shift = static_cast<std::int32_t>(s);
      best = static_cast<float>(ratio);
    }
  }
}

}  // namespace

float L2SacMisfit(const SacObject& a, const SacObject& b) {
  return misfit(a, b, square);
}
float L1SacMisfit(const SacObject& a, const SacObject& b) {
  return misfit(a, b, absolute);
}
float L2SacFracMisfit(const SacObject& a, const SacObject& b) {
  return relativeMisfit(a, b, square);
}
float L1SacFracMisfit(const SacObject& a, const SacObject& b) {
  return relativeMisfit(a, b, absolute);
}

void L2SacFracMisfitWithShift(const SacObject& a, const SacObject& b, std::int32_t* shift,
                              float* best) {
  if (shift && best) shiftedMisfit(a, b, *shift, *best, square);
}

void L1SacFracMisfitWithShift(const SacObject& a, const SacObject& b, std::int32_t* shift,
                              float* best) {
  if (shift && best) shiftedMisfit(a, b, *shift, *best, absolute);
}

}  // namespace krosac
