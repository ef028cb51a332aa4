#include "krosac/dsp/Statistics.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstdint>
#include <limits>
#include <numeric>

#include "krosac/platform/Numbers.h"

namespace krosac {
namespace {

bool nanLastLess(float a, float b) {
  return a < b || (std::isnan(b) && !std::isnan(a));
}

float middle(float low, float high) {
  return static_cast<float>(0.5 * (double{low} + double{high}));
}

// Maps a float to an integer of the same order, so that bisecting an interval of keys halves the
// number of floats in it.
std::int32_t keyOf(float value) {
  const auto bits = std::bit_cast<std::int32_t>(value);
  return bits < 0 ? bits ^ 0x7fffffff : bits;
}

float valueOf(std::int32_t key) {
  return std::bit_cast<float>(key < 0 ? key ^ 0x7fffffff : key);
}

// How the elements compare with a guess of the median. NaN is above everything.
struct Split {
  int below = 0;
  int above = 0;
  float nearestBelow = -std::numeric_limits<float>::infinity();
  float nearestAbove = std::numeric_limits<float>::quiet_NaN();
  double weightedMean = 0.0;
};

Split splitAt(float a, double eps, const float* x, int n) {
  Split s;
  double sum = 0.0, sumx = 0.0;
  for (int i = 1; i <= n; ++i) {
    if (x[i] == a) continue;
    if (x[i] < a) {
      ++s.below;
      s.nearestBelow = std::max(s.nearestBelow, x[i]);
    } else {
      ++s.above;
      if (!(s.nearestAbove <= x[i]) && !std::isnan(x[i])) s.nearestAbove = x[i];
    }
    const double weight = 1.0 / (std::abs(double{x[i]} - a) + eps);
    sum += weight;
    sumx += x[i] * weight;
  }
  s.weightedMean = sumx / sum;
  return s;
}

}  // namespace

float vmax(const float* x, int n) {
  if (n == 0 || (n > 0 && !x)) return kSacUndefinedFloat;
  float largest = -1e30f;
  for (int i = 0; i < n; ++i) largest = x[i] > largest ? x[i] : largest;
  return largest;
}

float vmin(const float* x, int n) {
  if (n == 0 || (n > 0 && !x)) return kSacUndefinedFloat;
  float smallest = 1e30f;
  for (int i = 0; i < n; ++i) smallest = x[i] < smallest ? x[i] : smallest;
  return smallest;
}

float vmean(const float* x, int n) {
  if (n == 0 || (n > 0 && !x)) return kSacUndefinedFloat;
  float sum = 0.0f;
  for (int i = 0; i < n; ++i) sum += x[i];
  return sum / static_cast<float>(n);
}

float kahanSum(const float* x, int n) {
  if (!x) return 0.0f;
  // The intermediate values are volatile, so that no compiler option can remove the compensation.
  double sum = x[0];
  volatile double lost = 0.0;
  for (int i = 1; i < n; ++i) {
    const volatile double term = x[i] - lost;
    const volatile double next = sum + term;
    const volatile double gained = next - sum;
    lost = gained - term;
    sum = next;
  }
  return static_cast<float>(sum);
}

void sort(int n, float* x) {
  if (!x || n < 2) return;
  std::make_heap(x + 1, x + 1 + n, nanLastLess);
  std::sort_heap(x + 1, x + 1 + n, nanLastLess);
}

void mdian1(float* x, int n, float* median) {
  sort(n, x);
  if (!median) return;
  *median = !x || n < 1 ? kSacUndefinedFloat : middle(x[(n + 1) / 2], x[n / 2 + 1]);
}

void mdian2(const float* x, int n, float* median) {
  if (!median) return;
  *median = kSacUndefinedFloat;
  if (!x || n < 1) return;
  constexpr float kInfinity = std::numeric_limits<float>::infinity();
  constexpr int kGuidedPasses = 20;
  const int lowRank = (n + 1) / 2;
  const int highRank = n / 2 + 1;
  // The elements of both ranks are strictly between these keys.
  std::int32_t lowKey = keyOf(-kInfinity) - 1;
  std::int32_t highKey = keyOf(kInfinity) + 1;
  float a = middle(x[1], x[n]);
  if (std::isnan(a)) a = 0.0f;
  double eps = std::abs(double{x[n]} - x[1]);

  for (int pass = 1;; ++pass) {
    const Split s = splitAt(a, eps, x, n);
    const int upToGuess = n - s.above;
    const bool moveDown = lowRank < s.below;
    const bool moveUp = highRank > upToGuess + 1 && !std::isnan(s.nearestAbove);
    if (!moveDown && !moveUp) {
      const auto element = [&](int rank) {
        return rank <= s.below ? s.nearestBelow : rank <= upToGuess ? a : s.nearestAbove;
      };
      *median = middle(element(lowRank), element(highRank));
      return;
    }
    const double pull = 1.5 * (s.weightedMean - a);
    double guess;
    if (moveUp) {
      lowKey = keyOf(a);
      guess = s.nearestAbove + std::max(0.0, pull);
    } else {
      highKey = keyOf(a);
      guess = s.nearestBelow + std::min(0.0, pull);
    }
    const float previous = a;
    a = static_cast<float>(guess);
    const bool inside = lowKey < keyOf(a) && keyOf(a) < highKey;
    if (pass >= kGuidedPasses || !inside) a = valueOf(std::midpoint(lowKey, highKey));
    eps = 1.5 * std::abs(double{a} - previous);
  }
}

}  // namespace krosac
